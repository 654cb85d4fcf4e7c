#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes a third held-out picture set for bench/vision-accuracy.sh, from sources none of the earlier sets used,
# in SET/fresh3 (default /tmp/lumaro-vision-set):
#   the photos of GIMP's English manual (a palace, flowers, a squirrel, a chimpanzee, guards on parade, cars,
#   fields, power lines, a park) and its screenshots of dialogs and of the whole program; Fotoxx's manual
#   (portraits, a photographed book, dialogs with photos in them); ImageMagick's wizard; SciPy's raccoon;
#   Debian Edu's manual (a desktop and a browser captured whole); Tux Paint's fruit and animal photos,
#   set on a table top; pages in English and Chinese turned 6–11° or photographed on a desk, a receipt;
#   two drawings; and captures under Xvfb of a browser showing a manual page, a photo and a document.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked. Needs imagemagick, fonts-noto-cjk,
# fonts-dejavu, xvfb, xdotool, chromium and python3-numpy. DISPLAY_NUMBER picks the Xvfb display (default 94).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-94}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
serif=/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
mono=/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf
out=$set_dir/fresh3
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download gimp-help-en fotoxx-common imagemagick-6-doc python3-scipy debian-edu-doc-en \
    tuxpaint-stamps-default >/dev/null && for deb in *.deb; do dpkg -x "$deb" unpacked; done)
pkg=$work/unpacked
take() { # FILE OUT: one packaged picture, or a note that it is missing
    if [ -f "$1" ]; then cp "$1" "$out/$2"; else echo "make-vision-fresh3-set: $1 not found" >&2; fi
}

gimp=$pkg/usr/share/gimp/2.0/help/en/images
take "$gimp/filters/examples/taj_orig.jpg" gimp_taj.jpg
take "$gimp/filters/examples/blur/mean_curvature-ex-1.jpg" gimp_rose.jpg
take "$gimp/filters/examples/distort/spherize-ex-orig.jpg" gimp_daisies.jpg
take "$gimp/filters/examples/light-and-shadow/vignette-ex-orig.jpg" gimp_squirrel.jpg
take "$gimp/filters/examples/enhance/high-pass-origin.png" gimp_chimpanzee.png
take "$gimp/filters/examples/map/little_planet-origin.jpg" gimp_field_clouds.jpg
take "$gimp/filters/examples/map/pan-project-result-1.jpg" gimp_park.jpg
take "$gimp/tutorials/quickie-flip-example-source.jpg" gimp_guards.jpg
take "$gimp/tutorials/quickie-jpeg-example.jpg" gimp_old_car.jpg
take "$gimp/tutorials/quickie-remove-background-source.jpg" gimp_yellow_flower.jpg
take "$gimp/tutorials/tone-mapping/apple-orchard-truck-from-camera.jpg" gimp_orchard_truck.jpg
take "$gimp/tutorials/tone-mapping/power-lines.jpg" gimp_power_lines.jpg
take "$gimp/tutorials/tone-mapping/add-inverse-grayscale-mask.jpg" gimp_dialog_mask.jpg
take "$gimp/tutorials/tone-mapping/histogram-specular-highlights.jpg" gimp_dialog_histogram.jpg
take "$gimp/using/single-window.png" gimp_window_sunflower.png

fotoxx=$pkg/usr/share/fotoxx/images
take "$fotoxx/vignette2.jpg" fotoxx_couple.jpg
take "$fotoxx/color-sat2.jpg" fotoxx_portraits.jpg
take "$fotoxx/flatbook.jpg" fotoxx_book_photo.jpg
take "$fotoxx/batch-convert.jpg" fotoxx_dialog_convert.jpg
take "$fotoxx/denoise.jpg" fotoxx_dialog_denoise.jpg
take "$pkg/usr/share/doc/imagemagick-6-common/html/images/wizard.png" im_wizard.png
edu=$pkg/usr/share/doc/debian-edu-doc-en/debian-edu-bookworm-manual-images
take "$edu/27-Tjener-Xfce_Desktop.png" edu_desktop.png
take "$edu/26-Tjener-Xfce_Desktop_Browser.png" edu_desktop_browser.png
/usr/bin/python3 - "$pkg/usr/lib/python3/dist-packages/scipy/misc/face.dat" "$work/raccoon.ppm" <<'PY'
import bz2, sys
import numpy
face = numpy.frombuffer(bz2.decompress(open(sys.argv[1], 'rb').read()), dtype='uint8').reshape(768, 1024, 3)
with open(sys.argv[2], 'wb') as f:
    f.write(b'P6 1024 768 255\n' + face.tobytes())
PY
convert "$work/raccoon.ppm" -quality 92 "$out/scipy_raccoon.jpg"
# Tux Paint's cut-out photos, laid on a table top as a phone would see them.
stamps=$pkg/usr/share/tuxpaint/stamps
on_table() { # STAMP OUT COLOUR
    convert \( -size 1200x900 xc:"$3" -attenuate 0.4 +noise Gaussian -blur 0x2 \) \( "$stamps/$1" -resize 800x700 \) \
        -gravity center -composite -quality 90 "$out/$2"
}
on_table food/fruit/Strawberry2.png tux_strawberries.jpg '#c9a77c'
on_table food/fruit/avocado.png tux_avocado.jpg '#e8e2d6'
on_table animals/mammals/bears/european-bear.png tux_bear.jpg '#7d8c5a'
on_table animals/mammals/aquatic/otter.png tux_otter.jpg '#6f8799'

# page OUT TEXT FONT ANGLE NOISE BLUR POINTS: a text page turned by ANGLE degrees.
page() {
    convert -background white -fill '#202020' -font "$3" -pointsize "$7" -interline-spacing 14 label:"$(cat "$2")" \
        -bordercolor white -border 60 -background white -rotate "$4" +repage -attenuate "$5" +noise Gaussian \
        -blur 0x"$6" -quality 92 "$out/$1"
    cp "$2" "$set_dir/truth/$(basename "${1%.*}").txt"
}
page page_en5_tilt7.jpg "$texts/en5.txt" "$serif" 7 0.4 0.7 30
page page_zh4_tilt-11.png "$texts/zh4.txt" "$cjk" -11 0.4 0.6 30
page page_zh4_serif_tilt6.jpg "$texts/zh4.txt" "$cjk_serif" 6 0.5 0.8 28
page receipt_tilt-8.jpg "$texts/receipt.txt" "$mono" -8 0.5 0.6 26
# photographed OUT TEXT FONT DESK: a page on a desk seen at an angle, lit unevenly.
photographed() {
    convert -background white -fill '#222' -font "$3" -pointsize 30 -interline-spacing 12 label:"$(cat "$2")" \
        -bordercolor white -border 50 "$work/page.png"
    local w h
    w=$(identify -format %w "$work/page.png")
    h=$(identify -format %h "$work/page.png")
    convert "$work/page.png" -virtual-pixel background -background "$4" -distort Perspective \
        "0,0 30,60  $w,0 $((w - 70)),20  $w,$h $((w + 30)),$((h + 30))  0,$h 40,$((h - 30))" \
        \( -size "${w}x${h}" gradient:'#a8a8a8-#f8f8f8' \) -compose multiply -composite \
        -attenuate 0.7 +noise Gaussian -blur 0x1.2 -quality 86 "$out/$1"
    cp "$2" "$set_dir/truth/$(basename "${1%.*}").txt"
}
photographed photo_page_en5.jpg "$texts/en5.txt" "$sans" '#3b2a1e'
photographed photo_page_zh4.jpg "$texts/zh4.txt" "$cjk" '#8a8f96'

# Drawings: a cartoon girl with a balloon, and hills under a sun.
convert -size 900x900 xc:'#e9f7ff' -stroke '#222' -strokewidth 5 -fill '#ffdcb8' -draw "circle 420,260 420,160" \
    -fill '#7a4a21' -draw "path 'M 320,240 Q 420,100 520,240 L 520,200 Q 420,60 320,200 Z'" \
    -fill '#e84a7f' -draw "polygon 420,360 300,700 540,700" -fill '#222' -draw "circle 385,250 385,262" \
    -draw "circle 455,250 455,262" -fill none -draw "arc 380,270 460,320 20,160" -draw "line 360,700 340,840" \
    -draw "line 480,700 500,840" -draw "line 470,450 640,330" -draw "line 640,330 700,120" -fill '#ffd23f' \
    -draw "ellipse 700,90 60,75 0,360" "$out/drawing_girl_balloon.png"
convert -size 1200x800 xc:'#9fd8ff' -stroke '#1d3b1d' -strokewidth 4 -fill '#66bb6a' \
    -draw "path 'M 0,560 Q 300,380 600,560 T 1200,520 L 1200,800 L 0,800 Z'" -fill '#388e3c' \
    -draw "path 'M 0,650 Q 400,520 800,660 T 1200,640 L 1200,800 L 0,800 Z'" -fill '#ffca28' \
    -draw "circle 980,160 980,90" -fill white -draw "ellipse 300,160 110,45 0,360" "$out/drawing_hills.png"

# Captures under Xvfb: a browser window showing a manual page, the whole screen with a photo opened in the
# browser, and the whole screen with a long document.
. "$here/vision-set-captures.sh"
start_screen
browse "file://$pkg/usr/share/gimp/2.0/help/en/tone-mapping-example.html" window_gimp_manual.png 1280,860 window 40,30
browse "file://$gimp/filters/examples/taj_orig.jpg" screen_photo_in_browser.png 1920,1080 screen 40,30
browse "file://$pkg/usr/share/doc/debian-edu-doc-en/debian-edu-bookworm-manual.html" screen_edu_manual.png 1920,1080 screen 40,30
echo "picture set in $out"
