#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the test preset (clang, ASan + UBSan) and runs every harness in fuzz/ for SECONDS seconds each
# (default 60), one after the other. Prints per harness the inputs run and whether it crashed; exits 1 when any harness crashed.
# Usage: scripts/run-fuzzers.sh [SECONDS] [HARNESS...]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
shift || true

cmake --preset check >/dev/null
cmake --build build/check --target lumaro_fuzzers -j "$(nproc)"

harnesses=("$@")
if [ ${#harnesses[@]} -eq 0 ]; then
  for dir in fuzz/*/corpus; do harnesses+=("$(basename "$(dirname "$dir")")"); done
fi

# Known leaks of third-party libraries are not ours to fix here; see tests/sanitizers.
export LSAN_OPTIONS="${LSAN_OPTIONS:-}${LSAN_OPTIONS:+:}suppressions=$PWD/tests/sanitizers/lsan.supp"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"

# Files the harnesses write go to memory when it can: the parsers are the subject, not the disk.
[ -d /dev/shm ] && [ -w /dev/shm ] && export TMPDIR=/dev/shm

failed=0
total=0
printf '%-18s %12s %8s  %s\n' harness inputs corpus result
for h in "${harnesses[@]}"; do
  work="build/check/fuzz-runs/corpus/$h"
  crashes="build/check/fuzz-runs/crashes/$h"
  log="build/check/fuzz-runs/logs/$h.log"
  mkdir -p "$work" "$crashes" "$(dirname "$log")"
  status=0
  "build/check/fuzz/fuzz_$h" "$work" "fuzz/$h/corpus" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=2560 \
    -max_len=65536 -print_final_stats=1 -artifact_prefix="$crashes/" >"$log" 2>&1 || status=$?
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  units=$(find "$work" -type f | wc -l)
  result=ok
  if [ "$status" -ne 0 ]; then
    result="CRASH (exit $status): $(grep -m1 -E 'ERROR: |runtime error|deadly signal' "$log" || true) — $log"
    failed=1
  fi
  total=$((total + ${runs:-0}))
  printf '%-18s %12s %8s  %s\n' "$h" "${runs:-?}" "$units" "$result"
done
echo "fuzz: ${#harnesses[@]} harnesses, $total inputs, $([ $failed -eq 0 ] && echo 'no crash' || echo 'crashes found')"
exit $failed
