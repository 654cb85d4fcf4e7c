#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes an eleventh held-out picture set for bench/vision-accuracy.sh, from packages none of the earlier sets used,
# in SET/fresh11 (default /tmp/lumaro-vision-set):
#   RMagick's manual (a ballerina, a woman in a flower hat, a balloon festival, red rocks, a cheetah and two
#   clip-arts); Gambas' examples (a poodle, a snowy vineyard, mountains from a game); Deepin's account pictures
#   (a horse, a leopard, ladybirds, piano keys, a clock, a white room); the jigsaw puzzle's samples (a grey cat,
#   a tiger in snow); Wesnoth's Rise of Wesnoth story paintings and Northern Rebirth art; Qt Quick Controls'
#   cheetah painting; Debian Edu's Homeworld wallpaper; screenshots from the manuals of Geany, Wireshark,
#   Gnumeric, Qt Creator, Qt Multimedia, Artikulate, Calligra Stage and KDiamond; new pages in English and
#   Chinese turned 5–13° or photographed on a desk; and captures under Xvfb of xterm, a Tk backup window and a
#   browser showing Wireshark's manual.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked. Needs imagemagick, fonts-noto-cjk,
# fonts-dejavu, fonts-urw-base35, xvfb, xdotool, xterm, chromium and tk (wish). DISPLAY_NUMBER picks the Xvfb
# display (default 91).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-91}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
serif=/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
schoolbook=/usr/share/fonts/opentype/urw-base35/C059-Roman.otf
palatino=/usr/share/fonts/opentype/urw-base35/P052-Roman.otf
out=$set_dir/fresh11
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download ruby-rmagick-doc gambas3-examples dde-account-faces puzzle-jigsaw wesnoth-1.16-trow \
    wesnoth-1.16-nr qtquickcontrols5-examples debian-edu-artwork-homeworld geany-common wireshark-doc gnumeric-doc \
    qtcreator-doc qtmultimedia5-doc-html artikulate calligrastage-data kdiamond \
    >/dev/null 2>&1 && for deb in *.deb; do dpkg -x "$deb" unpacked; done)
pkg=$work/unpacked/usr/share
note() { echo "make-vision-fresh11-set: $1" >&2; }
. "$here/vision-set-take.sh"

rm=$pkg/doc/ruby-rmagick-doc/html/ex/images
take "$rm/Ballerina3.jpg" f11_rm_ballerina.jpg
take "$rm/Flower_Hat.jpg" f11_rm_woman_flower_hat.jpg
take "$rm/Hot_Air_Balloons_H.jpg" f11_rm_balloon_festival.jpg
take "$rm/Red_Rocks.jpg" f11_rm_red_rocks.jpg
take "$rm/Cheetah.jpg" f11_rm_cheetah.jpg
take "$rm/Coffee.png" f11_rm_coffee_clipart.png
take "$rm/Snake.png" f11_rm_snake_clipart.png
gb=$pkg/doc/gambas3-examples/examples
take "$gb/Drawing/Painting/clovis.jpg" f11_gb_poodle.jpg
take "$gb/Drawing/Painting/image.jpg" f11_gb_snowy_vineyard.jpg
take "$gb/Games/BeastScroll/bgd2_montagnes.png" f11_gb_mountains_game_art.png
faces=$work/unpacked/var/lib/AccountsService/icons/bigger
take "$faces/13.png" f11_dd_horse.png
take "$faces/14.png" f11_dd_leopard.png
take "$faces/2.png" f11_dd_ladybirds.png
take "$faces/11.png" f11_dd_piano_keys.png
take "$faces/10.png" f11_dd_clock.png
take "$faces/9.png" f11_dd_white_room.png
take "$pkg/puzzle-jigsaw/samples/cat-animal-cat-portrait-mackerel.jpg" f11_pj_grey_cat.jpg
take "$pkg/puzzle-jigsaw/samples/pexels-photo-302304.jpeg" f11_pj_tiger_snow.jpg
wn=$pkg/games/wesnoth/1.16/data/campaigns
take "$wn/The_Rise_Of_Wesnoth/images/story/trow_intro_01.jpg" f11_wn_oak_tree_painting.jpg
take "$wn/The_Rise_Of_Wesnoth/images/story/trow_story_04b-The_Midlands.jpg" f11_wn_midlands_painting.jpg
take "$wn/The_Rise_Of_Wesnoth/images/story/trow_story_15-A_New_Land.jpg" f11_wn_new_land_painting.jpg
take "$wn/Northern_Rebirth/images/portraits/Sister_Thera.png" f11_wn_priestess_portrait.png
take "$wn/Northern_Rebirth/images/campaign_image.png" f11_wn_hero_art.png
convert "$work/unpacked/usr/lib/x86_64-linux-gnu/qt5/examples/quickcontrols/extras/flat/images/piemenu-image-rgb.jpg" \
    -resize 1600x -quality 90 "$out/f11_qt_cheetahs_painting.jpg"
convert "$pkg/plymouth/themes/debian-edu-homeworld/background.png" -resize 1600x -quality 90 \
    "$out/f11_edu_homeworld_wallpaper.jpg"
take "$pkg/doc/geany/html/images/main_window.png" f11_geany_window.png
take "$pkg/doc/wireshark/wsug_html_chunked/images/ws-packet-selected.png" f11_wireshark_packets.png
take "$pkg/help/C/gnumeric/figures/analysistools-kaplan-ex2.png" f11_gnumeric_survival_sheet.png
take "$pkg/qtcreator/doc/qtcreator/images/qtcreator-formedit.png" f11_qtcreator_form_editor.png
take "$pkg/doc/HTML/en/artikulate/screen-training-overview.png" f11_kde_artikulate_training.png
take "$pkg/doc/HTML/en/calligrastage/tut10.png" f11_kde_calligra_stage.png
take "$pkg/qt5/doc/qtmultimedia/images/mediaplayerex.jpg" f11_qt_media_player_window.jpg
take "$pkg/doc/HTML/en/kdiamond/gameboard.png" f11_kde_kdiamond_window.png

. "$here/vision-set-pages.sh"
page f11_page_en18_tilt9.jpg "$texts/en18.txt" "$palatino" 9 0.5 0.5 30
page f11_page_en19_tilt-5.jpg "$texts/en19.txt" "$serif" -5 0.6 0.6 28
page f11_page_zh17_tilt-13.jpg "$texts/zh17.txt" "$cjk" -13 0.5 0.6 30
page f11_page_zh18_tilt7.jpg "$texts/zh18.txt" "$cjk_serif" 7 0.6 0.7 28
photographed f11_photo_page_en18.jpg "$texts/en18.txt" "$schoolbook" '#4e3b2a' "30 50 -40 20 -60 -30 40 -20" '#f0f0f0-#9c9c9c' 1.0
photographed f11_photo_page_en19.jpg "$texts/en19.txt" "$sans" '#3a4a3a' "-30 20 40 60 20 -50 -30 -10" '#a4a4a4-#eeeeee' 1.1
photographed f11_photo_page_zh18.jpg "$texts/zh18.txt" "$cjk" '#5c4c3c' "50 30 -20 50 -40 -30 20 -50" '#f2f2f2-#a2a2a2' 1.0

# Captures under Xvfb, each of one window: xterm listing the system's locales and the memory in use, a Tk backup
# window, and a browser showing Wireshark's manual.
. "$here/vision-set-captures.sh"
start_screen
capture_program 'locales' f11_window_xterm_locales.png xterm -T locales -geometry 90x34 -fa Monospace -fs 11 \
    -bg '#fdf6e3' -fg '#333333' -e sh -c 'ls -l /usr/share/i18n/locales | head -24; echo; free -m; sleep 60'
cat >"$work/backup.tcl" <<'TCL'
wm title . "Backup"
grid [label .title -text "Back up your files" -font {Helvetica 14 bold}] -row 0 -column 0 -columnspan 3 -pady 8
grid [label .lf -text "Folder:"] -row 1 -column 0 -sticky e -padx 6
grid [entry .ef -width 34] -row 1 -column 1 -padx 6 -pady 4
.ef insert 0 "/home/anna/Documents"
grid [button .bf -text "Choose…"] -row 1 -column 2 -padx 6
grid [label .lt -text "Save to:"] -row 2 -column 0 -sticky e -padx 6
grid [entry .et -width 34] -row 2 -column 1 -padx 6 -pady 4
.et insert 0 "/media/anna/USB disk"
grid [labelframe .when -text "How often"] -row 3 -column 0 -columnspan 3 -sticky we -padx 8 -pady 4
foreach s {Daily Weekly Monthly} { pack [radiobutton .when.r$s -text $s -variable when -value $s] -side left -padx 6 }
set when Weekly
grid [label .lk -text "Keep copies:"] -row 4 -column 0 -sticky e -padx 6
grid [spinbox .sk -from 1 -to 30 -width 5] -row 4 -column 1 -sticky w -padx 6 -pady 4
grid [checkbutton .zip -text "Compress the copies"] -row 5 -column 1 -sticky w
grid [checkbutton .hidden -text "Include hidden files"] -row 6 -column 1 -sticky w
grid [ttk::progressbar .p -length 300 -value 40] -row 7 -column 0 -columnspan 3 -pady 8
grid [frame .b] -row 8 -column 1 -columnspan 2 -sticky e -pady 8
pack [button .b.start -text "Back up now"] [button .b.close -text Close] -side left -padx 4
TCL
capture_program 'Backup' f11_window_tk_backup.png wish "$work/backup.tcl"
browse "file://$pkg/doc/wireshark/wsug_html_chunked/ChapterIntroduction.html" f11_window_wireshark_manual.png 1300,900 \
    window 140,80
echo "picture set in $out"
