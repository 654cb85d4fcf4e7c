#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes a sixth held-out picture set for bench/vision-accuracy.sh, from packages none of the earlier sets used,
# in SET/fresh6 (default /tmp/lumaro-vision-set):
#   Scratch's photographed backgrounds (beaches, canyons, woods, a lake, roads and rails, a castle, a mansion,
#   campus buildings, a skyline over water, a shop, a kitchen, a hall, a cinema lobby, stadiums full of people)
#   and its drawn rooms, stage and cartoon woman; Tux Typing's landscapes and landmarks (a glacier, rice
#   terraces, a volcano, a hot spring, a parliament at night, the Colosseum, a skyline); Qt's example pictures (a
#   mountain lake, Niagara Falls, a dahlia, dishes from a recipe browser, a painting of a crowd of trolls);
#   Hugin's photos of Grand Central's concourse and the Pantheon; digiKam's lake; CImg's parrot and toy cow;
#   libsixel's snake and anime drawing; GIMP's kitten; GNOME's robin; Neverball's rendered levels; Pingus' map;
#   screenshots from the manuals of Gwenview, gThumb, Pitivi, Shotwell, Kdenlive, KHangMan, Kalzium and GNOME;
#   new pages in English and Chinese turned 5–15° or photographed on a desk; and captures under Xvfb of a browser
#   showing a recipe page and GRASS' manual, and of a terminal listing processes.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked. Needs imagemagick, fonts-noto-cjk,
# fonts-dejavu, xvfb, xdotool, chromium and xterm. DISPLAY_NUMBER picks the Xvfb display (default 85).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-85}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
serif=/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
mono=/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf
out=$set_dir/fresh6
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download scratch tuxtype-data qtbase5-examples qtdeclarative5-examples qtwebengine5-examples \
    qtquickcontrols2-5-examples hugin-data digikam-data cimg-examples libsixel-examples gimp-data gnome-user-docs \
    neverball-data pingus-data gwenview gthumb-data pitivi shotwell-common kdenlive-data khangman kalzium-data \
    grass-doc >/dev/null && for deb in *.deb; do dpkg -x "$deb" unpacked; done)
pkg=$work/unpacked/usr/share
qt=$work/unpacked/usr/lib/x86_64-linux-gnu/qt5/examples
take() { # FILE OUT: one packaged picture (converted when OUT's type differs), or a note that it is missing
    if [ ! -f "$1" ]; then
        echo "make-vision-fresh6-set: $1 not found" >&2
    elif [ "${1##*.}" = "${2##*.}" ]; then
        cp "$1" "$out/$2"
    else
        convert "$1" -quality 92 "$out/$2"
    fi
}

scratch=$pkg/scratch/Media
take "$scratch/Backgrounds/Nature/beach-malibu.jpg" sx_beach.jpg
take "$scratch/Backgrounds/Nature/grand-canyon.jpg" sx_grand_canyon.jpg
take "$scratch/Backgrounds/Nature/forest.jpg" sx_birch_forest.jpg
take "$scratch/Backgrounds/Nature/lake.jpg" sx_lake_shore.jpg
take "$scratch/Backgrounds/Nature/pathway.jpg" sx_garden_arch.jpg
take "$scratch/Backgrounds/Outdoors/train-tracks1.jpg" sx_rail_tracks.jpg
take "$scratch/Backgrounds/Outdoors/route66.jpg" sx_empty_road.jpg
take "$scratch/Backgrounds/Outdoors/castle.jpg" sx_castle.jpg
take "$scratch/Backgrounds/Outdoors/mansion.jpg" sx_mansion.jpg
take "$scratch/Backgrounds/Outdoors/building-at-mit.jpg" sx_campus_building.jpg
take "$scratch/Backgrounds/Outdoors/building-fireproof.jpg" sx_brick_warehouse.jpg
take "$scratch/Backgrounds/Outdoors/wooden-house.jpg" sx_wooden_shack.jpg
take "$scratch/Backgrounds/Outdoors/city-with-water.jpg" sx_skyline_river.jpg
take "$scratch/Backgrounds/Outdoors/hallway_outdoors.jpg" sx_cloister.jpg
take "$scratch/Backgrounds/Indoors/clothing-store.jpg" sx_clothing_store.jpg
take "$scratch/Backgrounds/Indoors/kitchen.jpg" sx_kitchen.jpg
take "$scratch/Backgrounds/Indoors/hall.jpg" sx_office_hall.jpg
take "$scratch/Backgrounds/Indoors/the-movies-inside.jpg" sx_cinema_lobby.jpg
take "$scratch/Backgrounds/Sports/football-field.jpg" sx_stadium_crowd.jpg
take "$scratch/Backgrounds/Sports/baseball-field.jpg" sx_ballpark_crowd.jpg
take "$scratch/Backgrounds/Indoors/room1.jpg" sx_drawn_library.jpg
take "$scratch/Backgrounds/Indoors/spotlight-stage.jpg" sx_drawn_stage.jpg
take "$scratch/Backgrounds/Outdoors/school2.jpg" sx_drawn_school.jpg
take "$scratch/Costumes/People/womanbun.png" sx_drawn_woman.png
take "$scratch/Costumes/Animals/squirrel1.png" sx_squirrel.png
tux=$pkg/tuxtype
take "$tux/images/kcas3.jpg" tt_glacier.jpg
take "$tux/images/kcas11.jpg" tt_rice_terraces.jpg
take "$tux/images/kcas6.jpg" tt_volcano.jpg
take "$tux/images/kcas8.jpg" tt_hot_spring.jpg
take "$tux/themes/hungarian/images/photo.png" tt_parliament_night.png
take "$tux/themes/italian/images/photo.png" tt_colosseum.png
take "$tux/themes/korean/images/photo.png" tt_city_skyline.png
take "$qt/widgets/graphicsview/weatheranchorlayout/images/place.jpg" qt_mountain_lake.jpg
take "$qt/quick/customitems/scrollbar/pics/niagara_falls.jpg" qt_niagara_falls.jpg
take "$qt/widgets/painting/composition/flower.jpg" qt_dahlia.jpg
recipes=$qt/webengine/recipebrowser/resources/pages
take "$recipes/images/burger.jpg" qw_burger.jpg
take "$recipes/images/cupcakes.jpg" qw_cupcakes.jpg
take "$recipes/images/pasta.jpg" qw_pasta.jpg
take "$recipes/images/soup.jpg" qw_soup.jpg
take "$recipes/images/skewers.jpg" qw_skewers.jpg
take "$qt/quickcontrols2/imagine/musicplayer/images/album-cover.jpg" qq_trolls_painting.jpg
hugin=$pkg/hugin/xrc/data/help_en_EN
take "$hugin/800px-C_Marchi-GrandCentral-adj.jpg" hg_grand_central.jpg
take "$hugin/360px-Pantheon-150x100-rect-panini.jpg" hg_pantheon.jpg
take "$pkg/digikam/about/images/body-background.jpg" dk_lake_hills.jpg
take "$pkg/doc/cimg-dev/examples/img/parrot.ppm" cimg_parrot.jpg
take "$pkg/doc/cimg-dev/examples/img/milla.bmp" cimg_toy_cow.png
take "$pkg/doc/libsixel-examples/examples/images/snake.png" sixel_snake.png
take "$pkg/doc/libsixel-examples/examples/images/vimperator3.png" sixel_anime_drawing.png
take "$pkg/gimp/2.0/scripts/images/beavis.jpg" gd_kitten.jpg
take "$pkg/help/C/gnome-help/figures/color-camera.png" gh_robin.png
take "$pkg/games/neverball/shot-fwp/museum.png" nb_museum_render.png
take "$pkg/games/neverball/shot-fwp/tennis.png" nb_tennis_render.png
take "$pkg/games/pingus/data/images/worldmaps/tutorial_layer0.jpg" pg_island_map.jpg
manual=$pkg/doc/HTML/en
take "$manual/gwenview/view_mode.png" gv_view_mode.png
take "$pkg/help/C/gthumb/figures/main-win.png" gt_main_window.png
take "$pkg/help/C/pitivi/figures/mainwindow.jpg" pv_main_window.jpg
take "$pkg/help/C/shotwell/figures/editing_overview.png" sw_editing.png
take "$manual/kdenlive/kdenlive-quickstart-effectstack.png" kd_effect_stack.png
take "$manual/khangman/khangman-desert.png" kh_desert_theme.png
take "$manual/kalzium/screenshot7.png" kz_glossary.png
take "$pkg/help/C/gnome-help/figures/screenshot-tool.png" gh_screenshot_tool.png

. "$here/vision-set-pages.sh"
page page_en9_tilt6.jpg "$texts/en9.txt" "$serif" 6 0.5 0.6 30
page page_en10_tilt-13.jpg "$texts/en10.txt" "$mono" -13 0.6 0.7 28
page page_zh8_tilt-9.jpg "$texts/zh8.txt" "$cjk_serif" -9 0.5 0.6 30
page page_zh9_tilt14.jpg "$texts/zh9.txt" "$cjk" 14 0.5 0.8 32
photographed photo_page_en9.jpg "$texts/en9.txt" "$serif" '#5a3b24' "50 20 -30 60 -10 20 40 -40" '#f0f0f0-#a4a4a4' 1.1
photographed photo_page_zh8.jpg "$texts/zh8.txt" "$cjk" '#2f3b4a' "50 20 -30 60 -10 20 40 -40" '#f0f0f0-#a4a4a4' 1.1

# Captures under Xvfb: browser windows showing a recipe page and GRASS' manual, and a terminal window listing
# processes.
. "$here/vision-set-captures.sh"
start_screen
browse "file://$recipes/soup.html" window_recipe_page.png 1280,900 window 120,40
browse "file://$pkg/doc/grass-doc/html/index.html" screen_grass_manual.png 1920,1080 screen 0,0
DISPLAY=$display xterm -geometry 120x36+160+90 -fa Monospace -fs 11 -bg '#1e1e1e' -fg '#d0d0d0' -e bash -c \
    "ps -eo pid,user,pcpu,pmem,comm --sort=-pcpu | head -40; sleep 30" &
terminal=$!
sleep 3
import -window "$(DISPLAY=$display xdotool search --onlyvisible --class xterm | tail -1)" -display "$display" \
    "$out/window_process_list.png"
kill "$terminal" 2>/dev/null || true
echo "picture set in $out"
