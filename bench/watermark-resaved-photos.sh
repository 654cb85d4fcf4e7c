#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Gathers a fourth held-out set for bench/watermark-accuracy.sh into OUT/photos and OUT/fonts, from Debian
# packages fetched with apt-get download and unpacked, never installed, none of them used by the watermark
# sets before: people and animals from darknet's sample pictures, Grace Hopper's portrait from matplotlib's
# sample data, scikit-learn's two photos, KDE Plasma's, UKUI's and Lomiri's photo wallpapers (forest,
# water, a bird on a tree, night sky), and fonts none of those sets were stamped in (DejaVu, Inter,
# Cantarell, Smiley Sans, AR PL SungtiL GB and KaitiM GB). The set is stamped in the maker's "varied,resaved"
# mode: inset, grey and black stamps, and every picture then downscaled and recompressed as platforms do.
#   watermark-resaved-photos.sh OUT
set -euo pipefail
out=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && apt-get download darknet python-matplotlib-data python3-sklearn plasma-workspace-wallpapers \
    ukui-wallpapers lomiri-wallpapers-20.04 fonts-dejavu-core fonts-inter fonts-cantarell fonts-smiley-sans \
    fonts-arphic-gbsn00lp fonts-arphic-gkai00mp >/dev/null 2>&1)
for deb in "$work"/*.deb; do dpkg-deb -x "$deb" "$work/x"; done
x=$work/x/usr
mkdir -p "$out/photos" "$out/fonts"
for f in "$x"/share/darknet/data/{person,dog,horses,eagle,kite}.jpg \
    "$x/share/matplotlib/mpl-data/sample_data/grace_hopper.jpg" \
    "$x"/lib/python3/dist-packages/sklearn/datasets/images/{china,flower}.jpg \
    "$x"/share/backgrounds/{Kleiber_by_Lukas_Baubkus,Infinite-Sea_by_Aury88}.jpg; do
    cp "$f" "$out/photos/"
done
# Plasma's wallpapers come in many sizes: the largest of each.
for wall in Canopee Cascade DarkestHour FallenLeaf IceCold MilkyWay Patak Path BytheWater ColorfulCups; do
    largest=$(ls -S "$x/share/wallpapers/$wall/contents/images/"* | head -1)
    cp "$largest" "$out/photos/wp_$wall.${largest##*.}"
done
f=$x/share/fonts
cp "$f"/truetype/dejavu/DejaVuSans{,-Bold}.ttf "$f"/opentype/inter/Inter-{Regular,SemiBold,Bold}.otf \
    "$f"/opentype/cantarell/Cantarell-{Regular,Bold}.otf "$f/truetype/smiley-sans/SmileySans-Oblique.ttf" \
    "$f/truetype/arphic-gbsn00lp/gbsn00lp.ttf" "$f/truetype/arphic-gkai00mp/gkai00mp.ttf" "$out/fonts/"
ls "$out/photos" | wc -l
