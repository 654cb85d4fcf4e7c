#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Gathers a fifth held-out set for bench/watermark-accuracy.sh into OUT/photos and OUT/fonts, from Debian
# packages fetched with apt-get download and unpacked, never installed: photos of opencv-doc and
# python3-skimage no set before used (a chick, a horse, coins, a retina, toys, a stereo pair, a blurred page
# of text), Sway's wallpaper, and fonts no set was stamped in before (LXGW WenKai for Chinese and Latin,
# GNU FreeFont). The set is stamped in the maker's "varied,resaved" mode: two in three pictures downscaled
# to 1080 or 720 pixels and recompressed as platforms serve them, the rest kept at full size.
#   watermark-mixed-photos.sh OUT
set -euo pipefail
out=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && apt-get download opencv-doc python3-skimage sway-backgrounds fonts-lxgw-wenkai \
    fonts-freefont-ttf >/dev/null 2>&1)
for deb in "$work"/*.deb; do dpkg-deb -x "$deb" "$work/x"; done
cv=$work/x/usr/share/doc/opencv-doc/examples/data
sk=$work/x/usr/lib/python3/dist-packages/skimage/data
mkdir -p "$out/photos" "$out/fonts"
for f in "$cv"/{blox,chicky_512,graf1,left,right,licenseplate_motion,rubberwhale1,text_defocus,box_in_scene}.* \
    "$sk"/{retina.jpg,coins.png,horse.png,ihc.png,color.png} \
    "$work/x/usr/share/backgrounds/sway/Sway_Wallpaper_Blue_1920x1080.png"; do
    cp "$f" "$out/photos/$(basename "${f%.*}").${f##*.}"
done
cp "$work"/x/usr/share/fonts/truetype/lxgw-wenkai/LXGWWenKai-{Regular,Bold}.ttf \
    "$work"/x/usr/share/fonts/truetype/freefont/Free{Sans,SansBold,Serif,Mono}.ttf "$out/fonts/"
ls "$out/photos" | wc -l
