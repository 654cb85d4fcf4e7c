#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Peak memory and CPU of `lumaro-cli index` with its default workers: per folder, the median over RUNS runs
# of the peak resident set (/usr/bin/time -v) and of the CPU seconds per picture (user + system), with each
# run's index file kept as INDEX_DIR/<folder name>.json for a comparison of results between builds.
#   bench/vision-memory.sh [BUILD] FOLDER...     (default BUILD build/release; RUNS=3; INDEX_DIR unset: not kept)
# Without a folder it makes 40 pictures of 24 MP (6000 × 4000 JPEGs from the reference photos) in
# BUILD/bench-vision-memory and measures those.
set -euo pipefail
build=${1:-build/release}
shift || true
runs=${RUNS:-3}
here=$(cd "$(dirname "$0")" && pwd)
models=${LUMARO_MODELS_DIR:-$here/../../shared/models}
export LUMARO_MODELS_DIR=$models
[ -d "$models/test-images" ] || { echo "vision-memory: no models in $models" >&2; exit 2; }
cli="$build/cli/lumaro-cli"
[ -x "$cli" ] || { echo "vision-memory: no $cli" >&2; exit 2; }

folders=("$@")
if [ ${#folders[@]} -eq 0 ]; then
    photos="$build/bench-vision-memory"
    if [ ! -f "$photos/photo_040.jpg" ]; then
        mkdir -p "$photos/big"
        for source in "$models"/test-images/*; do
            name=$(basename "${source%.*}")
            vips thumbnail "$source" "$photos/big/$name.jpg[Q=90]" 6000 --height 4000 --size force
        done
        big=("$photos"/big/*.jpg)
        for i in $(seq 1 40); do
            cp "${big[$(( (i - 1) % ${#big[@]} ))]}" "$photos/$(printf 'photo_%03d.jpg' "$i")"
        done
        rm -rf "$photos/big"
    fi
    folders=("$photos")
fi

median() { sort -g | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}'; }

log=$(mktemp)
trap 'rm -f "$log"' EXIT
for folder in "${folders[@]}"; do
    count=$(find "$folder" -maxdepth 1 -type f ! -name '.*' | wc -l)
    peaks=() cpus=()
    for _ in $(seq "$runs"); do
        rm -rf "$folder/_index"
        /usr/bin/time -v "$cli" index "$folder" --quiet >/dev/null 2>"$log" || true
        peaks+=("$(awk -F': ' '/Maximum resident set size/ {print $2 / 1024}' "$log")")
        user=$(awk -F': ' '/User time/ {print $2}' "$log")
        system=$(awk -F': ' '/System time/ {print $2}' "$log")
        cpus+=("$(echo "($user + $system) / $count" | bc -l)")
    done
    if [ -n "${INDEX_DIR:-}" ]; then
        mkdir -p "$INDEX_DIR"
        cp "$folder"/_index/vision_index_*.json "$INDEX_DIR/$(basename "$folder").json"
    fi
    rm -rf "$folder/_index"
    printf '%s (%d pictures): peak RSS median %.0f MB (runs: %s), CPU %.3f s per picture (median)\n' \
        "$(basename "$folder")" "$count" "$(printf '%s\n' "${peaks[@]}" | median)" \
        "$(printf '%.0f ' "${peaks[@]}" | sed 's/ $//')" "$(printf '%s\n' "${cpus[@]}" | median)"
done
