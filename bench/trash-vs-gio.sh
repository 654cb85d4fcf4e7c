#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Delete + restore round trip per file: `lumaro-cli trash` + `lumaro-cli trash --restore` against
# `gio trash` + `gio trash --restore`, on the same files, in one run, with a throwaway Trash (XDG_DATA_HOME).
# Without gvfs, `gio trash --restore` cannot reach trash:// and the peer's restore is done as a shell script
# would do it (mv -n back, rm the .trashinfo); the script says which one it measured.
set -euo pipefail
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
files=${FILES:-40}
runs=${RUNS:-5}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME="$work/data"
mkdir -p "$XDG_DATA_HOME" "$work/shoot"
for i in $(seq -w 1 "$files"); do head -c 200000 /dev/urandom > "$work/shoot/IMG $i.JPG"; done
sync
shots=("$work"/shoot/*.JPG)

gio_restore_works=no
probe="$work/shoot/probe.jpg"; echo x > "$probe"
if gio trash "$probe" 2>/dev/null && gio trash --restore "trash:///probe.jpg" 2>/dev/null && [ -e "$probe" ]; then
  gio_restore_works=yes
fi
rm -f "$probe" "$XDG_DATA_HOME/Trash/files/probe.jpg" "$XDG_DATA_HOME/Trash/info/probe.jpg.trashinfo"

now_ns() { date +%s%N; }
median() { sort -n | awk '{a[NR]=$1} END {print (NR%2) ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2}'; }

# One process per file and operation (as a user undoing one delete would run it); prints the mean microseconds per file of that round.
lumaro_round() {
  local s e f
  s=$(now_ns)
  for f in "${shots[@]}"; do
    "$cli" trash --quiet "$f" > /dev/null
    "$cli" trash --quiet --restore "$f" > /dev/null
  done
  e=$(now_ns)
  echo $(( (e - s) / 1000 / files ))
}

gio_round() {
  local s e f name
  s=$(now_ns)
  for f in "${shots[@]}"; do
    name=$(basename "$f")
    gio trash "$f"
    if [ "$gio_restore_works" = yes ]; then
      gio trash --restore "trash:///$name"
    else
      mv -n "$XDG_DATA_HOME/Trash/files/$name" "$f" && rm "$XDG_DATA_HOME/Trash/info/$name.trashinfo"
    fi
  done
  e=$(now_ns)
  echo $(( (e - s) / 1000 / files ))
}

# The same round trip with one process for all the files, so that start-up costs are shared out.
lumaro_batch() {
  local s e
  s=$(now_ns)
  "$cli" trash --quiet "${shots[@]}" > /dev/null
  "$cli" trash --quiet --restore "${shots[@]}" > /dev/null
  e=$(now_ns)
  echo $(( (e - s) / 1000 / files ))
}

gio_batch() {
  local s e f name
  s=$(now_ns)
  gio trash "${shots[@]}"
  if [ "$gio_restore_works" = yes ]; then
    gio trash --restore $(for f in "$XDG_DATA_HOME"/Trash/files/*; do echo "trash:///$(basename "$f")"; done)
  else
    for f in "$XDG_DATA_HOME"/Trash/files/*; do
      name=$(basename "$f")
      mv -n "$f" "$work/shoot/$name" && rm "$XDG_DATA_HOME/Trash/info/$name.trashinfo"
    done
  fi
  e=$(now_ns)
  echo $(( (e - s) / 1000 / files ))
}

lumaro=(); peer=(); lumaro_b=(); peer_b=()
for _ in $(seq "$runs"); do
  lumaro+=("$(lumaro_round)")
  peer+=("$(gio_round)")
  lumaro_b+=("$(lumaro_batch)")
  peer_b+=("$(gio_batch)")
done
[ "$(ls "$work/shoot" | wc -l)" -eq "$files" ] || { echo "files went missing" >&2; exit 1; }
l=$(printf '%s\n' "${lumaro[@]}" | median)
p=$(printf '%s\n' "${peer[@]}" | median)
lb=$(printf '%s\n' "${lumaro_b[@]}" | median)
pb=$(printf '%s\n' "${peer_b[@]}" | median)
peer_name="gio trash + gio trash --restore"
[ "$gio_restore_works" = yes ] || peer_name="gio trash + mv back (no gvfs: gio cannot --restore here)"
echo "files: $files, rounds: $runs (median of per-round mean per file, delete + restore)"
echo "lumaro-cli trash + --restore:  ${l} us/file"
echo "$peer_name:  ${p} us/file"
awk -v l="$l" -v p="$p" 'BEGIN { printf "ratio lumaro/gio:              %.2f\n", (p > 0 ? l / p : 0) }'
echo "one process for all $files files:"
echo "lumaro-cli trash + --restore:  ${lb} us/file"
echo "$peer_name:  ${pb} us/file"
awk -v l="$lb" -v p="$pb" 'BEGIN { printf "ratio lumaro/gio:              %.2f\n", (p > 0 ? l / p : 0) }'
