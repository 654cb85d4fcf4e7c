#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Gathers a second held-out set for bench/watermark-accuracy.sh into OUT/photos and OUT/fonts: photos and
# fonts the reader was never tuned on, from Debian packages fetched with apt-get download and unpacked,
# never installed: MATE's nature wallpapers (grass, water, sky, flowers: busy and light backgrounds), more
# of opencv-doc's sample photos (a portrait, a painting, fruit, a street) than watermark-photos.sh takes,
# and fonts other than the Noto CJK the tuned sets are stamped in (WenQuanYi Micro Hei, AR PL UKai,
# Liberation Sans, Serif and Mono).
#   watermark-fresh-photos.sh OUT
set -euo pipefail
out=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && apt-get download opencv-doc mate-backgrounds fonts-wqy-microhei fonts-arphic-ukai \
    fonts-liberation2 >/dev/null 2>&1)
for deb in "$work"/*.deb; do dpkg-deb -x "$deb" "$work/x"; done
cv=$work/x/usr/share/doc/opencv-doc/examples/data
mate=$work/x/usr/share/backgrounds/mate
mkdir -p "$out/photos" "$out/fonts"
for f in "$mate"/nature/{Garden,Dune,Aqua,TwoWings,Storm,GreenMeadow,RainDrops,FreshFlower,LadyBird}.jpg \
    "$mate/abstract/Elephants.jpg" \
    "$cv"/{HappyFish,baboon,fruits,starry_night,home,butterfly,Blender_Suzanne1,aero1,leuvenA,pca_test1}.jpg; do
    cp "$f" "$out/photos/"
done
cp "$work"/x/usr/share/fonts/truetype/wqy/wqy-microhei.ttc "$work"/x/usr/share/fonts/truetype/arphic/ukai.ttc \
    "$work"/x/usr/share/fonts/truetype/liberation2/Liberation{Sans,Serif,Mono}-{Regular,Bold}.ttf "$out/fonts/"
ls "$out/photos" | wc -l
