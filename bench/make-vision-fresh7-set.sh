#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes a seventh held-out picture set for bench/vision-accuracy.sh, from packages none of the earlier sets used,
# in SET/fresh7 (default /tmp/lumaro-vision-set):
#   Endless Sky's landscape photos (coasts, fields, fog, woods, snow, valleys, canyons, deserts, dunes), its city
#   skylines by day and night, launch pads, a factory at night and a tunnel; Gramps' example portraits and group
#   photos of people (old prints, a yawning man, children, a couple at a table) and its engraving of a crowd;
#   PyWavelets' cameraman and aerial view; libvips' owl; xteddy's plush toys and drawn orca; Extreme Tux Racer's
#   cut-out animals; Wesnoth's painted story scenes and portraits; FreeOrion's rendered planet, ship hull and
#   species art; screenshots from the manuals of Okular, Dolphin and
#   Kamoso, from Kodi's touch skin and from Zim; new pages in English and Chinese turned or photographed on a
#   desk; and captures under Xvfb of a browser showing libvips' manual and a folder listing.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked. Needs imagemagick, unzip,
# fonts-noto-cjk, fonts-dejavu, xvfb, xdotool and chromium. DISPLAY_NUMBER picks the Xvfb display (default 81).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-81}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
serif=/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf
out=$set_dir/fresh7
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download endless-sky-data gramps python3-pywt libvips-doc xteddy extremetuxracer-data \
    wesnoth-1.16-httt freeorion-data okular dolphin kamoso kodi-data zim >/dev/null &&
    for deb in *.deb; do dpkg -x "$deb" unpacked; done)
pkg=$work/unpacked/usr/share
take() { # FILE OUT: one packaged picture (converted when OUT's type differs), or a note that it is missing
    if [ ! -f "$1" ]; then
        echo "make-vision-fresh7-set: $1 not found" >&2
    elif [ "${1##*.}" = "${2##*.}" ]; then
        cp "$1" "$out/$2"
    else
        convert "$1" -quality 92 "$out/$2"
    fi
}

land=$pkg/games/endless-sky/images/land
take "$land/beach2.jpg" es_rocky_coast.jpg
take "$land/fields3.jpg" es_green_fields.jpg
take "$land/fields5.jpg" es_cypress_hill.jpg
take "$land/fog4.jpg" es_fog_cliffs.jpg
take "$land/forest0.jpg" es_wooded_hills.jpg
take "$land/sky6.jpg" es_volcano_lake.jpg
take "$land/snow6.jpg" es_snow_peak.jpg
take "$land/valley2.jpg" es_river_valley.jpg
take "$land/water2.jpg" es_lake_reeds.jpg
take "$land/canyon3.jpg" es_canyon.jpg
take "$land/desert2.jpg" es_desert.jpg
take "$land/dune1.jpg" es_dunes.jpg
take "$land/mountain7.jpg" es_mountain_ridge.jpg
take "$land/bwerner1.jpg" es_sea_arch.jpg
take "$land/bwerner0.jpg" es_cliff_tower.jpg
take "$land/city0.jpg" es_harbour_skyline.jpg
take "$land/city11.jpg" es_city_from_above.jpg
take "$land/city17-sfiera.jpg" es_waterfront_blocks.jpg
take "$land/city3.jpg" es_skyline_storm.jpg
take "$land/city6.jpg" es_tower_in_fog.jpg
take "$land/city18-iridium.jpg" es_skyline_night.jpg
take "$land/nasa3.jpg" es_launch_pad_coast.jpg
take "$land/industrial0-iridium.jpg" es_factory_night.jpg
take "$land/station0.jpg" es_tunnel.jpg
gramps=$pkg/doc/gramps/example/gramps
take "$gramps/1897_expeditionsmannschaft_rio_a.jpg" gr_expedition_crew.jpg
take "$gramps/654px-Aksel_Andersson.jpg" gr_old_man_portrait.jpg
take "$gramps/Alimehemet.jpg" gr_oval_portrait.jpg
take "$gramps/E_W_Dahlgren.jpg" gr_bearded_man.jpg
take "$gramps/Gunnlaugur_Larusson_-_Yawn.jpg" gr_yawning_man.jpg
take "$gramps/O0.jpg" gr_man_red_tie.jpg
take "$gramps/O2.jpg" gr_two_children.jpg
take "$gramps/O3.jpg" gr_man_in_hat.jpg
take "$gramps/O4.jpg" gr_woman_smiling.jpg
take "$gramps/O5.jpg" gr_couple_at_table.jpg
take "$gramps/AntoineClaudet.png" gr_seated_man.png
take "$gramps/O1.jpg" gr_engraved_crowd.jpg
# PyWavelets keeps its pictures as NumPy arrays of grey bytes: a PGM header in front makes them pictures.
for name in camera aero; do
    unzip -p "$work/unpacked/usr/lib/python3/dist-packages/pywt/data/$name.npz" data.npy |
        tail -c 262144 | { printf 'P5\n512 512\n255\n'; cat; } >"$work/$name.pgm"
done
take "$work/camera.pgm" pw_cameraman.png
take "$work/aero.pgm" pw_aerial_view.png
take "$pkg/gtk-doc/html/libvips/owl.jpg" vips_owl.jpg
take "$pkg/xteddy/xteddy.png" xt_teddy.png
take "$pkg/xteddy/xpuppy.png" xt_plush_puppy.png
take "$pkg/xteddy/xhedgehog.png" xt_plush_hedgehog.png
take "$pkg/xteddy/xtrouble.png" xt_brown_bear.png
take "$pkg/xteddy/xorca.png" xt_drawn_orca.png
take "$pkg/games/etr/players/avatar05.png" etr_zebra.png
take "$pkg/games/etr/players/avatar11.png" etr_tiger.png
httt=$pkg/games/wesnoth/1.16/data/campaigns/Heir_To_The_Throne/images
take "$httt/story/httt_story1.jpg" wn_king_and_knight.jpg
take "$httt/story/httt_story3.jpg" wn_sorceress.jpg
take "$httt/story/httt_story7.jpg" wn_baby_prince.jpg
take "$httt/portraits/delfador.png" wn_wizard_portrait.png
take "$httt/portraits/lisar.png" wn_princess_portrait.png
orion=$pkg/games/freeorion/default/data/art
take "$orion/splash.png" fo_planet_render.png
take "$orion/hulls_design/basic-large-hull.png" fo_ship_render.png
take "$(ls "$orion"/species/*.png | head -1)" fo_species_art.png
take "$httt/story/httt_story5.jpg" wn_duel_in_light.jpg
manual=$pkg/doc/HTML/en
take "$manual/okular/mainwindow.png" ok_main_window.png
take "$manual/okular/annotations.png" ok_annotations.png
take "$manual/okular/bookmark-management.png" ok_bookmarks.png
take "$manual/dolphin/default-ui.png" dp_default_ui.png
take "$manual/dolphin/grouping-view.png" dp_grouping_view.png
take "$manual/dolphin/preferences-general-behavior.png" dp_preferences.png
take "$manual/kamoso/mainwindow.png" km_main_window.png
estouchy=$pkg/kodi/addons/skin.estouchy/resources
take "$estouchy/screenshot-02.jpg" kodi_home_menu.jpg
take "$estouchy/screenshot-03.jpg" kodi_album_grid.jpg
take "$estouchy/screenshot-04.jpg" kodi_movie_list.jpg
take "$pkg/zim/manual/Plugins/Command_Palette/command_palette.png" zim_command_palette.png

. "$here/vision-set-pages.sh"
page page_en11_tilt8.jpg "$texts/en11.txt" "$sans" 8 0.5 0.6 30
page page_zh10_tilt-11.jpg "$texts/zh10.txt" "$cjk_serif" -11 0.6 0.7 30
photographed photo_page_en11.jpg "$texts/en11.txt" "$serif" '#6b4a2f' "40 30 -50 50 -20 10 30 -30" '#f4f4f4-#9c9c9c' 1.0
photographed photo_page_zh10.jpg "$texts/zh10.txt" "$cjk" '#3a3f2c' "60 10 -20 40 -40 30 20 -50" '#ededed-#a8a8a8' 1.1

# Captures under Xvfb: a browser window showing libvips' manual and the whole screen with a folder listing.
. "$here/vision-set-captures.sh"
start_screen
browse "file://$pkg/gtk-doc/html/libvips/How-it-works.html" window_vips_manual.png 1366,860 window 200,80
browse "file://$pkg/doc/gramps/example/gramps" screen_file_listing.png 1920,1080 screen 0,0
echo "picture set in $out"
