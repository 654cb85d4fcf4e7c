#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# `lumaro-cli report` on a shoot of JPG + fake-RAW pairs (TIFF-structured, real EXIF headers) against exiv2 reading
# the capture time of the same files, warm cache, at 2,500, 5,000 and 10,000 files: medians, ratio, and the time
# per 1,000 files to show that the report grows linearly.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
runs=${RUNS:-5}
sizes=${SIZES:-"2500 5000 10000"}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

# One JPG and one TIFF with a camera's EXIF; every pair is a byte copy with its own capture time patched in
# (same-length strings), so writing 10,000 files takes seconds, not an exiv2 run per file.
convert -size 600x400 xc:gray "$dir/seed.jpg"
convert -size 60x40 xc:gray "$dir/seed.tif"
for seed in "$dir/seed.jpg" "$dir/seed.tif"; do
  exiv2 -M"set Exif.Image.Make Canon" -M"set Exif.Image.Model Canon EOS R5" -M"set Exif.Photo.BodySerialNumber 032021001122" \
        -M"set Exif.Photo.DateTimeOriginal 2024:06:08 14:00:00" -M"set Exif.Photo.SubSecTimeOriginal 77" \
        -M"set Exif.Photo.LensModel RF24-70mm F2.8 L IS USM" -M"set Exif.Photo.FocalLength 50/1" \
        -M"set Exif.Photo.ISOSpeedRatings 400" -M"set Exif.Photo.FNumber 28/10" -M"set Exif.Photo.ExposureTime 1/250" "$seed"
done
python3 - "$dir" <<'PY'
import datetime, os, sys
d = sys.argv[1]
seeds = {ext: open(os.path.join(d, 'seed.' + ext), 'rb').read() for ext in ('jpg', 'tif')}
base = datetime.datetime(2024, 6, 8, 14, 0, 0)
for size in (2500, 5000, 10000):
    folder = os.path.join(d, str(size))
    os.makedirs(folder)
    for k in range(size // 2):
        t = base + datetime.timedelta(milliseconds=700 * k)
        stamp = t.strftime('%Y:%m:%d %H:%M:%S').encode()
        sub = b'%02d' % (t.microsecond // 10000)
        for ext, name in (('jpg', 'IMG_%05d.JPG'), ('tif', 'IMG_%05d.CR2')):
            data = seeds[ext].replace(b"77\x00", sub + b"\x00", 1).replace(b"2024:06:08 14:00:00", stamp)
            open(os.path.join(folder, name % k), 'wb').write(data)
PY
sync


for size in $sizes; do
  folder="$dir/$size"
  "$cli" report --quiet "$folder" > /dev/null 2>&1 # warm the cache
  lumaro=(); peer=()
  for _ in $(seq "$runs"); do
    lumaro+=("$(time_ms_silent "$cli" report --quiet "$folder")")
    peer+=("$(time_ms_silent sh -c "cd '$folder' && ls | xargs -n 2000 exiv2 -q -K Exif.Photo.DateTimeOriginal -Pv")")
  done
  l=$(printf '%s\n' "${lumaro[@]}" | median)
  p=$(printf '%s\n' "${peer[@]}" | median)
  echo "files: $size, runs: $runs (medians, warm cache)"
  echo "  lumaro-cli report:             ${l} ms  ($(awk -v l="$l" -v n="$size" 'BEGIN { printf "%.0f", l * 1000 / n }') ms per 1,000 files)"
  echo "  exiv2 capture time only:       ${p} ms"
  awk -v l="$l" -v p="$p" 'BEGIN { printf "  ratio lumaro/exiv2:            %.2f\n", (p > 0 ? l / p : 0) }'
done
