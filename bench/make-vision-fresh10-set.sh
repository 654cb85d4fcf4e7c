#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes a tenth held-out picture set for bench/vision-accuracy.sh, from packages none of the earlier sets used,
# in SET/fresh10 (default /tmp/lumaro-vision-set):
#   ViSP's data set (the 1927 Solvay conference group photo and two cuts of it, a Klimt painting); labelme's
#   examples (two men at a meal, three women on a sofa, an old bus, a kitten, a dog, a street with a lorry,
#   objects on a shelf, and a window of the annotation tool); the OpenJDK Swing demos (a toddler with a ball, a
#   mother with her child, a girl, an astronaut, an old house, a motor boat, crayons, a cow, clouds, engravings
#   and Duke clip-art); GNOME's developer demos (a red fox, a fruit bat, a swan, a penguin, window captures and
#   a drawing); FooBillard++ (a city at night, a game screen and its title art); Qt Multimedia's autumn leaves;
#   the Lomiri toolkit's waterfall and the Lomiri phone's settings screen; Sweet Home 3D (a cloudy sky, a drawn
#   room, a dialog in Chinese); Irrlicht's manual (a demo window, rendered mountains); Wesnoth's Liberty and
#   Sceptre of Fire paintings and portraits; Kanagram's wallpaper; LyX's knight; the wallpapers of SDDM's Debian
#   Maui theme, Arctica Greeter and LXDE; screenshots from the manuals of Kanagram, Kigo, KiCad, Fritzing and
#   XSane; new pages in English and Chinese turned 6–14° or photographed on a desk; and captures under Xvfb of
#   xterm, a Tk settings window, the Swing demo and a browser showing KiCad's manual.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked. Needs imagemagick, unzip, fonts-noto-cjk,
# fonts-dejavu, fonts-urw-base35, xvfb, xdotool, xterm, chromium, tk (wish) and a Java runtime. DISPLAY_NUMBER
# picks the Xvfb display (default 90).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-90}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
bookman=/usr/share/fonts/opentype/urw-base35/URWBookman-Light.otf
roman=/usr/share/fonts/opentype/urw-base35/C059-Roman.otf
out=$set_dir/fresh10
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download visp-images-data labelme-examples openjdk-17-demo gnome-devel-docs \
    foobillardplus-data qtmultimedia5-examples lomiri-ui-toolkit-examples lomiri-system-settings sweethome3d \
    libirrlicht-doc wesnoth-1.16-l wesnoth-1.16-sof kanagram lyx-common sddm-theme-debian-maui arctica-greeter \
    lxde-common kigo kicad-doc-en fritzing-data xsane-common \
    >/dev/null 2>&1 && for deb in *.deb; do
        case $deb in
            visp-images-data*) mkdir -p unpacked && dpkg-deb --fsys-tarfile "$deb" |
                tar -x -C unpacked --wildcards './usr/share/visp-images-data/ViSP-images/Solvay/*2126x1463.jpg' \
                    './usr/share/visp-images-data/ViSP-images/Klimt/Klimt.png' ;;
            *) dpkg -x "$deb" unpacked ;;
        esac
    done)
pkg=$work/unpacked/usr/share
note() { echo "make-vision-fresh10-set: $1" >&2; }
. "$here/vision-set-take.sh"
# cut_out FILE OUT CROP: a region of a packaged picture (WxH+X+Y).
cut_out() {
    if [ -f "$1" ]; then
        convert "$1" -crop "$3" +repage -quality 92 "$out/$2"
    else
        note "$1 not found"
    fi
}
# from_jar JAR ENTRY OUT: a picture kept inside a Java archive.
from_jar() {
    if [ -f "$1" ]; then
        mkdir -p "$work/jar"
        unzip -o -q "$1" "$2" -d "$work/jar" && take "$work/jar/$2" "$3"
    else
        note "$1 not found"
    fi
}

solvay=$pkg/visp-images-data/ViSP-images/Solvay/Solvay_conference_1927_Version2_2126x1463.jpg
take "$solvay" f10_vi_solvay_group.jpg
cut_out "$solvay" f10_vi_solvay_front_row.jpg 960x660+360+660
cut_out "$solvay" f10_vi_solvay_right_side.jpg 726x840+1400+460
take "$pkg/visp-images-data/ViSP-images/Klimt/Klimt.png" f10_vi_klimt_painting.jpg
lm=$pkg/doc/labelme-examples/examples
take "$lm/bbox_detection/data_annotated/2011_000003.jpg" f10_lm_two_men_meal.jpg
take "$lm/bbox_detection/data_annotated/2011_000006.jpg" f10_lm_three_women_sofa.jpg
take "$lm/bbox_detection/data_annotated/2011_000025.jpg" f10_lm_old_bus.jpg
take "$lm/classification/data_annotated/0001.jpg" f10_lm_kitten.jpg
take "$lm/classification/data_annotated/0002.jpg" f10_lm_black_dog.jpg
take "$lm/video_annotation/data_annotated/00000100.jpg" f10_lm_street_lorry.jpg
take "$lm/tutorial/apc2016_obj3_json/img.png" f10_lm_shelf_objects.jpg
take "$lm/bbox_detection/.readme/annotation.jpg" f10_lm_tool_window_meal.jpg
jfc=$pkg/doc/openjdk-17-jre-headless/demo/jfc
swing=$jfc/SwingSet2/SwingSet2.jar
from_jar "$swing" resources/images/tabbedpane/ewan.jpg f10_jd_toddler_ball.jpg
from_jar "$swing" resources/images/tabbedpane/hania.jpg f10_jd_mother_child.jpg
from_jar "$swing" resources/images/tabbedpane/laine.jpg f10_jd_girl_smiling.jpg
from_jar "$swing" resources/images/splitpane/moon.jpg f10_jd_astronaut.jpg
from_jar "$swing" resources/images/scrollpane/crayons.jpg f10_jd_crayons.jpg
from_jar "$swing" resources/images/tooltip/cow.gif f10_jd_cow.png
from_jar "$swing" resources/images/Octavo/ant.jpg f10_jd_ant_engraving.jpg
from_jar "$swing" resources/images/Octavo/seaweed.jpg f10_jd_seaweed_engraving.jpg
from_jar "$jfc/J2Ddemo/J2Ddemo.jar" images/bld@2x.jpg f10_jd_old_house.jpg
from_jar "$jfc/J2Ddemo/J2Ddemo.jar" images/boat@2x.png f10_jd_motor_boat.png
from_jar "$jfc/J2Ddemo/J2Ddemo.jar" images/clouds@2x.jpg f10_jd_clouds.jpg
from_jar "$jfc/J2Ddemo/J2Ddemo.jar" images/surfing@2x.png f10_jd_surfing_clipart.png
gd=$pkg/help/C/gnome-devel-demos
take "$gd/samples/redfox.png" f10_gd_red_fox.png
take "$gd/samples/fruitbat.png" f10_gd_fruit_bat.png
take "$gd/samples/muteswan.png" f10_gd_swan.png
take "$gd/samples/gentoopenguin.png" f10_gd_penguin.png
take "$gd/media/photo-wall.png" f10_gd_photo_wall_window.png
take "$gd/media/magic-mirror.png" f10_gd_webcam_window.png
take "$pkg/help/C/platform-overview/media/totem-screenshot.png" f10_gd_video_player.png
take "$pkg/help/C/hig/figures/hig.png" f10_gd_screens_drawing.png
fb=$pkg/games/foobillardplus/data
take "$fb/skyline.png" f10_fb_city_night.jpg
take "$fb/locale/img/snooker.png" f10_fb_snooker_game.png
take "$fb/intro.png" f10_fb_title_art.png
qt=$work/unpacked/usr/lib/x86_64-linux-gnu/qt5/examples
take "$qt/multimedia/video/qmlvideo/images/leaves.jpg" f10_qt_autumn_leaves.jpg
take "$qt/lomiri-ui-toolkit/examples/lomiri-ui-toolkit-gallery/demo_image.jpg" f10_lo_waterfall.jpg
take "$pkg/lomiri-system-settings/screenshot.png" f10_lo_phone_settings.png
sh3d=$pkg/sweethome3d/sweethome3d.jar
from_jar "$sh3d" com/eteks/sweethome3d/io/resources/textures/veryCloudy.jpg f10_sh_cloudy_sky.jpg
from_jar "$sh3d" com/eteks/sweethome3d/viewcontroller/resources/importedFurnitureWizard@2x.png f10_sh_room_drawing.png
from_jar "$sh3d" com/eteks/sweethome3d/viewcontroller/resources/help/zh_CN/images/creatingPhotos.jpg \
    f10_sh_photo_dialog_zh.jpg
take "$pkg/doc/libirrlicht-dev/media/008shot.jpg" f10_ir_demo_window.jpg
take "$pkg/doc/libirrlicht-dev/media/irrlicht2_ft.jpg" f10_ir_rendered_mountains.jpg
wn=$pkg/games/wesnoth/1.16/data/campaigns
take "$wn/Liberty/images/story/Halstead.jpg" f10_wn_town_sunset_painting.jpg
take "$wn/Liberty/images/story/island.jpg" f10_wn_island_painting.jpg
take "$wn/Liberty/images/portraits/relana.png" f10_wn_woman_portrait.png
take "$wn/Liberty/images/portraits/harper.png" f10_wn_young_man_portrait.png
take "$wn/Sceptre_of_Fire/images/portraits/thursagan.png" f10_wn_old_dwarf_portrait.png
take "$pkg/kanagram/ui/images/background.jpg" f10_kg_stripes_wallpaper.jpg
take "$pkg/lyx/examples/beamer-knight1.png" f10_lyx_knight_clipart.png
convert "$pkg/sddm/themes/debian-maui/background.png" -resize 1600x -quality 90 "$out/f10_sddm_maui_wallpaper.jpg"
convert "$pkg/arctica-greeter/backgrounds/arctica-greeter.png" -resize 1600x -quality 90 "$out/f10_ag_red_wallpaper.jpg"
take "$pkg/lxde/wallpapers/lxde_green.jpg" f10_lxde_green_wallpaper.jpg
manual=$pkg/doc/HTML/en
take "$manual/kanagram/kanagram.png" f10_kde_kanagram_window.png
take "$manual/kigo/play-game.png" f10_kde_kigo_window.png
take "$pkg/doc/kicad/help/en/images/pcbnew_user_interface.png" f10_kicad_board_editor.png
take "$pkg/fritzing/help/images/start.png" f10_fritzing_window.png
take "$pkg/doc/xsane-common/html/xsane-preview.jpg" f10_xsane_preview_window.jpg

. "$here/vision-set-pages.sh"
page f10_page_en16_tilt7.jpg "$texts/en16.txt" "$bookman" 7 0.5 0.5 30
page f10_page_en17_tilt-14.jpg "$texts/en17.txt" "$sans" -14 0.6 0.6 30
page f10_page_zh15_tilt11.jpg "$texts/zh15.txt" "$cjk_serif" 11 0.5 0.6 30
page f10_page_zh16_tilt-6.jpg "$texts/zh16.txt" "$cjk" -6 0.6 0.7 28
photographed f10_photo_page_en16.jpg "$texts/en16.txt" "$roman" '#5a4632' "40 30 -30 50 -50 -20 20 -40" '#ececec-#9a9a9a' 1.0
photographed f10_photo_page_en17.jpg "$texts/en17.txt" "$bookman" '#2f3b46' "-20 40 50 10 30 -40 -40 -20" '#a8a8a8-#f2f2f2' 1.1
photographed f10_photo_page_zh15.jpg "$texts/zh15.txt" "$cjk" '#6b5a48' "60 20 -10 60 -50 -40 30 -30" '#f4f4f4-#a0a0a0' 1.0

# Captures under Xvfb, each of one window: xterm showing the start of /etc/services and the disk use, a Tk
# settings window, the Swing demo, and a browser showing KiCad's manual.
. "$here/vision-set-captures.sh"
start_screen
capture_program 'services' f10_window_xterm_services.png xterm -T services -geometry 96x36 -fa Monospace -fs 11 \
    -bg '#1e1e1e' -fg '#d0d0d0' -e sh -c 'grep -v "^#" /etc/services | head -30; echo; df -h / /tmp; sleep 60'
cat >"$work/settings.tcl" <<'TCL'
wm title . "Printer settings"
grid [label .title -text "Printer settings" -font {Helvetica 14 bold}] -row 0 -column 0 -columnspan 2 -pady 8
grid [label .lp -text "Printer:"] -row 1 -column 0 -sticky e -padx 6
grid [entry .ep -width 30] -row 1 -column 1 -padx 6 -pady 4
.ep insert 0 "Office laser, second floor"
grid [labelframe .size -text "Paper size"] -row 2 -column 0 -columnspan 2 -sticky we -padx 8 -pady 4
foreach s {A4 A5 Letter Legal} { pack [radiobutton .size.r$s -text $s -variable size -value $s] -side left -padx 6 }
set size A4
grid [label .lc -text "Copies:"] -row 3 -column 0 -sticky e -padx 6
grid [spinbox .sc -from 1 -to 99 -width 5] -row 3 -column 1 -sticky w -padx 6 -pady 4
grid [label .ld -text "Darkness:"] -row 4 -column 0 -sticky e -padx 6
grid [scale .sd -from 0 -to 100 -orient horizontal -length 240] -row 4 -column 1 -sticky w -padx 6
.sd set 60
grid [checkbutton .duplex -text "Print on both sides"] -row 5 -column 1 -sticky w
grid [checkbutton .colour -text "Print in colour"] -row 6 -column 1 -sticky w
grid [frame .b] -row 7 -column 1 -sticky e -pady 10
pack [button .b.ok -text Print] [button .b.cancel -text Cancel] -side left -padx 4
TCL
capture_program 'Printer settings' f10_window_tk_printer_settings.png wish "$work/settings.tcl"
capture_program 'SwingSet' f10_window_swing_demo.png java -jar "$swing"
browse "file://$pkg/doc/kicad/help/en/getting_started_in_kicad.html" f10_window_kicad_manual.png 1400,950 window 100,60
echo "picture set in $out"
