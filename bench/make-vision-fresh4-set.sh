#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes a fourth held-out picture set for bench/vision-accuracy.sh, from sources none of the earlier sets used,
# in SET/fresh4 (default /tmp/lumaro-vision-set):
#   KPhotoAlbum's demo folder (a family's own photos: friends in a bar, portraits, people at the beach and the
#   Grand Canyon, a pool game, some stored sideways, dogs, a rabbit, an aquarium, the sea, a sunset);
#   GCompris' photos of monuments (towers, gates, castles, statues, Mount Rushmore) and animals, and its
#   drawings of a family, a grandmother, a gorilla and a fruit basket; GNOME's and Plasma's account pictures
#   (a surfer, an astronaut, food, a mountain, a tree); LXQt's and SDDM's landscape wallpapers and a polygon
#   pattern; desktop screenshots from the Debian Administrator's Handbook; new pages in English and Chinese
#   turned 7–14° or photographed on a desk; two drawings; and captures under Xvfb of a browser showing a
#   handbook page, a photo gallery and a folder listing, and of a message box.
#   truth/ gets the true text of every made text picture.
# The expected mark of every picture is in bench/vision-set/manifest.tsv (written before the set was first
# scored). Packages come with apt-get download and are only unpacked (GCompris keeps its pictures in Qt
# resource files, read here with a few lines of Python). Needs imagemagick (with webp), fonts-noto-cjk,
# fonts-dejavu, xvfb, xdotool, chromium, x11-utils and zstd. DISPLAY_NUMBER picks the Xvfb display (default 81).
set -euo pipefail
set_dir=${1:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
texts=$here/vision-set
display=:${DISPLAY_NUMBER:-81}
cjk=/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
cjk_serif=/usr/share/fonts/opentype/noto/NotoSerifCJK-Regular.ttc
serif=/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf
sans=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
mono=/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf
out=$set_dir/fresh4
mkdir -p "$out" "$set_dir/truth"
work=$(mktemp -d)
trap 'rm -rf "$work"; [ -n "${xvfb:-}" ] && kill "$xvfb" 2>/dev/null || true' EXIT

(cd "$work" && apt-get download kphotoalbum gcompris-qt-data gnome-control-center-data plasma-workspace-data \
    lxqt-themes sddm-theme-maldives debian-handbook >/dev/null && for deb in *.deb; do dpkg -x "$deb" unpacked; done)
pkg=$work/unpacked
take() { # FILE OUT: one packaged picture (converted when OUT's type differs), or a note that it is missing
    if [ ! -f "$1" ]; then
        echo "make-vision-fresh4-set: $1 not found" >&2
    elif [ "${1##*.}" = "${2##*.}" ]; then
        cp "$1" "$out/$2"
    else
        convert "$1" -quality 92 "$out/$2"
    fi
}

kpa=$pkg/usr/share/kphotoalbum/demo
for name in anne_helene bar55 bar55_2 blackie cold_water donna donna_2 grand_canyon_1 grand_canyon_2 \
    grand_canyon_3 jesper new_wave_1 new_wave_2 pool pool_2 skagen skagen_2 snow spiff spiff_2 sunset wayne; do
    take "$kpa/$name.jpg" "kpa_$name.jpg"
done
take "$kpa/qt-logo.jpg" kpa_qt_logo.jpg

# GCompris packs its activities' pictures into Qt resource files; unpack the ones with photos and drawings.
/usr/bin/python3 - "$pkg/usr/share/gcompris-qt/rcc" "$work/gcompris" <<'PY'
import os, struct, subprocess, sys, zlib
def unpack(path, out):
    data = open(path, 'rb').read()
    version, tree, payload, names = struct.unpack('>IIII', data[4:20])
    node = 22 if version >= 2 else 14
    def name(off):
        length, = struct.unpack('>H', data[names + off:names + off + 2])
        return data[names + off + 6:names + off + 6 + 2 * length].decode('utf-16-be')
    def walk(index, where):
        base = tree + index * node
        name_off, flags = struct.unpack('>IH', data[base:base + 6])
        here = os.path.join(where, name(name_off)) if index else where
        if flags & 2:
            count, first = struct.unpack('>II', data[base + 6:base + 14])
            for child in range(first, first + count):
                walk(child, here)
            return
        off, = struct.unpack('>I', data[base + 10:base + 14])
        size, = struct.unpack('>I', data[payload + off:payload + off + 4])
        blob = data[payload + off + 4:payload + off + 4 + size]
        if flags & 1:
            blob = zlib.decompress(blob[4:])
        elif flags & 4:
            blob = subprocess.run(['zstd', '-dc'], input=blob, capture_output=True, check=True).stdout
        os.makedirs(os.path.dirname(here), exist_ok=True)
        open(here, 'wb').write(blob)
    walk(0, out)
for activity in ('explore_monuments', 'explore_world_animals', 'explore_farm_animals', 'lang'):
    unpack(f'{sys.argv[1]}/{activity}.rcc', sys.argv[2])
PY
gc=$work/gcompris/gcompris/src/activities
take "$gc/explore_monuments/resource/france/eiffelTower.webp" gc_eiffel_tower.jpg
take "$gc/explore_monuments/resource/germany/brandenburgGate.webp" gc_brandenburg_gate.jpg
take "$gc/explore_monuments/resource/india/hawaMahal.webp" gc_hawa_mahal.jpg
take "$gc/explore_monuments/resource/wonders/colosseum.webp" gc_colosseum.jpg
take "$gc/explore_monuments/resource/usa/statueofLiberty.webp" gc_statue_of_liberty.jpg
take "$gc/explore_monuments/resource/germany/neuschwansteinCastle.webp" gc_neuschwanstein.jpg
take "$gc/explore_monuments/resource/france/pontduGard.webp" gc_pont_du_gard.jpg
take "$gc/explore_monuments/resource/wonders/greatWallofChina.webp" gc_great_wall.jpg
take "$gc/explore_monuments/resource/usa/mountRushmore.webp" gc_mount_rushmore.jpg
take "$gc/explore_monuments/resource/wonders/christTheRedeemer.webp" gc_christ_redeemer.jpg
take "$gc/explore_world_animals/resource/animals/giraffe.webp" gc_giraffes.jpg
take "$gc/explore_world_animals/resource/animals/panda.webp" gc_panda.jpg
take "$gc/explore_world_animals/resource/animals/lemur.webp" gc_lemurs.jpg
take "$gc/explore_world_animals/resource/animals/kangaroo.webp" gc_kangaroo.jpg
take "$gc/explore_farm_animals/resource/animals/horse.webp" gc_horses.jpg
take "$gc/explore_farm_animals/resource/animals/sheep.webp" gc_sheep.jpg
words=$gc/lang/resource/words_sample
take "$words/family.webp" gc_family_drawing.png
take "$words/grandmother.webp" gc_grandmother_drawing.png
take "$words/gorilla.webp" gc_gorilla_drawing.png
take "$words/fruit.webp" gc_fruit_basket_drawing.png

faces=$pkg/usr/share/pixmaps/faces
take "$faces/surfer.jpg" face_surfer.jpg
take "$faces/tomatoes.jpg" face_tomatoes.jpg
take "$faces/coffee2.jpg" face_latte.jpg
take "$faces/mountain.jpg" face_mountain.jpg
take "$faces/tree.jpg" face_tree.jpg
take "$faces/grapes.jpg" face_grapes.jpg
take "$faces/penguin.jpg" face_penguin.jpg
avatars=$pkg/usr/share/plasma/avatars/photos
take "$avatars/Astronaut.png" avatar_astronaut.jpg
take "$avatars/Pancakes.png" avatar_pancakes.jpg
take "$avatars/Sushi.png" avatar_sushi.jpg
take "$avatars/Cocktail.png" avatar_cocktail_beach.jpg
take "$avatars/Car.png" avatar_car.jpg
take "$avatars/Books.png" avatar_books.jpg
walls=$pkg/usr/share/lxqt/wallpapers
take "$walls/fog.jpg" lxqt_fog.jpg
take "$walls/Valendas.png" lxqt_valendas.jpg
take "$walls/beam.png" lxqt_beam.jpg
take "$walls/flowers.png" lxqt_flowers.jpg
take "$walls/triangles.png" lxqt_triangles.png
take "$pkg/usr/share/sddm/themes/maldives/background.jpg" sddm_maldives.jpg
handbook=$pkg/usr/share/doc/debian-handbook/html/en-US
take "$handbook/images/gnome.png" handbook_gnome_desktop.png
take "$handbook/images/kde.png" handbook_kde_desktop.png
take "$handbook/images/synaptic.png" handbook_synaptic.png
take "$handbook/images/wireshark.png" handbook_wireshark.png

. "$here/vision-set-pages.sh"
page page_en6_tilt12.jpg "$texts/en6.txt" "$serif" 12 0.5 0.7 30
page page_zh5_tilt-7.jpg "$texts/zh5.txt" "$cjk" -7 0.5 0.6 30
page letter_mono_tilt-14.jpg "$texts/letter.txt" "$mono" -14 0.4 0.8 26
photographed photo_page_en6.jpg "$texts/en6.txt" "$sans" '#5a3d2b' "50 30 -40 70 -10 40 20 -10" '#f4f4f4-#9c9c9c' 1.1
photographed photo_page_zh5_serif.jpg "$texts/zh5.txt" "$cjk_serif" '#44525e' "50 30 -40 70 -10 40 20 -10" '#f4f4f4-#9c9c9c' 1.1

# Drawings: a barn under a tree, and a stick-figure family holding hands.
convert -size 1100x800 xc:'#fff8e7' -stroke '#333' -strokewidth 6 -fill '#c0392b' -draw "rectangle 200,420 560,700" \
    -fill '#7f2a1f' -draw "polygon 170,430 380,260 590,430" -fill '#f5deb3' -draw "rectangle 330,540 430,700" \
    -fill '#6d4c41' -draw "rectangle 780,430 830,700" -fill '#43a047' -draw "circle 805,360 805,220" \
    -fill '#8bc34a' -draw "rectangle 0,700 1100,800" "$out/drawing_barn_tree.png"
convert -size 1000x700 xc:white -stroke black -strokewidth 7 -fill none \
    -draw "circle 250,200 250,150 line 250,250 250,450 line 250,450 200,600 line 250,450 300,600 line 150,320 350,320" \
    -draw "circle 500,240 500,195 line 500,285 500,460 line 500,460 455,600 line 500,460 545,600 line 350,320 650,340" \
    -draw "circle 750,330 750,295 line 750,365 750,500 line 750,500 715,600 line 750,500 785,600 line 650,340 830,420" \
    -fill '#ffeb3b' -stroke '#f9a825' -draw "circle 880,110 880,60" "$out/drawing_stick_family.png"

# Captures under Xvfb: browser windows showing a handbook page and a photo gallery, the whole screen with a
# folder listing, and a message box alone.
cat >"$work/gallery.html" <<EOF
<html><body style="font-family:sans-serif;background:#f0f0f0"><h2>Summer 2006</h2>
$(for name in skagen anne_helene sunset donna spiff grand_canyon_3; do
    echo "<figure style='display:inline-block;margin:8px'><img src='$kpa/$name.jpg' height='200'><figcaption>$name.jpg</figcaption></figure>"
done)</body></html>
EOF
. "$here/vision-set-captures.sh"
start_screen
browse "file://$handbook/sect.package-meta-information.html" window_handbook_page.png 1366,900 window 60,40
browse "file://$work/gallery.html" window_photo_gallery.png 1440,900 window 60,40
browse "file://$kpa/" screen_folder_listing.png 1920,1080 screen 60,40
DISPLAY=$display xmessage -center -buttons "Keep,Discard,Cancel" \
    "The card in slot 2 still holds 214 pictures that were not imported. Keep them on the card?" &
message=$!
sleep 2
import -window "$(DISPLAY=$display xdotool search --onlyvisible --class xmessage | tail -1)" -display "$display" \
    "$out/window_xmessage.png"
kill "$message" 2>/dev/null || true
echo "picture set in $out"
