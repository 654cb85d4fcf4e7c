#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Fits the picture kinds again on every picture set bench/vision-accuracy.sh knows (made by the
# bench/make-vision-*.sh scripts) and writes vision/PictureKindWeights.inc; prints, per set, how a fit without
# that set does on it. Then rebuild and run bench/vision-accuracy.sh on a set made after the fit: only a set
# neither the fit nor the rules have seen tells how the marks do on pictures nobody tuned on.
#   bench/fit-picture-kind.sh [BUILD] [SET]      (defaults: build/release, /tmp/lumaro-vision-set)
set -euo pipefail
build=${1:-build/release}
set_dir=${2:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
export LUMARO_MODELS_DIR=${LUMARO_MODELS_DIR:-$here/../../shared/models}
features=$(mktemp)
trap 'rm -f "$features"' EXIT
for part in "$set_dir"/*/; do
    [ "$(basename "$part")" = truth ] && continue
    find "$part" -maxdepth 1 -type f ! -name '.*' -print0 |
        xargs -0 -r "$build/bench/picture_kind_features" >>"$features" 2>/dev/null || true
done
python3 "$here/train-picture-kind.py" "$features" "$here/vision-set/manifest.tsv" \
    "$here/../vision/PictureKindWeights.inc"
