#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# `lumaro-cli thumbs --size 256` against `vipsthumbnail --size 256` on the same folder of 24-megapixel JPEGs,
# both on 2 threads (lumaro-cli --jobs 2; two vipsthumbnail processes with one thread each), in one run.
# Three folders: plain JPEGs without an EXIF thumbnail, camera-style JPEGs carrying a 320-pixel one, and camera
# JPEGs keeping a 1620×1080 preview in their MPF block (as most cameras do). For plain JPEGs the floor is also
# printed: `djpeg -scale 1/8` decoding the same files on 2 processes, nothing written.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
writer="$build/bench/exif_thumbnail_writer"
files=${FILES:-200}
runs=${RUNS:-3}
here=$(cd "$(dirname "$0")" && pwd)
photo=${PHOTO:-$here/../../shared/models/test-images/building.jpg}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One 6000×4000 picture made from a real photo (real detail, so the decoder does real work), linked under
# $files names: every file is decoded in full, and the disk holds one copy.
vips resize "$photo" "$work/big.v" 7
vips crop "$work/big.v" "$work/crop.v" 0 0 6000 4000
# Sensor-like grain, so the file decodes like a camera's and not like a smooth upscale.
vips gaussnoise "$work/noise.v" 6000 4000 --mean 0 --sigma 6
vips add "$work/crop.v" "$work/noise.v" "$work/sum.v"
vips cast "$work/sum.v" "$work/grain.v" uchar
vips copy "$work/grain.v" "$work/base.jpg[Q=92,strip]"
rm -f "$work"/*.v
cp "$work/base.jpg" "$work/camera.jpg"
"$writer" "$work/camera.jpg" 320
vips thumbnail "$work/base.jpg" "$work/preview.jpg[Q=85,strip]" 1620
python3 "$here/add-mpf-preview.py" "$work/base.jpg" "$work/preview.jpg" "$work/mpf.jpg"
mkdir -p "$work/plain" "$work/camera" "$work/mpf"
for i in $(seq -w 1 "$files"); do
  ln "$work/base.jpg" "$work/plain/IMG_$i.jpg"
  ln "$work/camera.jpg" "$work/camera/IMG_$i.jpg"
  ln "$work/mpf.jpg" "$work/mpf/IMG_$i.jpg"
done
cat "$work/base.jpg" "$work/camera.jpg" "$work/mpf.jpg" > /dev/null

run_lumaro() { rm -rf "$work/out"; "$cli" thumbs "$1" --size 256 --out "$work/out" --jobs 2 --quiet; }
run_vips() {
  rm -rf "$work/out"; mkdir -p "$work/out"
  find "$1" -name '*.jpg' -print0 | xargs -0 -n $(( (files + 1) / 2 )) -P 2 \
    env VIPS_CONCURRENCY=1 vipsthumbnail --size 256 -o "$work/out/%s.jpg"
}

run_djpeg() { find "$1" -name '*.jpg' -print0 | xargs -0 -n 1 -P 2 djpeg -scale 1/8 -outfile /dev/null; }

for kind in plain camera mpf; do
  lumaro=(); peer=(); floor=()
  for _ in $(seq "$runs"); do
    lumaro+=("$(time_ms_silent run_lumaro "$work/$kind")")
    peer+=("$(time_ms_silent run_vips "$work/$kind")")
    if [ "$kind" = plain ] && command -v djpeg > /dev/null; then floor+=("$(time_ms_silent run_djpeg "$work/$kind")"); fi
  done
  l=$(printf '%s\n' "${lumaro[@]}" | median)
  p=$(printf '%s\n' "${peer[@]}" | median)
  echo "$kind 6000x4000 JPEGs: $files files, runs: $runs (medians), 2 threads each"
  echo "  lumaro-cli thumbs --size 256:   ${l} ms"
  echo "  vipsthumbnail --size 256:       ${p} ms"
  awk -v l="$l" -v p="$p" 'BEGIN { printf "  speed lumaro vs vips:           %.2f×\n", (l > 0 ? p / l : 0) }'
  if [ ${#floor[@]} -gt 0 ]; then
    f=$(printf '%s\n' "${floor[@]}" | median)
    echo "  djpeg -scale 1/8 (floor):       ${f} ms"
    awk -v l="$l" -v f="$f" 'BEGIN { printf "  speed lumaro vs floor:          %.2f×\n", (l > 0 ? f / l : 0) }'
  fi
done
