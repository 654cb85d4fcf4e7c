#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes a ninth held-out picture set for bench/vision-accuracy.sh, from packages none of the earlier sets used,
# in SET/fresh9 (default /tmp/lumaro-vision-set):
#   Stellarium's landscape photos under a plain blue sky (a rapeseed field, fields with far houses, snowy firs,
#   a snowy car park, a meadow with trees, hills, the surface of Mars and of the Moon), one of its nebula photos
#   and two of its al-Sufi constellation paintings; FreedomBox's manual (small computers and boards photographed
#   on white); pygame's manual (a brick wall by trees, screenshots of games and a game editor); wxWidgets'
#   samples (a grazing horse, a goose); Wesnoth's Descent into Darkness story paintings; KDE's playing cards;
#   Xfce's and SDDM's wallpapers; screenshots from the manuals of GTK 3, KBreakout, KMines and KCharSelect; new
#   pages in English and Chinese turned 5–12° or photographed on a desk; and captures under Xvfb of xterm, a Tk
#   form and a browser showing pygame's manual.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked. Needs imagemagick, fonts-noto-cjk,
# fonts-dejavu, xvfb, xdotool, xterm, chromium and tk (wish). DISPLAY_NUMBER picks the Xvfb display (default 88).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-88}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
serif=/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf
mono=/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf
out=$set_dir/fresh9
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download stellarium-data python-pygame-doc wesnoth-1.16-did kdegames-card-data-kf5 \
    wx3.2-examples freedombox-doc-en xfdesktop4-data sddm-theme-elarun libgtk-3-doc kbreakout kmines kcharselect \
    >/dev/null 2>&1 && for deb in *.deb; do
        case $deb in
            stellarium-data*) mkdir -p unpacked && dpkg-deb --fsys-tarfile "$deb" |
                tar -x -C unpacked --wildcards './usr/share/stellarium/landscapes/*' \
                    './usr/share/stellarium/nebulae/default/m16.png' \
                    './usr/share/stellarium/skycultures/arabic_al-sufi/Arg.png' \
                    './usr/share/stellarium/skycultures/arabic_al-sufi/Her.png' ;;
            *) dpkg -x "$deb" unpacked ;;
        esac
    done)
pkg=$work/unpacked/usr/share
note() { echo "make-vision-fresh9-set: $1" >&2; }
. "$here/vision-set-take.sh"
# landscape OUT CROP TILE...: Stellarium landscape tiles set side by side, their see-through sky filled with a
# plain blue gradient, cut to CROP (WxH+X+Y, or "-" for all of it).
landscape() {
    local picture=$1 crop=$2 tile
    shift 2
    for tile in "$@"; do
        [ -f "$tile" ] || { note "$tile not found"; return; }
    done
    convert "$@" +append "$work/band.png"
    local w h
    w=$(identify -format %w "$work/band.png")
    h=$(identify -format %h "$work/band.png")
    convert -size "${w}x${h}" gradient:'#5b8fd6-#d3e6f6' "$work/band.png" -composite \
        $([ "$crop" = - ] || echo "-crop $crop +repage") -quality 92 "$out/$picture"
}

st=$pkg/stellarium/landscapes
landscape f9_st_rapeseed_field.jpg - "$st/garching/garching-gl1.png"
landscape f9_st_fields_far_houses.jpg - "$st/garching/garching-gl2.png"
landscape f9_st_snowy_firs.jpg - "$st/hurricane/hurricane1.png" "$st/hurricane/hurricane2.png"
landscape f9_st_snowy_car_park.jpg - "$st/hurricane/hurricane5.png" "$st/hurricane/hurricane6.png"
landscape f9_st_meadow_trees.jpg - "$st/guereins/guereins1.png" "$st/guereins/guereins2.png" \
    "$st/guereins/guereins3.png" "$st/guereins/guereins4.png"
landscape f9_st_green_hills.jpg 1024x512+0+0 "$st/grossmugl/grossmugl_leeberg_crop11.25_2048.png"
landscape f9_st_mars_surface.jpg 2048x420+0+380 "$st/mars/mars.png"
landscape f9_st_moon_surface.jpg 2048x360+0+240 "$st/moon/apollo17.png"
take "$pkg/stellarium/nebulae/default/m16.png" f9_st_eagle_nebula.jpg
take "$pkg/stellarium/skycultures/arabic_al-sufi/Arg.png" f9_st_ship_drawing.jpg
take "$pkg/stellarium/skycultures/arabic_al-sufi/Her.png" f9_st_kneeling_man_drawing.jpg
fb=$pkg/freedombox/manual/en/images
take "$fb/freedombox-danube.jpg" f9_fb_black_box.jpg
take "$fb/banana-pro.jpg" f9_fb_circuit_board.jpg
take "$fb/pine64-plus.jpg" f9_fb_white_case.jpg
take "$fb/raspberrypi4b.jpg" f9_fb_raspberry_pi.jpg
take "$fb/apu1d.jpg" f9_fb_router_box.jpg
pg=$pkg/doc/python-pygame-doc/html/_images
take "$pg/camera_rgb.jpg" f9_pg_brick_wall_trees.jpg
take "$pg/introduction-TPS.png" f9_pg_game_editor.png
take "$pg/introduction-PuyoPuyo.png" f9_pg_console_game.png
take "$pg/introduction-Battleship.png" f9_pg_battleship_game.png
did=$pkg/games/wesnoth/1.16/data/campaigns/Descent_Into_Darkness/images/story
take "$did/book.jpg" f9_wn_ruined_column_painting.jpg
take "$did/end.jpg" f9_wn_hooded_figure_painting.jpg
take "$did/parthyn.jpg" f9_wn_river_valley_painting.jpg
take "$did/travel.jpg" f9_wn_travellers_painting.jpg
take "$pkg/carddecks/svg-ancient-egyptians/11.png" f9_kc_egyptian_queen_card.png
take "$pkg/carddecks/svg-jolly-royal/11.png" f9_kc_queen_of_hearts_card.png
wx=$pkg/doc/wx3.2-examples/examples/samples
take "$wx/image/horse.png" f9_wx_horse_grazing.png
take "$wx/html/test/pic.png" f9_wx_goose.png
convert "$pkg/backgrounds/xfce/xfce-teal.jpg" -resize 1600x -quality 90 "$out/f9_xf_teal_wallpaper.jpg"
convert "$pkg/sddm/themes/elarun/images/background.png" -resize 1600x -quality 90 "$out/f9_sddm_blue_waves.jpg"
gtk=$pkg/gtk-doc/html/gtk3
take "$gtk/filechooser.png" f9_gtk_file_chooser.png
take "$gtk/getting-started-app9.png" f9_gtk_example_app.png
manual=$pkg/doc/HTML/en
take "$manual/kbreakout/gameboard.png" f9_kde_kbreakout_window.png
take "$manual/kmines/gameboard.png" f9_kde_kmines_window.png
take "$manual/kcharselect/kcharselect.png" f9_kde_kcharselect_window.png

. "$here/vision-set-pages.sh"
page f9_page_en14_tilt8.jpg "$texts/en14.txt" "$serif" 8 0.5 0.5 30
page f9_page_en15_tilt-12.jpg "$texts/en15.txt" "$sans" -12 0.6 0.7 28
page f9_page_zh13_tilt5.jpg "$texts/zh13.txt" "$cjk" 5 0.5 0.6 30
page f9_page_zh14_tilt-9.jpg "$texts/zh14.txt" "$cjk_serif" -9 0.6 0.7 30
photographed f9_photo_page_en15.jpg "$texts/en15.txt" "$mono" '#4b3a2a' "30 40 -40 20 -60 -30 30 -50" '#f0f0f0-#989898' 1.1
photographed f9_photo_page_zh14.jpg "$texts/zh14.txt" "$cjk" '#3a4048' "50 10 -20 50 -40 -50 20 -20" '#a2a2a2-#f4f4f4' 1.0

# Captures under Xvfb: xterm listing files and a Tk form, each in its own window, and the whole
# screen with a browser showing pygame's manual.
. "$here/vision-set-captures.sh"
start_screen
capture_program 'listing' f9_window_xterm_listing.png xterm -T listing -geometry 110x34 -fa Monospace -fs 11 \
    -e sh -c 'cd /usr/share/doc && ls -l | head -25; echo; uname -a; df -h / ; sleep 60'
cat >"$work/form.tcl" <<'TCL'
wm title . "Order form"
foreach {row label} {0 Name 1 Street 2 Town 3 Phone} {
    grid [label .l$row -text "$label:"] -row $row -column 0 -sticky e -padx 6 -pady 4
    grid [entry .e$row -width 36] -row $row -column 1 -padx 6 -pady 4
}
.e0 insert 0 "Anna Berg"; .e1 insert 0 "14 Mill Lane"; .e2 insert 0 "Norwich"
grid [checkbutton .c -text "Send a receipt by e-mail"] -row 4 -column 1 -sticky w
grid [listbox .list -height 5] -row 5 -column 1 -sticky we -padx 6
foreach item {"Blue mug" "Tea towel" "Notebook A5" "Pencil set" "Calendar 2025"} { .list insert end $item }
grid [frame .b] -row 6 -column 1 -sticky e -pady 8
pack [button .b.ok -text Order] [button .b.cancel -text Cancel] -side left -padx 4
TCL
capture_program 'Order form' f9_window_tk_order_form.png wish "$work/form.tcl"
browse "file://$pkg/doc/python-pygame-doc/html/index.html" f9_screen_pygame_manual.png 1920,1080 screen 0,0
echo "picture set in $out"
