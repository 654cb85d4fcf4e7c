#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# `lumaro-cli clean` (the dry run: listing, sizes, matching) on 100,000 JPG + 100,000 RAW files (FILES), against the listing
# alone (`find -maxdepth 1 -printf '%s'` of both folders) as the floor, in one run.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
files=${FILES:-100000}
runs=${RUNS:-5}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
mkdir -p "$dir/jpg" "$dir/raw"
( cd "$dir/raw" && seq -f 'IMG_%06g.CR3' 1 "$files" | xargs touch )
# As many JPG files, every other one the partner of a RAW file (in another case).
( cd "$dir/jpg" && seq -f 'img_%06g.JPG' 1 2 $((2 * files)) | xargs touch )
sync


lumaro=(); peer=()
for _ in $(seq "$runs"); do
  lumaro+=("$(time_ms "$cli" clean --quiet --json --jpg "$dir/jpg" --raw "$dir/raw")")
  peer+=("$(time_ms sh -c "find '$dir/jpg' '$dir/raw' -maxdepth 1 -type f -printf '%s %f\n' | sort")")
done
l=$(printf '%s\n' "${lumaro[@]}" | median)
p=$(printf '%s\n' "${peer[@]}" | median)
echo "files: $files JPG + $files RAW, runs: $runs (medians)"
echo "lumaro-cli clean (dry run):        ${l} ms"
echo "find -printf size | sort:          ${p} ms"
awk -v l="$l" -v p="$p" 'BEGIN { printf "ratio lumaro/find:                 %.2f\n", (p > 0 ? l / p : 0) }'
