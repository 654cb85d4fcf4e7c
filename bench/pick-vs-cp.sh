#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# RAW pick: `lumaro-cli pick` copying the FILES (default 200) RAW files of SIZE_MB (default 8) MB that have a JPG
# into RAW_PICK, against one `cp` of the same RAW files into a folder, in one run, each read from a cold page
# cache (the programs themselves warm; as root, else both read warm and the script says so). Half as many RAW
# files again have no JPG and stay where they are.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
runs=${RUNS:-6}
files=${FILES:-200}
size_mb=${SIZE_MB:-8}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

mkdir -p "$dir/shoot/JPG" "$dir/shoot/RAW"
for i in $(seq -w 1 $((files + files / 2))); do
  head -c $((size_mb << 20)) /dev/urandom > "$dir/shoot/RAW/IMG_$i.CR2"
  (( 10#$i <= files )) && head -c 4096 /dev/urandom > "$dir/shoot/JPG/IMG_$i.JPG"
done
picked=$(ls "$dir"/shoot/RAW/*.CR2 | head -n "$files")
bytes=$(du -cb $picked | tail -1 | cut -f1)
export XDG_CONFIG_HOME="$dir/config" XDG_DATA_HOME="$dir/data"
sync

cold=$(cache_state)

# Only the pictures are read cold: each program is loaded once after the drop.
warm_programs() {
  "$cli" pick --help > /dev/null 2>&1 || true
  cp --version > /dev/null
}
run_lumaro() { rm -rf "$dir/shoot/RAW_PICK"; drop || true; warm_programs
  lumaro+=("$(time_ms_silent "$cli" pick --jpg "$dir/shoot/JPG" --raw "$dir/shoot/RAW")"); }
run_peer() { rm -rf "$dir/cp"; mkdir -p "$dir/cp"; drop || true; warm_programs
  # shellcheck disable=SC2086
  peer+=("$(time_ms_silent cp $picked "$dir/cp/")"); }
take_turns "$runs"
copied=$(find "$dir/shoot/RAW_PICK" -type f | wc -l)
l=$(printf '%s\n' "${lumaro[@]}" | median)
p=$(printf '%s\n' "${peer[@]}" | median)
echo "RAW files picked: $files x $size_mb MB ($copied copied by the last pick), bytes: $bytes, runs: $runs (medians; $cold)"
echo "lumaro-cli pick: $l ms"
echo "cp:              $p ms"
awk -v l="$l" -v p="$p" 'BEGIN { printf "ratio lumaro/cp: %.2f\n", (p > 0 ? l / p : 0) }'
