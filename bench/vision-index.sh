#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Pictures per second of `lumaro-cli index` on 100 photos of 24 megapixels (6000×4000 JPEGs made from the
# reference photos), with its time split by stage, against the ceiling: the same models alone on pictures
# decoded and scaled beforehand (vision_models_bench, two threads). Prints both and their ratio.
set -euo pipefail
build=${1:-build/release}
runs=${RUNS:-3}
models=${LUMARO_MODELS_DIR:-$(cd "$(dirname "$0")/.." && pwd)/../shared/models}
export LUMARO_MODELS_DIR=$models
[ -d "$models/test-images" ] || { echo "vision-index: no models in $models" >&2; exit 2; }
cli="$build/cli/lumaro-cli"
kernel="$build/bench/vision_models_bench"

work="$build/bench-vision"
photos="$work/photos"
if [ ! -f "$photos/photo_100.jpg" ]; then
    rm -rf "$work"; mkdir -p "$photos" "$work/big"
    for source in "$models"/test-images/*; do
        name=$(basename "${source%.*}")
        vips thumbnail "$source" "$work/big/$name.jpg[Q=90]" 6000 --height 4000 --size force
    done
    big=("$work"/big/*.jpg)
    for i in $(seq 1 100); do
        cp "${big[$(( (i - 1) % ${#big[@]} ))]}" "$photos/$(printf 'photo_%03d.jpg' "$i")"
    done
fi

times=()
perf=""
for _ in $(seq "$runs"); do
    rm -rf "$photos/_index"
    start=$(date +%s.%N)
    perf=$("$cli" index "$photos" 2>&1 >/dev/null | grep '^PERF-VISION_INDEX' || true)
    end=$(date +%s.%N)
    times+=("$(echo "$end - $start" | bc -l)")
done
median=$(printf '%s\n' "${times[@]}" | sort -g | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}')
cli_pps=$(echo "100 / $median" | bc -l)
echo "lumaro-cli index, 100 × 24 MP: median $(printf '%.2f' "$median") s over $runs runs → $(printf '%.2f' "$cli_pps") pictures/s"
echo "  last run: $perf"

ceiling=$("$kernel" --benchmark_filter='BM_AllThree' --benchmark_format=json 2>/dev/null |
    python3 -c 'import json,sys; b=json.load(sys.stdin)["benchmarks"][0]; print(b["items_per_second"])')
echo "ceiling (models alone, pre-decoded 1500×1000 input, 2 threads): $(printf '%.2f' "$ceiling") pictures/s"
echo "ratio lumaro-cli / ceiling: $(printf '%.2f' "$(echo "$cli_pps / $ceiling" | bc -l)")"
"$kernel" --benchmark_filter='BM_Classification|BM_Faces|BM_Text' 2>/dev/null | grep '^BM_' || true
