#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs every benchmark against the release build in BUILD_DIR (default build/release) and prints the figures.
set -euo pipefail
build=${1:-build/release}
here=$(cd "$(dirname "$0")" && pwd)
export LUMARO_BUILD_DIR=$build

echo "== ThumbnailCache get/set"
"$build/bench/thumbnail_cache_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
echo "== lumaro-cli list vs find | sort"
bash "$here/list-vs-find.sh" "$build"
echo "== lumaro-cli trash + --restore vs gio trash + --restore (per file)"
bash "$here/trash-vs-gio.sh" "$build"
echo "== pose: ms per 24 MP picture (decode, person search + MoveNet, rules) and the rules alone"
"$build/bench/pose_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
echo "== lumaro-cli index vs the analysis models alone (100 × 24 MP)"
bash "$here/vision-index.sh" "$build"
