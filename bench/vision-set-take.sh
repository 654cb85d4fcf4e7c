# SPDX-License-Identifier: GPL-3.0-or-later
# take() for the vision set makers (sourced, not run): one packaged picture copied into the set. Uses the
# caller's $out and note.

take() { # FILE OUT: one packaged picture (converted when OUT's type differs), or a note that it is missing
    if [ ! -f "$1" ]; then
        note "$1 not found"
    elif [ "${1##*.}" = "${2##*.}" ]; then
        cp "$1" "$out/$2"
    else
        convert "$1" -background white -flatten -quality 92 "$out/$2"
    fi
}
