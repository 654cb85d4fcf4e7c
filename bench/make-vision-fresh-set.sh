#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes the two later held-out picture sets bench/vision-accuracy.sh measures beside those of
# bench/make-vision-set.sh, in SET (default /tmp/lumaro-vision-set):
#   fresh/    Debian's sample photos of scikit-image, scikit-learn and matplotlib, Plasma's wallpapers (photos
#             and paintings), four pages turned −13…11° and two drawings (its browser captures and window
#             were not kept: four pictures fewer than first scored);
#   fresh2/   the wallpapers of UKUI, Lomiri and MATE (landscapes, animals, food, flowers, drawn pictures),
#             photos and frames of the videos in opencv-doc's tutorials (people walking away or sideways, a
#             lecture hall seen from the back, portraits, a lit-up capitol, an animated film), pages in
#             English and Chinese turned 4–9° or photographed, browser captures of a page and a real window;
#   truth/    the true text of every made text picture.
# The pictures come from the packages at run time (apt-get download, unpacked here, nothing installed);
# the drawings of fresh/ are made anew, so they are alike but not byte for byte the same as
# those first scored. Needs imagemagick, fonts-noto-cjk, fonts-dejavu, xvfb, xdotool, chromium, x11-utils
# and python3-opencv (to take video frames). DISPLAY_NUMBER picks the Xvfb display (default 94).
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
cond=/usr/share/fonts/truetype/dejavu/DejaVuSerifCondensed.ttf
mkdir -p "$set_dir"/{fresh,fresh2,truth}
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download python3-skimage python3-sklearn python-matplotlib-data plasma-workspace-wallpapers \
    ukui-wallpapers lomiri-wallpapers-16.04 lomiri-wallpapers-20.04 mate-backgrounds opencv-doc >/dev/null &&
    for deb in *.deb; do dpkg -x "$deb" unpacked; done)
pkg=$work/unpacked
# take FILE OUT: one packaged picture (the first match of a pattern), or a note that it is missing.
take() {
    local found
    found=$(compgen -G "$1" | head -1 || true)
    if [ -n "$found" ]; then cp "$found" "$set_dir/$2"; else echo "make-vision-fresh-set: $1 not found" >&2; fi
}

# page OUT TEXT FONT ANGLE NOISE BLUR POINTS: a text page turned by ANGLE degrees.
page() {
    convert -background white -fill '#202020' -font "$3" -pointsize "$7" -interline-spacing 14 label:"$(cat "$2")" \
        -bordercolor white -border 60 -background white -rotate "$4" +repage -attenuate "$5" +noise Gaussian \
        -blur 0x"$6" -quality 92 "$set_dir/$1"
    cp "$2" "$set_dir/truth/$(basename "${1%.*}").txt"
}

# ---- fresh/
skimage=$(compgen -G "$pkg/usr/lib/python3/dist-packages/skimage/data" | head -1 || true)
for photo in camera.png rocket.jpg coins.png hubble_deep_field.jpg page.png logo.png; do
    take "$skimage/$photo" "fresh/$photo"
done
take "$pkg/usr/lib/python3/dist-packages/sklearn/datasets/images/china.jpg" fresh/china.jpg
take "$pkg/usr/lib/python3/dist-packages/sklearn/datasets/images/flower.jpg" fresh/flower.jpg
for photo in grace_hopper.jpg Minduka_Present_Blue_Pack.png; do take "$pkg/usr/share/matplotlib/mpl-data/sample_data/$photo" "fresh/$photo"; done
for wall in Altai Autumn FlyingKonqui SafeLanding BytheWater ColdRipple ColorfulCups EveningGlow FallenLeaf Grey Kite \
    Path summer_1am; do
    largest=$(ls -S "$pkg/usr/share/wallpapers/$wall/contents/images/"* 2>/dev/null | head -1 || true)
    take "${largest:-$wall}" "fresh/wp_$wall.jpg"
done
page fresh/page_en_mono_tilt9.jpg "$texts/fresh_en_mono_tilt9.txt" "$mono" 9 0.5 0.6 28
page fresh/page_en_cond_tilt-13.jpg "$texts/fresh_en_cond_tilt-13.txt" "$cond" -13 0.4 0.7 30
page fresh/page_zh_serif_tilt11.jpg "$texts/fresh_zh_serif_tilt11.txt" "$cjk_serif" 11 0.5 0.6 30
page fresh/page_zh_sans_tilt-6.png "$texts/fresh_zh_sans_tilt-6.txt" "$cjk" -6 0.3 0.8 30
convert -size 900x600 xc:'#a8dcff' -fill '#1f5fa8' -draw "rectangle 0,430 900,600" -stroke black -strokewidth 5 \
    -fill '#ffffff' -draw "polygon 430,120 430,380 620,380" -fill '#c0392b' -draw "polygon 250,400 700,400 640,470 310,470" \
    -draw "line 430,120 430,400" "$set_dir/fresh/drawing_boat.png"
convert -size 800x800 xc:'#fff3d6' -stroke black -strokewidth 6 -fill '#f0a040' -draw "circle 400,430 400,250" \
    -draw "polygon 260,300 280,140 360,260" -draw "polygon 540,300 520,140 440,260" -fill black \
    -draw "circle 340,400 340,385" -draw "circle 460,400 460,385" -draw "line 300,480 180,460" \
    -draw "line 500,480 620,460" "$set_dir/fresh/drawing_cat.png"

# ---- fresh2/
bg=$pkg/usr/share/backgrounds
for wall in Bridge_by_Sander_Klootwijk Dragonfly_by_Bolly Infinite-Sea_by_Aury88 Kleiber_by_Lukas_Baubkus \
    Painting-Colors_by__herobrine7gamer Picture_0B_by_freespace Picture_1A_by_freespace aitzgorri_by_Aitzol_Berasategi \
    firstgeneration friends_by_Aitzol_Berasategi greentock_by_Peter_Nerlich life_by_Aitzol_Berasategi \
    picosdeeuropa_by_Aitzol_Berasategi seeding_by_Clements_Engelhardt sunset_by_Aitzol_Berasategi the-mouse; do
    take "$bg/$wall.jpg" "fresh2/$wall.jpg"
done
for drawn in city desert goldfish calla; do take "$bg/$drawn.png" "fresh2/$drawn.png"; done
for nature in Aqua Dune Garden LadyBird Storm YellowFlower; do take "$bg/mate/nature/$nature.jpg" "fresh2/mate_$nature.jpg"; done
html=$pkg/usr/share/doc/opencv-doc/opencv4/html
data=$pkg/usr/share/doc/opencv-doc/examples/data
for photo in studentsSample_input 227943776_1 230501201_1 ldr_robertson; do take "$html/$photo.jpg" "fresh2/$photo.jpg"; done
# Frames of the tutorials' videos: people walking across a campus (whole frame, and two close crops where
# they are seen from behind and from the side), and an animated film.
/usr/bin/python3 - "$data" "$work" <<'PY'
import cv2, sys
data, work = sys.argv[1:]
for video, frames in (('vtest.avi', (60, 300, 560)), ('Megamind.avi', (135,))):
    capture = cv2.VideoCapture(f'{data}/{video}')
    for frame in frames:
        capture.set(cv2.CAP_PROP_POS_FRAMES, frame)
        ok, picture = capture.read()
        if ok:
            cv2.imwrite(f'{work}/{video.split(".")[0]}_{frame}.png', picture)
PY
convert "$work/vtest_60.png" -quality 92 "$set_dir/fresh2/walkers_campus.jpg"
convert "$work/vtest_560.png" -crop 330x330+20+220 +repage -resize 200% -quality 92 "$set_dir/fresh2/walkers_from_behind.jpg"
convert "$work/vtest_300.png" -crop 300x300+300+150 +repage -resize 200% -quality 92 "$set_dir/fresh2/walker_side.jpg"
convert "$work/Megamind_135.png" -quality 92 "$set_dir/fresh2/film_animated.jpg"
page fresh2/page_en3_tilt8.jpg "$texts/en3.txt" "$sans" 8 0.4 0.6 30
page fresh2/page_zh3_tilt-9.png "$texts/zh3.txt" "$cjk_serif" -9 0.4 0.7 30
page fresh2/page_en4_tilt-4.jpg "$texts/en4.txt" "$mono" -4 0.6 0.8 26
# A page photographed on a desk at an angle, lit unevenly.
convert -background white -fill '#222' -font "$serif" -pointsize 30 -interline-spacing 12 label:"$(cat "$texts/en4.txt")" \
    -bordercolor white -border 50 "$work/desk.png"
w=$(identify -format %w "$work/desk.png")
h=$(identify -format %h "$work/desk.png")
convert "$work/desk.png" -virtual-pixel background -background '#5a6b3a' -distort Perspective \
    "0,0 40,70  $w,0 $((w - 50)),30  $w,$h $((w + 20)),$((h + 10))  0,$h 10,$((h - 20))" \
    \( -size "${w}x${h}" gradient:'#f4f4f4-#a0a0a0' \) -compose multiply -composite \
    -attenuate 0.6 +noise Gaussian -blur 0x1 -quality 88 "$set_dir/fresh2/photo_page_en4.jpg"
cp "$texts/en4.txt" "$set_dir/truth/photo_page_en4.txt"

# Captures under Xvfb: a browser showing a page (whole screen), and a small real window alone.
Xvfb "$display" -screen 0 1600x900x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
sleep 2
DISPLAY=$display chromium --no-sandbox --test-type --user-data-dir="$work/chrome" --no-first-run --disable-gpu \
    --window-size=1600,900 --window-position=0,0 "file://$texts/docpage.html" >/dev/null 2>&1 &
browser=$!
sleep 12
import -window root -display "$display" "$set_dir/fresh2/screen_docpage.png"
kill "$browser" 2>/dev/null || true
wait "$browser" 2>/dev/null || true
DISPLAY=$display xmessage -geometry 640x300+100+100 -file "$texts/en3.txt" -buttons 'Keep,Discard' >/dev/null 2>&1 &
dialog=$!
sleep 2
import -window "$(DISPLAY=$display xdotool search --onlyvisible --class xmessage | tail -1)" -display "$display" \
    "$set_dir/fresh2/window_message.png"
kill "$dialog" 2>/dev/null || true
echo "picture sets in $set_dir/fresh and $set_dir/fresh2"
