#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Time from opening a folder of 2,000 pictures in the app to the first screen of thumbnails painted (the app's
# "PERF-FIRST-SCREEN" line, offscreen), against decoding those same thumbnails alone with lumaro-cli thumbs.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
app="$build/app/lumaro"
cli="$build/cli/lumaro-cli"
files=${FILES:-2000}
runs=${RUNS:-3}
here=$(cd "$(dirname "$0")" && pwd)
photo=${PHOTO:-$here/../../shared/models/test-images/building.jpg}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A 12-megapixel picture linked under $files names (one copy on disk, every file decoded on its own).
vips resize "$photo" "$work/big.v" 5
vips crop "$work/big.v" "$work/crop.v" 0 0 4000 3000
# Sensor-like grain, so the file decodes like a camera's and not like a smooth upscale.
vips gaussnoise "$work/noise.v" 4000 3000 --mean 0 --sigma 6
vips add "$work/crop.v" "$work/noise.v" "$work/sum.v"
vips cast "$work/sum.v" "$work/grain.v" uchar
vips copy "$work/grain.v" "$work/base.jpg[Q=92,strip]"
rm -f "$work"/*.v
mkdir -p "$work/folder"
for i in $(seq -w 1 "$files"); do ln "$work/base.jpg" "$work/folder/IMG_$i.jpg"; done
cat "$work/base.jpg" > /dev/null

export QT_QPA_PLATFORM=offscreen LUMARO_QUIT_AFTER_FIRST_SCREEN=1
app_ms=(); cli_ms=(); tiles=0
for r in $(seq "$runs"); do
  home="$work/home$r"; mkdir -p "$home"
  line=$(HOME="$home" XDG_CONFIG_HOME="$home/.config" XDG_CACHE_HOME="$home/.cache" XDG_DATA_HOME="$home/.local/share" \
         timeout 120 "$app" "$work/folder" 2>&1 | grep -a 'PERF-FIRST-SCREEN' | head -1)
  seconds=$(echo "$line" | sed -E 's/.* ([0-9.]+) s, ([0-9]+) .*/\1/')
  tiles=$(echo "$line" | sed -E 's/.* ([0-9.]+) s, ([0-9]+) .*/\2/')
  app_ms+=("$(awk -v s="$seconds" 'BEGIN { printf "%d", s * 1000 }')")
  rm -rf "$work/first" "$work/out"; mkdir -p "$work/first"
  for f in $(ls "$work/folder" | head -n "$tiles"); do ln "$work/folder/$f" "$work/first/$f"; done
  s=$(date +%s%N); "$cli" thumbs "$work/first" --size 256 --out "$work/out" --jobs 2 --quiet > /dev/null 2>&1; e=$(date +%s%N)
  cli_ms+=("$(( (e - s) / 1000000 ))")
done
a=$(printf '%s\n' "${app_ms[@]}" | median)
c=$(printf '%s\n' "${cli_ms[@]}" | median)
echo "folder of $files 4000x3000 JPEGs, first screen = $tiles thumbnails, runs: $runs (medians)"
echo "  open folder -> first screen painted (app):  ${a} ms"
echo "  decoding those $tiles thumbnails alone (cli):  ${c} ms"
awk -v a="$a" -v c="$c" 'BEGIN { printf "  ratio app/decode-only:                      %.2f\n", (c > 0 ? a / c : 0) }'
