#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes a twelfth held-out picture set for bench/vision-accuracy.sh, from packages none of the earlier sets used,
# in SET/fresh12 (default /tmp/lumaro-vision-set):
#   Scratch's background photos (a beach, the Grand Canyon, a lake, a hay field, a stream, railway tracks, a
#   city by the water at night, a castle, old and new buildings, an arcade, a mansion, a kitchen, a flower
#   bed, a tree and a drawn room); Wesnoth's Delfador's Memoirs, Legend of Wesmere, Son of the Black Eye,
#   Hammer of Thursagan and Under the Burning Suns art; Debian Edu's Soft Waves wallpaper; K3b's welcome
#   background; screenshots from the manuals of KWordQuiz, Blinken, KTurtle, Step, Elisa and K3b; new pages
#   in English and Chinese turned 6–14° or photographed on a desk; and captures under Xvfb of xterm and a
#   Tk print window.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked. Needs imagemagick, fonts-noto-cjk,
# fonts-dejavu, fonts-urw-base35, xvfb, xdotool, xterm and tk (wish). DISPLAY_NUMBER picks the Xvfb display
# (default 92).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-92}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
condensed=/usr/share/fonts/truetype/dejavu/DejaVuSansCondensed.ttf
bookman=/usr/share/fonts/opentype/urw-base35/URWBookman-Light.otf
nimbus=/usr/share/fonts/opentype/urw-base35/NimbusRoman-Regular.otf
gothic=/usr/share/fonts/opentype/urw-base35/URWGothic-Book.otf
out=$set_dir/fresh12
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download scratch wesnoth-1.16-dm wesnoth-1.16-low wesnoth-1.16-sotbe wesnoth-1.16-thot \
    wesnoth-1.16-utbs debian-edu-artwork-softwaves k3b-data kwordquiz blinken kturtle step elisa \
    >/dev/null 2>&1 && for deb in *.deb; do dpkg -x "$deb" unpacked; done)
pkg=$work/unpacked/usr/share
note() { echo "make-vision-fresh12-set: $1" >&2; }
. "$here/vision-set-take.sh"

sc=$pkg/scratch/Media/Backgrounds
take "$sc/Nature/beach-malibu.jpg" f12_sc_beach.jpg
take "$sc/Nature/grand-canyon.jpg" f12_sc_grand_canyon.jpg
take "$sc/Nature/lake.jpg" f12_sc_lake.jpg
take "$sc/Outdoors/hay_field.jpg" f12_sc_hay_field.jpg
take "$sc/Nature/water-and-rocks.jpg" f12_sc_stream.jpg
take "$sc/Outdoors/train-tracks1.jpg" f12_sc_train_tracks.jpg
take "$sc/Outdoors/city-with-water.jpg" f12_sc_city_night_water.jpg
take "$sc/Outdoors/castle.jpg" f12_sc_castle.jpg
take "$sc/Outdoors/building-fireproof.jpg" f12_sc_brick_warehouse.jpg
take "$sc/Outdoors/building-at-mit.jpg" f12_sc_modern_building.jpg
take "$sc/Outdoors/hallway_outdoors.jpg" f12_sc_arcade.jpg
take "$sc/Outdoors/mansion.jpg" f12_sc_mansion.jpg
take "$sc/Indoors/kitchen.jpg" f12_sc_kitchen.jpg
take "$sc/Nature/flower-bed.jpg" f12_sc_flower_bed.jpg
take "$sc/Nature/tree.jpg" f12_sc_tree_trunk.jpg
take "$sc/Indoors/room1.jpg" f12_sc_drawn_room.jpg
wn=$pkg/games/wesnoth/1.16/data/campaigns
take "$wn/Delfadors_Memoirs/images/story/httt_story3.jpg" f12_wn_two_figures_painting.jpg
take "$wn/Delfadors_Memoirs/images/campaign_image.png" f12_wn_mage_art.png
take "$wn/Legend_of_Wesmere/images/low-map.png" f12_wn_old_map.png
take "$wn/Son_Of_The_Black_Eye/images/portraits/old_orcish_shaman.png" f12_wn_shaman_portrait.png
take "$wn/The_Hammer_of_Thursagan/images/portraits/perrin.png" f12_wn_old_sage_portrait.png
take "$wn/Under_the_Burning_Suns/images/campaign_image.png" f12_wn_desert_elf_art.png
convert "$pkg/plymouth/themes/debian-edu-softwaves/background.png" -resize 1600x -quality 90 \
    "$out/f12_edu_softwaves_wallpaper.jpg"
convert "$pkg/k3b/pics/quant/welcome_bg.png" -resize 1600x -quality 90 "$out/f12_k3b_welcome_background.jpg"
kde=$pkg/doc/HTML/en
take "$kde/kwordquiz/kwq-qanda.png" f12_kde_kwordquiz_quiz.png
take "$kde/blinken/blinken1.png" f12_kde_blinken_game.png
take "$kde/kturtle/mainwindow_flower_nrs.png" f12_kde_kturtle_window.png
take "$kde/step/mainwindow.png" f12_kde_step_window.png
take "$kde/elisa/Screenshot_20180912_232200.png" f12_kde_elisa_player.png
take "$kde/k3b/K3bAddButton.png" f12_kde_k3b_window.png

. "$here/vision-set-pages.sh"
page f12_page_en20_tilt-8.jpg "$texts/en20.txt" "$bookman" -8 0.5 0.5 28
page f12_page_en21_tilt12.jpg "$texts/en21.txt" "$condensed" 12 0.6 0.6 30
page f12_page_zh19_tilt6.jpg "$texts/zh19.txt" "$cjk_serif" 6 0.5 0.6 30
page f12_page_zh20_tilt-14.jpg "$texts/zh20.txt" "$cjk" -14 0.6 0.7 28
photographed f12_photo_page_en21.jpg "$texts/en21.txt" "$nimbus" '#6a4a30' "-40 30 30 50 50 -20 -20 -40" '#ececec-#989898' 1.0
photographed f12_photo_page_zh20.jpg "$texts/zh20.txt" "$cjk" '#44505c' "40 -20 -50 30 20 40 -30 -20" '#a0a0a0-#f0f0f0' 1.1

# Captures under Xvfb, each of one window: xterm showing the mounted file systems and a calendar, and a Tk print
# window.
. "$here/vision-set-captures.sh"
start_screen
capture_program 'mounts' f12_window_xterm_mounts.png xterm -T mounts -geometry 96x32 -fa Monospace -fs 11 \
    -bg '#1e1e2e' -fg '#d0d0d0' -e sh -c 'df -h | head -14; echo; cal -3 2>/dev/null || date; sleep 60'
cat >"$work/print.tcl" <<'TCL'
wm title . "Print"
grid [label .title -text "Print document" -font {Helvetica 14 bold}] -row 0 -column 0 -columnspan 3 -pady 8
grid [label .lp -text "Printer:"] -row 1 -column 0 -sticky e -padx 6
grid [ttk::combobox .cp -width 30 -values {"Office laser" "Kitchen inkjet" "Save as PDF"}] -row 1 -column 1 -padx 6 -pady 4
.cp set "Office laser"
grid [labelframe .pages -text "Pages"] -row 2 -column 0 -columnspan 3 -sticky we -padx 8 -pady 4
pack [radiobutton .pages.all -text "All" -variable pages -value all] -anchor w -padx 6
pack [radiobutton .pages.cur -text "Current page" -variable pages -value cur] -anchor w -padx 6
pack [radiobutton .pages.range -text "Pages 1-4, 7" -variable pages -value range] -anchor w -padx 6
set pages all
grid [label .lc -text "Copies:"] -row 3 -column 0 -sticky e -padx 6
grid [spinbox .sc -from 1 -to 99 -width 5] -row 3 -column 1 -sticky w -padx 6 -pady 4
grid [checkbutton .duplex -text "Print on both sides"] -row 4 -column 1 -sticky w
grid [checkbutton .colour -text "Colour"] -row 5 -column 1 -sticky w
grid [label .lq -text "Quality:"] -row 6 -column 0 -sticky e -padx 6
grid [scale .q -from 150 -to 1200 -orient horizontal -length 220 -resolution 150] -row 6 -column 1 -sticky w
.q set 600
grid [frame .b] -row 7 -column 1 -columnspan 2 -sticky e -pady 8
pack [button .b.print -text "Print"] [button .b.cancel -text Cancel] -side left -padx 4
TCL
capture_program 'Print' f12_window_tk_print.png wish "$work/print.tcl"
echo "picture set in $out"
