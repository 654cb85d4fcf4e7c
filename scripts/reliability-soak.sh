#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The suite's kill, fault and randomised tests, run long for figures: KILLS kills per command (default 100),
# STEPS randomised culling steps (default 10000), from SEED (default 1). Prints the figures each test reports.
# Usage: scripts/reliability-soak.sh [BUILD_DIR]   (default build/dev; built by `cmake --build BUILD_DIR`)
set -euo pipefail
cd "$(dirname "$0")/.."
build="${1:-build/dev}"
binary="$build/tests/reliability/reliability_tests"
[ -x "$binary" ] || { echo "reliability-soak: build $binary first" >&2; exit 2; }

export LUMARO_RELIABILITY_SEED="${SEED:-1}"
export LUMARO_KILLS="${KILLS:-100}"
export LUMARO_MODEL_STEPS="${STEPS:-10000}"
export QT_QPA_PLATFORM=offscreen
echo "reliability-soak: seed $LUMARO_RELIABILITY_SEED, $LUMARO_KILLS kills per command, $LUMARO_MODEL_STEPS steps"
status=0
for filter in 'Commands/KillTest.*' 'Faults.*' 'ModelBased.*'; do
  log=$(mktemp)
  start=$(date +%s)
  "$binary" --gtest_filter="$filter" >"$log" 2>&1 || status=1
  grep -E '^reliability:|FAILED|Failure|SKIPPED' "$log" || true
  echo "$filter: $(grep -cE '^\[       OK \]' "$log") passed, $(grep -cE '^\[  FAILED  \] [A-Za-z]' "$log") failed in $(( $(date +%s) - start )) s"
  [ "$status" -eq 0 ] || cp "$log" "$build/reliability-soak-failure.log"
  rm -f "$log"
done
exit $status
