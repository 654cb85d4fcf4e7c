#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# `lumaro-cli list` against `find DIR -maxdepth 1 -type f | sort` on one folder of 20,000 files, in one run.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
files=${FILES:-20000}
runs=${RUNS:-11}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

# A card dump's mix: mostly JPG and CR2, some sidecars and videos that the listing must skip.
( cd "$dir" && for i in $(seq -w 1 "$files"); do
    case $((10#$i % 10)) in
      0) echo > "IMG_$i.MOV" ;; 1|2|3) echo > "IMG_$i.CR2" ;; 4) echo > "IMG_$i.xmp" ;; *) echo > "IMG_$i.JPG" ;;
    esac
  done )
sync


lumaro=(); peer=()
for _ in $(seq "$runs"); do
  lumaro+=("$(time_ms "$cli" list --quiet "$dir")")
  peer+=("$(time_ms sh -c "find '$dir' -maxdepth 1 -type f | sort")")
done
l=$(printf '%s\n' "${lumaro[@]}" | median)
p=$(printf '%s\n' "${peer[@]}" | median)
echo "files: $files, runs: $runs (medians)"
echo "lumaro-cli list:            ${l} ms"
echo "find -maxdepth 1 | sort:    ${p} ms"
awk -v l="$l" -v p="$p" 'BEGIN { printf "ratio lumaro/find:          %.2f\n", (p > 0 ? l / p : 0) }'
