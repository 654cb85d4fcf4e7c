# SPDX-License-Identifier: GPL-3.0-or-later
# Text pictures for the vision set makers (sourced, not run): pages turned by an angle and pages photographed
# on a desk, each with its true text in $set_dir/truth. Each set passes its own angles, corners and light, so
# its pictures stay of the kind it was scored with. Uses the caller's $out, $work and $set_dir.

# page OUT TEXT FONT ANGLE NOISE BLUR POINTS: a text page turned by ANGLE degrees.
page() {
    convert -background white -fill '#1c1c1c' -font "$3" -pointsize "$7" -interline-spacing 14 label:"$(cat "$2")" \
        -bordercolor white -border 60 -background white -rotate "$4" +repage -attenuate "$5" +noise Gaussian \
        -blur 0x"$6" -quality 90 "$out/$1"
    cp "$2" "$set_dir/truth/$(basename "${1%.*}").txt"
}

# photographed OUT TEXT FONT DESK SHIFTS GRADIENT BLUR: a page on a DESK-coloured desk seen at an angle, lit
# unevenly (GRADIENT, top to bottom). SHIFTS moves the page's corners (top left, top right, bottom right,
# bottom left) by "x y" pixels each, eight numbers in all.
photographed() {
    convert -background white -fill '#222' -font "$3" -pointsize 30 -interline-spacing 12 label:"$(cat "$2")" \
        -bordercolor white -border 50 "$work/page.png"
    local w h s
    w=$(identify -format %w "$work/page.png")
    h=$(identify -format %h "$work/page.png")
    read -r -a s <<< "$5"
    convert "$work/page.png" -virtual-pixel background -background "$4" -distort Perspective \
        "0,0 ${s[0]},${s[1]}  $w,0 $((w + s[2])),${s[3]}  $w,$h $((w + s[4])),$((h + s[5]))  0,$h ${s[6]},$((h + s[7]))" \
        \( -size "${w}x${h}" gradient:"$6" \) -compose multiply -composite \
        -attenuate 0.8 +noise Gaussian -blur 0x"$7" -quality 85 "$out/$1"
    cp "$2" "$set_dir/truth/$(basename "${1%.*}").txt"
}
