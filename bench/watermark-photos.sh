#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Gathers the held-out photos of bench/watermark-accuracy.sh into OUT: real photos from Debian's opencv-doc
# and python3-skimage (fetched with apt-get download, unpacked, never installed) that neither the reader nor
# its tests were ever tuned on: street scenes with signs (text that is no identifier), white and grey
# backgrounds (light text on light), a portrait, animals, sky.
#   watermark-photos.sh OUT
set -euo pipefail
out=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && apt-get download opencv-doc python3-skimage >/dev/null 2>&1)
for deb in "$work"/*.deb; do dpkg-deb -x "$deb" "$work/x"; done
cv=$work/x/usr/share/doc/opencv-doc/examples
sk=$work/x/usr/lib/python3/dist-packages/skimage/data
mkdir -p "$out"
for f in "$sk/camera.png" "$sk/rocket.jpg" "$sk/motorcycle_right.png" \
    "$cv/data/aero3.jpg" "$cv/data/aloeL.jpg" "$cv/data/board.jpg" "$cv/data/ela_original.jpg" \
    "$cv/data/leuvenB.jpg" "$cv/data/stuff.jpg" "$cv/data/smarties.png" "$cv/data/squirrel_cls.jpg" \
    "$cv/alphamat/input_images/plant.jpg" "$cv/hfs/data/000.jpg" "$cv/fuzzy/input.png" \
    "$cv"/text/scenetext0[1-6].jpg; do
    cp "$f" "$out/"
done
ls "$out" | wc -l
