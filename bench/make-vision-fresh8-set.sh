#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes an eighth held-out picture set for bench/vision-accuracy.sh, from packages none of the earlier sets used,
# in SET/fresh8 (default /tmp/lumaro-vision-set):
#   small portraits and people from the manuals of libtiff (Balinese dancers, a boy, a man in glasses), Tk (a
#   smiling man), VLFeat (its authors) and Scribus' templates (an author, a cyclist beside parked cars); Blender's
#   360° light probes cut to a band round the horizon (a wooded path, a meadow at sunrise, a field at night,
#   office towers over a car park, a courtyard, a waterfront at sunset, a hotel room); LibreOffice's Impress
#   templates (a wheat field, a hot-air balloon, a bowl of sweets, drawings and clip-art); Jigzo's puzzle photos
#   (a castle, a windmill, clouds behind branches, a gorilla, a penguin, a horse, a steam train); Allegro's
#   parrot and white mouse; VIGRA's bears and mountain railway; ViSP's robot kit and a furnished living room
#   with detection boxes; libtiff's lizard and rendered bowling pins; VLFeat's canyon mosaic and Mona Lisa;
#   Tux Math's Earth seen from orbit; Tk's rendered teapot; Frozen Bubble's menu art; eduActiv8's clip-art;
#   Wesnoth's South Guard paintings; screenshots from the manuals of Ark, KmPlot, KPatience, Luminance HDR,
#   LibreOffice Impress and UKUI's control centre (in Chinese); new pages in English and Chinese turned 6–13° or
#   photographed on a desk; and captures under Xvfb of GTK's widget factory, Tk's widget demonstrations and a
#   browser showing libtiff's manual.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked. Needs imagemagick (with OpenEXR), unzip,
# fonts-noto-cjk, fonts-dejavu, xvfb, xdotool, chromium, tk (wish) and libgtk-3-0. DISPLAY_NUMBER picks the Xvfb
# display (default 86).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-86}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
serif=/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf
mono=/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf
condensed=/usr/share/fonts/truetype/dejavu/DejaVuSansCondensed.ttf
out=$set_dir/fresh8
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download libtiff-doc tk8.6-doc libvlfeat-doc scribus-data blender-data libreoffice-common \
    jigzo-data allegro5-doc libvigraimpex-doc libvisp-doc tuxmath-data frozen-bubble-data pysiogame \
    wesnoth-1.16-tsg ark kmplot kpat luminance-hdr libreoffice-help-common ukui-control-center gtk-3-examples \
    >/dev/null && for deb in *.deb; do dpkg -x "$deb" unpacked; done)
pkg=$work/unpacked/usr/share
note() { echo "make-vision-fresh8-set: $1" >&2; }
take() { # FILE OUT: one packaged picture (converted when OUT's type differs), or a note that it is missing
    if [ ! -f "$1" ]; then
        note "$1 not found"
    elif [ "${1##*.}" = "${2##*.}" ]; then
        cp "$1" "$out/$2"
    else
        convert "$1" -quality 92 "$out/$2"
    fi
}
# panorama EXR OUT: a band round the horizon of one of Blender's 360° light probes (linear light, shown in sRGB).
panorama() {
    if [ -f "$1" ]; then
        convert "$1" -colorspace sRGB -gravity center -crop 1024x320+0+0 +repage -quality 92 "$out/$2"
    else
        note "$1 not found"
    fi
}
# slide TEMPLATE PICTURE OUT: one picture kept inside one of LibreOffice's Impress templates.
presnt=$work/unpacked/usr/lib/libreoffice/share/template/common/presnt
slide() {
    if unzip -p "$presnt/$1.otp" "Pictures/$2" >"$work/$2" 2>/dev/null && [ -s "$work/$2" ]; then
        take "$work/$2" "$3"
    else
        note "$presnt/$1.otp: Pictures/$2 not found"
    fi
}
# puzzle PZL OUT: the photo inside one of Jigzo's puzzle files (a line with its name, a line with its size in
# bytes, then the JPEG itself), without the grey frame round it.
jigzo=$pkg/games/jigzo/puzzles/00_default
puzzle() {
    local file=$jigzo/$1 line size skip
    if [ ! -f "$file" ]; then
        note "$file not found"
        return
    fi
    line=$(grep -a -n -m1 -- '-t\.jpg$' "$file" | cut -d: -f1)
    size=$(sed -n "$((line + 1))p" "$file")
    skip=$(head -n "$((line + 1))" "$file" | wc -c)
    dd if="$file" of="$work/puzzle.jpg" bs=64K iflag=skip_bytes,count_bytes skip="$skip" count="$size" status=none
    convert "$work/puzzle.jpg" -shave 5x5 -quality 92 "$out/$2"
}

tiff=$pkg/doc/libtiff-doc/manual/_images
take "$tiff/bali.jpg" f8_tiff_bali_dancers.jpg
take "$tiff/jim.gif" f8_tiff_boy_old_print.png
take "$tiff/dave.gif" f8_tiff_man_glasses.png
take "$tiff/smallliz.jpg" f8_tiff_lizard.jpg
take "$tiff/strike.gif" f8_tiff_bowling_render.png
tk=$pkg/doc/tk8.6-doc/demos
take "$tk/images/ouster.png" f8_tk_man_smiling.png
take "$tk/images/teapot.ppm" f8_tk_teapot_render.png
vlfeat=$pkg/doc/libvlfeat-dev/doc/images
take "$vlfeat/perrone.jpg" f8_vl_man_at_table.jpg
take "$vlfeat/sarbortova.jpg" f8_vl_woman_glasses.jpg
take "$vlfeat/lenc.jpg" f8_vl_curly_hair_man.jpg
take "$vlfeat/fulkerson.jpg" f8_vl_man_by_window.jpg
take "$vlfeat/perdoch.jpg" f8_vl_man_grey_portrait.jpg
take "$vlfeat/sift-mosaic.jpg" f8_vl_canyon_mosaic.jpg
take "$vlfeat/placeholder.jpg" f8_vl_mona_lisa.jpg
take "$pkg/scribus/templates/textbased/author.jpg" f8_sc_author_portrait.jpg
take "$pkg/scribus/templates/textbased/an_image.jpg" f8_sc_cyclist_by_cars.jpg
probes=$pkg/blender/datafiles/studiolights/world
panorama "$probes/forest.exr" f8_hdr_forest_path.jpg
panorama "$probes/sunrise.exr" f8_hdr_sunrise_meadow.jpg
panorama "$probes/night.exr" f8_hdr_night_field.jpg
panorama "$probes/city.exr" f8_hdr_office_towers.jpg
panorama "$probes/courtyard.exr" f8_hdr_courtyard.jpg
panorama "$probes/sunset.exr" f8_hdr_waterfront_sunset.jpg
panorama "$probes/interior.exr" f8_hdr_hotel_room.jpg
slide Freshes 10000000000002C5000003C02FC12A07C25F42DF.jpg f8_lo_wheat_field.jpg
slide Freshes 100000000000030F0000036F55A62FC34FCAB38E.jpg f8_lo_hot_air_balloon.jpg
slide Candy 10000000000007800000043870026B1FACED0D1B.png f8_lo_sweets_bowl.jpg
slide Candy 10000000000004A800000500DD5BB9FFED422172.png f8_lo_ice_cream_drawing.png
slide Grey_Elegant 10000201000003300000026455AC9786240DB2F8.png f8_lo_woman_at_board_drawing.png
slide Nature_Illustration 100000000000042100000319892187DC121460D8.jpg f8_lo_cartoon_hills.jpg
puzzle castle-6x3.pzl f8_jz_castle_walls.jpg
puzzle windmill-4x4.pzl f8_jz_windmill.jpg
puzzle clouds-4x4.pzl f8_jz_clouds_branches.jpg
puzzle tobogan-4x3.pzl f8_jz_playground_slide.jpg
puzzle gorilla2-3x3.pzl f8_jz_gorilla.jpg
puzzle penguin-3x2.pzl f8_jz_penguin.jpg
puzzle horse-4x3.pzl f8_jz_horse_head.jpg
puzzle train-2x2.pzl f8_jz_steam_train.jpg
take "$pkg/doc/allegro5-doc/examples/data/obp.jpg" f8_al_parrot.jpg
take "$pkg/doc/allegro5-doc/examples/data/mysha.pcx" f8_al_white_mouse.png
take "$pkg/doc/libvigraimpex-dev/html/bears.jpg" f8_vg_bears_river.jpg
take "$pkg/doc/libvigraimpex-dev/html/oi_small.jpg" f8_vg_railway_tunnel.jpg
take "$pkg/doc/libvisp-dev/html/img-mbot-robot.jpg" f8_visp_robot_kit.jpg
take "$pkg/doc/libvisp-dev/html/img-detection-objects.jpeg" f8_visp_living_room_boxes.jpg
take "$pkg/tuxmath/images/title/menu_bkg.jpg" f8_tm_earth_from_orbit.jpg
take "$pkg/games/frozen-bubble/gfx/menu/back_start.png" f8_fb_game_menu.png
take "$pkg/games/pysiogame/res/images/fc/fc011.jpg" f8_ps_lion_clipart.jpg
take "$pkg/games/pysiogame/res/images/fc/fc053.jpg" f8_ps_street_drawing.jpg
tsg=$pkg/games/wesnoth/1.16/data/campaigns/The_South_Guard/images
take "$tsg/story/summer.jpg" f8_wn_castle_painting.jpg
take "$tsg/campaign_image.png" f8_wn_knight_on_horse.png
manual=$pkg/doc/HTML/en
take "$manual/ark/ark-mainwindow.png" f8_kde_ark_window.png
take "$manual/kmplot/main.png" f8_kde_kmplot_window.png
take "$manual/kpat/playfield.png" f8_kde_kpat_playfield.png
take "$pkg/doc/luminance-hdr/help/en/images/mainwin.png" f8_lhdr_main_window.png
take "$pkg/libreoffice/help/media/helpimg/sd_PresenterConsole02.png" f8_lo_presenter_console.png
take "$pkg/kylin-user-guide/data/guide/ukui-control-center/zh_CN/image/shortcut.png" f8_ukui_shortcuts_zh.png

. "$here/vision-set-pages.sh"
page f8_page_en12_tilt7.jpg "$texts/en12.txt" "$serif" 7 0.5 0.6 30
page f8_page_en13_tilt-13.jpg "$texts/en13.txt" "$mono" -13 0.6 0.7 28
page f8_page_zh11_tilt10.jpg "$texts/zh11.txt" "$cjk" 10 0.5 0.6 30
page f8_page_zh12_tilt-6.jpg "$texts/zh12.txt" "$cjk_serif" -6 0.6 0.8 30
photographed f8_photo_page_en12.jpg "$texts/en12.txt" "$condensed" '#5a3d28' "50 20 -30 60 -40 -20 20 -40" '#f2f2f2-#9a9a9a' 1.0
photographed f8_photo_page_en13.jpg "$texts/en13.txt" "$mono" '#2f3a44' "20 50 -50 10 -10 -40 40 20" '#a0a0a0-#f0f0f0' 1.2
photographed f8_photo_page_zh11.jpg "$texts/zh11.txt" "$cjk_serif" '#6e5a3e' "40 40 -20 10 -50 -30 10 -20" '#eeeeee-#a4a4a4' 0.9
photographed f8_photo_page_zh12.jpg "$texts/zh12.txt" "$cjk" '#44403a' "10 30 -60 50 -30 -10 50 -30" '#9e9e9e-#f2f2f2' 1.1

# Captures under Xvfb: GTK's widget factory and Tk's widget demonstrations, each in its own window at the size it
# opens with, and the whole screen with a browser showing libtiff's manual.
. "$here/vision-set-captures.sh"
start_screen
capture_program gtk3-widget-factory f8_window_widget_factory.png "$work/unpacked/usr/bin/gtk3-widget-factory"
capture_program 'Widget Demonstration' f8_window_tk_demos.png wish "$tk/widget"
browse "file://$pkg/doc/libtiff-doc/manual/index.html" f8_screen_libtiff_manual.png 1920,1080 screen 0,0
echo "picture set in $out"
