#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the analysis models for the current user into ~/.local/share/lumaro/models (or --dest DIR):
# copied from a folder that already holds them (--from ../shared/models), or downloaded from their upstream
# sources. Every file is checked against its sha256 before it is put in place; nothing is overwritten with an
# unverified file.
#
#   scripts/fetch-models.sh [--from DIR] [--dest DIR] [GROUP...]     groups: classification face (default: all)
set -euo pipefail

dest="${XDG_DATA_HOME:-$HOME/.local/share}/lumaro/models"
from=""
groups=()
while [ $# -gt 0 ]; do
    case "$1" in
        --from) from="${2:?--from needs a folder}"; shift 2 ;;
        --dest) dest="${2:?--dest needs a folder}"; shift 2 ;;
        -h|--help) sed -n '3,8p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
        -*) echo "fetch-models: unknown option $1" >&2; exit 2 ;;
        *) groups+=("$1"); shift ;;
    esac
done
if [ -n "$from" ] && [ ! -d "$from" ]; then
    echo "fetch-models: no such folder: $from" >&2
    exit 2
fi
[ ${#groups[@]} -gt 0 ] || groups=(classification face)
if [ -z "$from" ] && ! command -v curl >/dev/null; then
    echo "fetch-models: downloading needs curl (apt-get install curl), or use --from DIR" >&2
    exit 2
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# install_file RELATIVE_PATH SHA256 URL — puts one verified file at $dest/RELATIVE_PATH.
install_file() {
    local relative=$1 sum=$2 url=$3 target="$dest/$1" staged="$work/${1//\//_}"
    if [ -f "$target" ] && echo "$sum  $target" | sha256sum --check --status; then
        echo "ok        $relative (already installed)"
        return 0
    fi
    if [ -n "$from" ]; then
        [ -f "$from/$relative" ] || { echo "missing   $relative in $from" >&2; return 1; }
        cp "$from/$relative" "$staged"
    else
        [ -n "$url" ] || { echo "no upstream source for $relative: use --from" >&2; return 1; }
        curl -fL --retry 3 -o "$staged" "$url" || { echo "download failed: $url" >&2; return 1; }
    fi
    if ! echo "$sum  $staged" | sha256sum --check --status; then
        echo "checksum  $relative does not match $sum: not installed" >&2
        return 1
    fi
    mkdir -p "$(dirname "$target")"
    mv -f "$staged" "$target.part" && mv -f "$target.part" "$target"
    echo "installed $relative"
}

install_classification() {
    install_file classification/mobilenetv2-12-int8.onnx \
        cc028fe6cae7bc11a4ff53cfc9b79c920e8be65ce33a904ec3e2a8f66d77f95f \
        https://github.com/onnx/models/raw/main/validated/vision/classification/mobilenet/model/mobilenetv2-12-int8.onnx
    install_file classification/imagenet1k_synset.txt \
        acf75ef0abe89694b19056e0796401068b459c457baa30335f240c7692857355 \
        https://github.com/onnx/models/raw/main/validated/vision/classification/synset.txt
    if [ -n "$from" ]; then
        install_file classification/imagenet1k_labels.txt \
            e697a491aa735cc6c2aaf982f8e86e8fc7b0a1ea7750a2cc6a2bdfc1e109012f ""
    elif [ ! -f "$dest/classification/imagenet1k_labels.txt" ]; then
        # The short-name list has no upstream download of its own; the first name of each synset line is
        # the same class in the same order (a few names are longer than the curated list's).
        cut -d' ' -f2- "$dest/classification/imagenet1k_synset.txt" | cut -d, -f1 > "$work/labels.txt"
        mv -f "$work/labels.txt" "$dest/classification/imagenet1k_labels.txt"
        echo "generated classification/imagenet1k_labels.txt from the synset list"
    fi
}

install_face() {
    install_file face/face_detection_yunet_2022mar.onnx \
        50ef07f702a31741ca46a4c0d947773b64143b9362780237bf0d427d6c79bab7 \
        https://github.com/opencv/opencv_zoo/raw/main/models/face_detection_yunet/face_detection_yunet_2022mar.onnx
}

# --- pose group: install_pose() goes here (MoveNet, converted from the npm package), and "pose" in the
# --- default groups above.

failed=0
for group in "${groups[@]}"; do
    if ! declare -F "install_$group" >/dev/null; then
        echo "fetch-models: unknown group $group" >&2
        exit 2
    fi
    "install_$group" || failed=1
done
echo "models in $dest"
exit $failed
