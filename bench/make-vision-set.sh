#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes the picture set bench/vision-accuracy.sh measures, in SET (default /tmp/lumaro-vision-set):
#   tuned/    the reference photos of ../shared/models/test-images and pictures made here: text pages in
#             English and Chinese turned 5–15° with noise and blur, a photographed page (perspective, uneven
#             light), drawings, screenshots of real browser windows under Xvfb;
#   heldout/  pictures the analysis was never tuned on: the photos, paintings and text pictures of Debian's
#             opencv-doc and darknet packages (fetched with apt-get download, not installed), screenshots and
#             drawings from installed documentation, and more made pages, drawings and windows;
#   truth/    the true text of every made text picture.
# Needs imagemagick, fonts-noto-cjk, fonts-dejavu, xvfb, xdotool and chromium. DISPLAY_NUMBER picks the
# Xvfb display (default 94).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-94}
models=${LUMARO_MODELS_DIR:-$here/../../shared/models}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
serif=/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
mkdir -p "$set_dir"/{tuned,heldout,truth}
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

# page OUT TEXT FONT ANGLE NOISE BLUR POINTS: a text page turned by ANGLE degrees.
page() {
    convert -background white -fill '#202020' -font "$3" -pointsize "$7" -interline-spacing 14 label:"$(cat "$2")" \
        -bordercolor white -border 60 -background white -rotate "$4" +repage -attenuate "$5" +noise Gaussian \
        -blur 0x"$6" -quality 92 "$set_dir/$1"
    cp "$2" "$set_dir/truth/$(basename "${1%.*}").txt"
}
page tuned/page_en1_tilt7.jpg "$texts/en1.txt" "$serif" 7 0.4 0.6 30
page tuned/page_zh1_tilt-10.jpg "$texts/zh1.txt" "$cjk" -10 0.4 0.6 32
page tuned/page_en2_tilt12.png "$texts/en2.txt" "$sans" 12 0.3 0.8 28
page heldout/page_zh2_tilt6.jpg "$texts/zh2.txt" "$cjk" 6 0.5 0.7 30
page heldout/page_en2_tilt-14.jpg "$texts/en2.txt" "$serif" -14 0.5 0.5 30
page heldout/page_zh1_tilt15.png "$texts/zh1.txt" "$cjk" 15 0.3 0.9 30

# photographed OUT TEXT FONT BACKGROUND: a page seen at an angle on a desk, lit unevenly.
photographed() {
    convert -background white -fill '#222' -font "$3" -pointsize 30 -interline-spacing 12 label:"$(cat "$2")" \
        -bordercolor white -border 50 "$work/page.png"
    local w h
    w=$(identify -format %w "$work/page.png"); h=$(identify -format %h "$work/page.png")
    convert "$work/page.png" -virtual-pixel background -background "$4" -distort Perspective \
        "0,0 60,90  $w,0 $((w - 30)),40  $w,$h $((w + 10)),$((h + 20))  0,$h 20,$((h - 10))" \
        \( -size "${w}x${h}" gradient:'#ffffff-#b0b0b0' \) -compose multiply -composite \
        -attenuate 0.6 +noise Gaussian -blur 0x1 -quality 88 "$set_dir/$1"
    cp "$2" "$set_dir/truth/$(basename "${1%.*}").txt"
}
photographed tuned/photo_page_en2.jpg "$texts/en2.txt" "$serif" '#6d4c2f'
photographed heldout/photo_page_zh2.jpg "$texts/zh2.txt" "$cjk" '#404850'

# Drawings: flat colours, black outlines.
convert -size 900x700 xc:'#bfe6ff' -fill '#7cc242' -draw "rectangle 0,520 900,700" -stroke black -strokewidth 4 \
    -fill '#ffd400' -draw "circle 760,120 820,120" -fill '#e94e3c' -draw "polygon 200,330 350,200 500,330" \
    -fill '#f4d7a1' -draw "rectangle 220,330 480,520" -fill '#6b3e1f' -draw "rectangle 320,420 380,520" \
    -fill '#8fd3ff' -draw "rectangle 250,370 300,410" -fill '#2e8b57' -draw "circle 680,400 680,300" \
    -fill '#6b3e1f' -draw "rectangle 665,480 695,560" "$set_dir/tuned/drawing_house.png"
convert -size 800x800 xc:white -stroke black -strokewidth 6 -fill '#ffcc99' -draw "circle 400,250 400,130" \
    -fill black -draw "circle 355,230 355,242" -draw "circle 445,230 445,242" -fill none \
    -draw "arc 340,250 460,330 20,160" -draw "line 400,370 400,580" -draw "line 400,430 290,520" \
    -draw "line 400,430 510,520" -draw "line 400,580 320,730" -draw "line 400,580 480,730" \
    "$set_dir/tuned/drawing_stickman.png"
convert -size 1000x700 xc:'#fff6e0' -stroke '#333' -strokewidth 5 -fill '#ff8a65' -draw "ellipse 500,380 260,160 0,360" \
    -fill '#4fc3f7' -draw "polygon 740,380 900,260 900,500" -fill white -draw "circle 380,340 380,300" \
    -fill black -draw "circle 385,340 385,325" -fill '#ffd54f' -draw "circle 120,120 120,60" \
    -draw "circle 200,600 200,570" -draw "circle 850,110 850,80" "$set_dir/heldout/drawing_fish.png"
convert -size 900x900 xc:'#f0f0ff' -stroke '#222' -strokewidth 5 -fill '#a5d6a7' -draw "roundrectangle 150,300 750,800 40,40" \
    -fill '#ef9a9a' -draw "polygon 100,320 450,80 800,320" -fill '#fff59d' -draw "rectangle 250,450 380,580" \
    -draw "rectangle 520,450 650,580" -fill '#8d6e63' -draw "rectangle 400,620 500,800" \
    "$set_dir/heldout/drawing_cottage.png"

# Screenshots of a real browser under Xvfb: the whole screen, and one window.
Xvfb "$display" -screen 0 1600x900x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
sleep 2
browse() { # PAGE OUT SIZE POSITION WINDOW_ONLY
    DISPLAY=$display chromium --no-sandbox --test-type --user-data-dir="$work/chrome" --no-first-run --disable-gpu \
        --window-size="$3" --window-position="$4" "file://$texts/$1" >/dev/null 2>&1 &
    local pid=$! target=root
    sleep 12
    [ "$5" = window ] && target=$(DISPLAY=$display xdotool search --onlyvisible --class chromium | tail -1)
    import -window "$target" -display "$display" "$set_dir/$2"
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
}
browse article.html tuned/screen_article.png 1600,900 0,0 screen
browse news_zh.html tuned/screen_news_zh.png 1600,900 0,0 screen
browse form.html heldout/screen_form.png 1600,900 0,0 screen
browse table.html heldout/screen_table.png 1600,900 0,0 screen
browse news_zh.html heldout/window_news_zh.png 1100,720 50,40 window

cp "$models"/test-images/* "$set_dir/tuned/"
(cd "$work" && apt-get download opencv-doc darknet >/dev/null && for deb in *.deb; do dpkg -x "$deb" unpacked; done)
data=$work/unpacked/usr/share/doc/opencv-doc/examples/data
for photo in person kite giraffe scream; do cp "$work/unpacked/usr/share/darknet/data/$photo.jpg" "$set_dir/heldout/"; done
for photo in basketball2.png baboon.jpg apple.jpg butterfly.jpg fruits.jpg home.jpg leuvenA.jpg aero1.jpg sudoku.png \
    text_defocus.jpg text_motion.jpg imageTextR.png HappyFish.jpg starry_night.jpg ml.png squirrel_cls.jpg \
    smarties.png chicky_512.png licenseplate_motion.jpg graf1.png; do
    cp "$data/$photo" "$set_dir/heldout/"
done
# Screenshots and drawings that installed documentation happens to carry, when it is there.
take() { [ -f "$1" ] && cp "$1" "$set_dir/heldout/$2" || echo "make-vision-set: $1 not found, $2 left out" >&2; }
rust=$(ls -d "$HOME"/.rustup/toolchains/*/share/doc/rust/html 2>/dev/null | head -1 || true)
take "$rust/rustc/images/llvm-cov-show-01.png" shot_llvm_cov.png
take "$rust/book/img/trpl14-01.png" shot_rustdoc.png
take /usr/share/doc/valgrind/html/images/kcachegrind_xtree.png shot_kcachegrind.png
take /usr/share/doc/libleptonica-dev/dave-orig.png drawing_dave.png
echo "picture set in $set_dir"
