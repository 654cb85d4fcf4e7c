#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Gathers a sixth held-out set for bench/watermark-accuracy.sh into OUT/photos and OUT/fonts, from Debian
# packages fetched with apt-get download and unpacked, never installed, none of them used by any picture set
# before: Tux Paint's template photos (bark, rocks, moss, sea spray, waves, a corn maze, sheep, a spider's
# web, sun through clouds and leaves, trees from below, a mill's gears: busy textures edge to edge, the
# hardest ground for a small stamp), FVWM-Crystal's wallpapers (smooth light and dark grounds, one with an
# app's own mark in a corner), and fonts no set was stamped in before (IPAex Gothic and cwTeX Hei Bold for
# Chinese, Carlito, JetBrains Mono). The set is stamped in the maker's "varied,resaved" mode.
#   watermark-textured-photos.sh OUT
set -euo pipefail
out=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && apt-get download tuxpaint-data fvwm-crystal fonts-ipaexfont-gothic fonts-cwtex-heib \
    fonts-crosextra-carlito fonts-jetbrains-mono >/dev/null 2>&1)
for deb in "$work"/*.deb; do dpkg-deb -x "$deb" "$work/x"; done
x=$work/x/usr/share
mkdir -p "$out/photos" "$out/fonts"
cp "$x"/tuxpaint/templates/*.jpg "$x"/fvwm-crystal/fvwm/wallpapers/fvwm-crystal-*-1024x768.jpg "$out/photos/"
cp "$x/fonts/opentype/ipaexfont-gothic/ipaexg.ttf" "$x/fonts/truetype/cwtex/cwheib.ttf" \
    "$x"/fonts/truetype/crosextra/Carlito-{Regular,Bold}.ttf \
    "$x"/fonts/truetype/jetbrains-mono/JetBrainsMono-{Regular,Bold}.ttf "$out/fonts/"
ls "$out/photos" | wc -l
