#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Fills FOLDER (default build/dev/demo) with a few real pictures to open when the user names none, and prints
# its path. Uses the test photos beside the checkout when they are there, else draws some with Qt's tools.
set -euo pipefail
folder=${1:-build/dev/demo}
mkdir -p "$folder"
photos="$(dirname "$0")/../../shared/models/test-images"
if [ -d "$photos" ]; then
  cp -n "$photos"/*.jpg "$photos"/*.png "$folder"/ 2>/dev/null || true
fi
if [ -z "$(ls -A "$folder")" ]; then
  # No photos to hand: a few flat-colour BMP pictures written by a few lines of Python.
  for colour in "255 80 80" "80 200 120" "90 120 255" "240 200 60"; do
    name="demo_${colour// /_}.bmp"
    python3 - "$folder/$name" $colour <<'PY'
import struct, sys
path, r, g, b = sys.argv[1], *map(int, sys.argv[2:5])
w, h = 320, 240
row = bytes([b, g, r]) * w
size = 54 + len(row) * h
with open(path, "wb") as f:
    f.write(b"BM" + struct.pack("<IHHI", size, 0, 0, 54))
    f.write(struct.pack("<IiiHHIIiiII", 40, w, h, 1, 24, 0, len(row) * h, 2835, 2835, 0, 0))
    f.write(row * h)
PY
  done
fi
cd "$folder" && pwd
