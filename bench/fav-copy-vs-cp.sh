#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The favourites copy (the setting that puts a copy of each new favourite into one folder): `lumaro-cli fav add`
# of FILES (default 200) pictures of SIZE_MB (default 8) MB with the copy switched on, against one `cp` of the
# same files into a folder, in one run, each read from a cold page cache (the programs themselves warm; as
# root, else both read warm and the script says so). Ours also records every favourite in the store.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
runs=${RUNS:-6}
files=${FILES:-200}
size_mb=${SIZE_MB:-8}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

mkdir -p "$dir/shoot" "$dir/config/lumaro"
for i in $(seq -w 1 "$files"); do
  head -c $((size_mb << 20)) /dev/urandom > "$dir/shoot/IMG_$i.JPG"
done
bytes=$(du -sb "$dir/shoot" | cut -f1)
printf '[General]\nLMR_FlowFavCopyEnabled=true\nLMR_FlowFavCopyTargetPosition=%s\n' "$dir/favs" \
  > "$dir/config/lumaro/lumaro.conf"
export XDG_CONFIG_HOME="$dir/config" XDG_DATA_HOME="$dir/data"
sync

cold=$(cache_state)

# Only the pictures are read cold: each program is loaded once after the drop.
warm_programs() {
  "$cli" fav list --quiet > /dev/null 2>&1 || true
  cp --version > /dev/null
}
run_lumaro() { rm -rf "$dir/favs" "$dir/data"; mkdir -p "$dir/favs"; drop || true; warm_programs
  lumaro+=("$(time_ms_silent "$cli" fav add --quiet "$dir"/shoot/*.JPG)"); }
run_peer() { rm -rf "$dir/cp"; mkdir -p "$dir/cp"; drop || true; warm_programs
  peer+=("$(time_ms_silent cp "$dir"/shoot/*.JPG "$dir/cp/")"); }
take_turns "$runs"
copied=$(find "$dir/favs" -type f | wc -l)
l=$(printf '%s\n' "${lumaro[@]}" | median)
p=$(printf '%s\n' "${peer[@]}" | median)
echo "files: $files x $size_mb MB ($copied copied by the last fav add), bytes: $bytes, runs: $runs (medians; $cold)"
echo "lumaro-cli fav add, copy on: $l ms"
echo "cp:                          $p ms"
awk -v l="$l" -v p="$p" 'BEGIN { printf "ratio lumaro/cp:             %.2f\n", (p > 0 ? l / p : 0) }'
