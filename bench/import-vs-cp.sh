#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# `lumaro-cli import` of a camera card against `cp -r` of the same files, in one run: PAIRS (default 40) JPG of
# 8 MB and CR3 of 24 MB, and 2 MP4 of 150 MB (about 1.6 GB).
set -euo pipefail
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
runs=${RUNS:-3}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

card="$dir/card"
mkdir -p "$card/DCIM/100CANON" "$card/DCIM/CANONMSC" "$card/MISC"
touch "$card/DCIM/CANONMSC/M3100.CTG"
n=${PAIRS:-40}
for i in $(seq -w 1 "$n"); do
  head -c $((8 << 20)) /dev/urandom > "$card/DCIM/100CANON/IMG_$i.JPG"
  head -c $((24 << 20)) /dev/urandom > "$card/DCIM/100CANON/IMG_$i.CR3"
done
for i in 1 2; do head -c $((150 << 20)) /dev/urandom > "$card/DCIM/100CANON/MVI_000$i.MP4"; done
bytes=$(du -sb "$card" | cut -f1)
sync

median() { sort -n | awk '{a[NR]=$1} END {print (NR%2) ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2}'; }
time_ms() { local s e; s=$(date +%s%N); "$@" > /dev/null; e=$(date +%s%N); echo $(( (e - s) / 1000000 )); }

lumaro=(); peer=()
for r in $(seq "$runs"); do
  rm -rf "$dir/to" "$dir/cp"; mkdir -p "$dir/to"; sync
  lumaro+=("$(time_ms "$cli" import --quiet "$card" --to "$dir/to")")
  sync
  peer+=("$(time_ms cp -r "$card" "$dir/cp")")
  sync
done
l=$(printf '%s\n' "${lumaro[@]}" | median)
p=$(printf '%s\n' "${peer[@]}" | median)
echo "files: $((2 * n + 2)), bytes: $bytes, runs: $runs (medians; both read the card from the page cache)"
awk -v l="$l" -v b="$bytes" 'BEGIN { printf "lumaro-cli import:  %d ms  (%.0f MB/s)\n", l, b / 1e6 / (l / 1000) }'
awk -v p="$p" -v b="$bytes" 'BEGIN { printf "cp -r:              %d ms  (%.0f MB/s)\n", p, b / 1e6 / (p / 1000) }'
awk -v l="$l" -v p="$p" 'BEGIN { printf "ratio lumaro/cp:    %.2f\n", (p > 0 ? l / p : 0) }'
