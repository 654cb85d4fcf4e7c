# SPDX-License-Identifier: GPL-3.0-or-later
# What the side-by-side bench scripts share (sourced, not run): the median of numbers on standard input, and
# a command's wall time in milliseconds.

median() { sort -n | awk '{a[NR]=$1} END {print (NR%2) ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2}'; }
# Its output is dropped; its messages still show.
time_ms() { local s e; s=$(date +%s%N); "$@" > /dev/null; e=$(date +%s%N); echo $(( (e - s) / 1000000 )); }
# Its output and its messages dropped.
time_ms_silent() { local s e; s=$(date +%s%N); "$@" > /dev/null 2>&1; e=$(date +%s%N); echo $(( (e - s) / 1000000 )); }

# For the copy benches that read from a cold page cache: `drop` empties the cache (as root; false where that
# is not allowed), `cache_state` says which it will be, for the report line.
drop() { sync; echo 1 > /proc/sys/vm/drop_caches 2>/dev/null || return 1; }
cache_state() {
  if drop; then echo "cold page cache (dropped before each run)"
  else echo "WARM page cache: /proc/sys/vm/drop_caches is not writable here"; fi
}
# RUNS rounds of the script's run_lumaro and run_peer (each appends its time to the array lumaro or peer),
# taking turns at going first: the disk under a virtual machine is still writing back what the last run wrote
# while the next one reads. A first round, not counted, lets freshly written files settle.
take_turns() {
  local r
  lumaro=(); peer=()
  run_lumaro; run_peer; lumaro=(); peer=()
  for r in $(seq "$1"); do
    if (( r % 2 )); then run_lumaro; run_peer; else run_peer; run_lumaro; fi
  done
}
