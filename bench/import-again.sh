#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# A second `lumaro-cli import` of a card with nothing new on it, against `cp -rn` (which also copies only what is
# missing) of the same card, in one run: FILES (default 2000) small JPGs and RAWs. Goal: under 1 s for 2,000 files.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
runs=${RUNS:-5}
files=${FILES:-2000}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

card="$dir/card"
mkdir -p "$card/DCIM/100CANON" "$card/DCIM/101CANON"
for i in $(seq -w 1 $((files / 2))); do
  head -c 4096 /dev/urandom > "$card/DCIM/100CANON/IMG_$i.JPG"
  head -c 4096 /dev/urandom > "$card/DCIM/100CANON/IMG_$i.CR3"
done
export XDG_DATA_HOME="$dir/data"
"$cli" import --quiet "$card" --to "$dir/to" > /dev/null
cp -r "$card" "$dir/cp"


lumaro=(); peer=()
for r in $(seq "$runs"); do
  lumaro+=("$(time_ms "$cli" import --quiet "$card" --to "$dir/to")")
  peer+=("$(time_ms cp -rn "$card" "$dir/cp")")
done
[ "$(ls "$dir/to")" = "roll01" ] || { echo "a second import copied something: $(ls "$dir/to")" >&2; exit 1; }
l=$(printf '%s\n' "${lumaro[@]}" | median)
p=$(printf '%s\n' "${peer[@]}" | median)
echo "files: $files, runs: $runs (medians; nothing new on the card)"
echo "lumaro-cli import (again):  $l ms"
echo "cp -rn (again):             $p ms"
awk -v l="$l" -v p="$p" 'BEGIN { printf "ratio lumaro/cp:            %.2f\n", (p > 0 ? l / p : 0) }'
