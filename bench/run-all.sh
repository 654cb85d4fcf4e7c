#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs every benchmark against the release build in BUILD_DIR (default build/release) and prints the figures.
set -euo pipefail
build=${1:-build/release}
here=$(cd "$(dirname "$0")" && pwd)
export LUMARO_BUILD_DIR=$build

echo "== ThumbnailCache get/set"
"$build/bench/thumbnail_cache_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
echo "== start-up of the short lumaro-cli commands vs ls, getfattr, sqlite3, gio trash"
bash "$here/startup-vs-coreutils.sh" "$build"
echo "== lumaro-cli list vs find | sort"
bash "$here/list-vs-find.sh" "$build"
echo "== lumaro-cli thumbs vs vipsthumbnail (24 MP JPEGs, 256 px)"
bash "$here/thumbs-vs-vips.sh" "$build"
echo "== app: open folder to first screen of thumbnails vs decoding them alone"
bash "$here/first-screen.sh" "$build"
echo "== lumaro-cli index vs the analysis models alone (100 × 24 MP)"
bash "$here/vision-index.sh" "$build"
echo "== lumaro-cli index: peak memory and CPU per picture (40 × 24 MP)"
bash "$here/vision-memory.sh" "$build"
echo "== pose: ms per 24 MP picture (decode, person search + MoveNet, rules) and the rules alone"
"$build/bench/pose_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
echo "== favourites: toggle latency, loading 50,000 records"
"$build/bench/favour_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
echo "== lumaro-cli fav list vs sqlite3 (50,000 records)"
bash "$here/fav-list-vs-sqlite.sh" "$build"
echo "== lumaro-cli trash + --restore vs gio trash and one batch mv back; restore with 10,000 items in the Trash"
bash "$here/trash-vs-gio.sh" "$build"
echo "== delete + restore inside the process (a key press), 0 and 1000 other items in the Trash"
"$build/bench/trash_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
echo "== pairing: matching 10,000 … 160,000 names a side, analysis of two real folders"
"$build/bench/pairing_bench" --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
echo "== lumaro-cli clean (dry run) on 100,000 + 100,000 files vs find -printf | sort"
bash "$here/pairing-clean.sh" "$build"
echo "== lumaro-cli import vs cp -r (200 x 8 MB, cold page cache)"
bash "$here/import-vs-cp.sh" "$build"
echo "== favourites copy: fav add of 200 x 8 MB with the copy on vs cp, cold page cache"
bash "$here/fav-copy-vs-cp.sh" "$build"
echo "== RAW pick: pick of 200 x 8 MB RAW files vs cp, cold page cache"
bash "$here/pick-vs-cp.sh" "$build"
echo "== a second lumaro-cli import with nothing new vs cp -rn (2,000 files)"
bash "$here/import-again.sh" "$build"
echo "== file-name grouping of 10,000 pictures: the walk, group and ungroup on disk"
"$build/bench/name_grouping_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
echo "== lumaro-cli group / ungroup vs a Perl rename loop (10,000 files)"
bash "$here/group-vs-perl.sh" "$build"
echo "== lumaro-cli report vs exiv2 (JPG + RAW pairs, 2,500 … 10,000 files)"
bash "$here/report-vs-exiv2.sh" "$build"
echo "== app: hold → 3 s over 600 × 24 MP camera JPEGs per mode (release-to-sharp, stalls), RSS after scrolling, idle CPU"
"$build/bench/window_hold_bench" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
    --benchmark_out=/dev/stderr --benchmark_out_format=console > /dev/null
