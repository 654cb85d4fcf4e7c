#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes a fifth held-out picture set for bench/vision-accuracy.sh, from packages none of the earlier sets used,
# in SET/fresh5 (default /tmp/lumaro-vision-set):
#   Palapeli's puzzle photos (a chameleon, a bee on an aster, sliced citrus fruit, a lit bridge at night, a
#   château); libjxl's test photos (a furnished room, a sea cliff, tulips, blossom, asters); the backgrounds of
#   two Ren'Py games (a lecture hall, a campus, a club house, a meadow, the Washington Monument, the White House)
#   and their drawn characters and a drawn band on stage; Kivy's example pictures (towers at night, a ruined
#   abbey's arches, a cat beside a mug on a desk, an impossible building, rendered bubbles); the impressionist
#   paintings and bird drawings of WordPress' themes; Scribus' template pictures (a man's portrait, people
#   flying kites on a beach, a pizza, prawns, a canyon, a skyline at dusk); a bird from Inkscape; Debian's
#   soft-waves artwork; screenshots from the OpenShot, Marble and Plasma manuals; new pages in English and Chinese
#   turned 5–15° or photographed on a desk; and captures under Xvfb of a browser showing OpenShot's manual and a photo
#   page, and of a terminal listing a folder.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked. Needs imagemagick (with webp),
# fonts-noto-cjk, fonts-dejavu, xvfb, xdotool, chromium, xterm and x11-utils. DISPLAY_NUMBER picks the Xvfb
# display (default 84).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-84}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
serif=/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
condensed=/usr/share/fonts/truetype/dejavu/DejaVuSerifCondensed.ttf
out=$set_dir/fresh5
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download palapeli-data libjxl-testdata renpy-thequestion renpy-demo python-kivy-examples \
    wordpress-theme-twentytwentyone wordpress-theme-twentytwentytwo scribus-template inkscape desktop-base \
    openshot-qt-doc marble-data plasma-desktop-data >/dev/null && for deb in *.deb; do dpkg -x "$deb" unpacked; done)
pkg=$work/unpacked/usr/share
take() { # FILE OUT: one packaged picture (converted when OUT's type differs), or a note that it is missing
    if [ ! -f "$1" ]; then
        echo "make-vision-fresh5-set: $1 not found" >&2
    elif [ "${1##*.}" = "${2##*.}" ]; then
        cp "$1" "$out/$2"
    else
        convert "$1" -quality 92 "$out/$2"
    fi
}

puzzles=$pkg/palapeli/collection
take "$puzzles/panther-chameleon-female.jpg" pp_chameleon.jpg
take "$puzzles/european-honey-bee.jpg" pp_honey_bee.jpg
take "$puzzles/citrus-fruits.jpg" pp_citrus_slices.jpg
take "$puzzles/cincinnati-bridge.jpg" pp_bridge_night.jpg
take "$puzzles/castle-maintenon.jpg" pp_chateau.jpg
jxl=$pkg/libjxl-testdata
take "$jxl/jxl/hdr_room.png" jxl_room.png
take "$jxl/jxl/flower/flower.png" jxl_asters.jpg
take "$jxl/external/wesaturate/500px/tmshre_riaphotographs_srgb8.png" jxl_tulips.png
take "$jxl/external/wesaturate/500px/cvo9xd_keong_macan_srgb8.png" jxl_sea_cliff.png
take "$jxl/external/wesaturate/500px/u76c0g_bliznaca_srgb8.png" jxl_blossom.png
question=$pkg/games/renpy/the_question/game/images
take "$question/bg lecturehall.jpg" rq_lecture_hall.jpg
take "$question/bg uni.jpg" rq_campus.jpg
take "$question/bg club.jpg" rq_club_house.jpg
take "$question/bg meadow.jpg" rq_meadow.jpg
take "$question/sylvie green smile.png" rq_sylvie_drawing.png
demo=$pkg/games/renpy/demo/game/images
take "$demo/bg washington.jpg" rd_washington_monument.jpg
take "$demo/bg whitehouse.jpg" rd_white_house.jpg
take "$demo/concert1.png" rd_band_drawing.png
take "$demo/eileen happy.png" rd_eileen_drawing.png
kivy=$pkg/kivy-examples
take "$kivy/widgets/cityCC0.png" kv_towers_night.jpg
take "$kivy/demo/pictures/images/Wall.jpg" kv_abbey_arches.jpg
take "$kivy/demo/pictures/images/faust_github.jpg" kv_cat_desk.jpg
take "$kivy/demo/pictures/images/Ill1.jpg" kv_impossible_building.jpg
take "$kivy/demo/pictures/images/Bubbles.jpg" kv_bubbles.jpg
themes=$pkg/wordpress/wp-content/themes
take "$themes/twentytwentyone/assets/images/Reading.jpg" wp_painting_reading.jpg
take "$themes/twentytwentyone/assets/images/in-the-bois-de-boulogne.jpg" wp_painting_bois_de_boulogne.jpg
take "$themes/twentytwentyone/assets/images/playing-in-the-sand.jpg" wp_painting_sand.jpg
take "$themes/twentytwentyone/assets/images/self-portrait-1885.jpg" wp_painting_self_portrait.jpg
take "$themes/twentytwentyone/assets/images/villa-with-orange-trees-nice.jpg" wp_painting_villa.jpg
take "$themes/twentytwentytwo/assets/images/ducks.jpg" wp_ducks_drawing.jpg
take "$themes/twentytwentytwo/assets/images/bird-on-salmon.jpg" wp_bird_drawing.jpg
scribus=$pkg/scribus/templates
take "$scribus/scribus_project_de/craigbradney.jpg" sc_portrait_man.jpg
take "$scribus/nl1-bw/kites-bw.png" sc_kites_beach.png
take "$scribus/menu2/pizza.jpg" sc_pizza.jpg
take "$scribus/menu1/teriyaki.png" sc_prawns.jpg
take "$scribus/br2/nature.jpg" sc_canyon.jpg
take "$scribus/br2/sunset.jpg" sc_skyline_dusk.jpg
take "$pkg/inkscape/pixmaps/ticotico.jpg" ink_sparrow.jpg
take "$pkg/desktop-base/softwaves-theme/grub/grub-16x9.png" db_softwaves.png
openshot=$pkg/doc/openshot-qt/html/_images
take "$openshot/main-window.jpg" os_main_window.jpg
take "$openshot/title-editor.jpg" os_title_editor.jpg
take "$openshot/clip-effects.jpg" os_clip_effects.jpg
take "$openshot/quick-start-play.jpg" os_preview_jellyfish.jpg
take "$pkg/doc/HTML/en/marble/mapview-1.png" mb_map_view.png
take "$pkg/doc/HTML/en/marble/routing-1.png" mb_routing.png
take "$pkg/doc/HTML/en/plasma-desktop/plasma-desktop-annotated.png" pd_desktop_annotated.png
take "$pkg/doc/HTML/en/plasma-desktop/application-launcher.png" pd_application_launcher.png

. "$here/vision-set-pages.sh"
page page_en7_tilt9.jpg "$texts/en7.txt" "$serif" 9 0.5 0.7 30
page page_en8_tilt-5.jpg "$texts/en8.txt" "$condensed" -5 0.6 0.8 28
page page_zh6_tilt-12.jpg "$texts/zh6.txt" "$cjk" -12 0.5 0.6 30
page page_zh7_tilt15.jpg "$texts/zh7.txt" "$cjk_serif" 15 0.4 0.7 32
photographed photo_page_en8.jpg "$texts/en8.txt" "$sans" '#6b4a2f' "30 60 -60 20 -20 -30 10 30" '#9c9c9c-#f4f4f4' 1.0
photographed photo_page_zh6.jpg "$texts/zh6.txt" "$cjk" '#3d4a3a' "30 60 -60 20 -20 -30 10 30" '#9c9c9c-#f4f4f4' 1.0

# Captures under Xvfb: browser windows showing WordPress' readme and a page of puzzle photos, and a terminal
# window listing a folder.
cat >"$work/photos.html" <<EOF
<html><body style="font-family:serif;background:#fff;margin:30px"><h1>Holiday pictures</h1>
<p>A few of the pictures from the trip, in the order they were taken.</p>
$(for name in castle-maintenon cincinnati-bridge citrus-fruits european-honey-bee; do
    echo "<figure style='display:inline-block;margin:10px'><img src='$puzzles/$name.jpg' height='260'><figcaption>$name</figcaption></figure>"
done)</body></html>
EOF
. "$here/vision-set-captures.sh"
start_screen
browse "file://$pkg/doc/openshot-qt/html/index.html" window_openshot_manual.png 1280,860 window 80,50
browse "file://$work/photos.html" screen_holiday_page.png 1920,1080 screen 80,50
DISPLAY=$display xterm -geometry 110x34+200+120 -fa Monospace -fs 11 -e bash -c \
    "cd '$puzzles' && ls -l --time-style=long-iso; df -h / | tail -1; sleep 30" &
terminal=$!
sleep 3
import -window "$(DISPLAY=$display xdotool search --onlyvisible --class xterm | tail -1)" -display "$display" \
    "$out/window_terminal_listing.png"
kill "$terminal" 2>/dev/null || true
echo "picture set in $out"
