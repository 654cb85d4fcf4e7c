#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Gathers a third held-out set for bench/watermark-accuracy.sh into OUT/photos and OUT/fonts, from Debian
# packages fetched with apt-get download and unpacked, never installed, none of them used by the other sets:
# portraits and close-ups from python3-skimage (astronaut, cat, coffee) and opencv-doc (a footballer, fruit,
# a building), GNOME's light wallpapers (flat light backgrounds), and fonts other than all the sets before
# (WenQuanYi Zen Hei, AR PL UMing, Droid Sans Fallback, Roboto, Open Sans, Lato). The set is stamped in the
# maker's "varied" mode (inset stamps, grey and black ones too) with the posters of posters-new.tsv.
#   watermark-new-photos.sh OUT
set -euo pipefail
out=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && apt-get download opencv-doc python3-skimage gnome-backgrounds fonts-wqy-zenhei \
    fonts-arphic-uming fonts-droid-fallback fonts-roboto-unhinted fonts-open-sans fonts-lato >/dev/null 2>&1)
for deb in "$work"/*.deb; do dpkg-deb -x "$deb" "$work/x"; done
cv=$work/x/usr/share/doc/opencv-doc/examples/data
sk=$work/x/usr/lib/python3/dist-packages/skimage/data
gn=$work/x/usr/share/backgrounds/gnome
mkdir -p "$out/photos" "$out/fonts"
for f in "$sk"/{astronaut,chelsea,coffee}.png "$sk/hubble_deep_field.jpg" \
    "$cv"/{messi5,orange,apple,building,Blender_Suzanne2,aloeR,ela_modified,right01}.jpg; do
    cp "$f" "$out/photos/"
done
for f in adwaita-l wood-l pixels-l; do convert "$gn/$f.webp" "$out/photos/$f.png"; done
f=$work/x/usr/share/fonts/truetype
cp "$f/wqy/wqy-zenhei.ttc" "$f/arphic/uming.ttc" "$f/droid/DroidSansFallbackFull.ttf" \
    "$f"/roboto/unhinted/RobotoTTF/Roboto-{Regular,Medium,Bold}.ttf \
    "$f"/open-sans/OpenSans-{Regular,Semibold,Bold}.ttf "$f"/lato/Lato-{Regular,Bold,Heavy}.ttf "$out/fonts/"
ls "$out/photos" | wc -l
