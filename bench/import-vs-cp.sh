#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# `lumaro-cli import` of a camera card against `cp -r` of the same card, in one run, each read from a cold page
# cache (the programs themselves warm): FILES (default 200) JPGs of SIZE_MB (default 8) MB. As root the card
# is a real FAT image on a loop device (what a card reader gives); otherwise a plain folder. The page cache is dropped before every run when this may
# (root), else the script says so and both read warm.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
runs=${RUNS:-6}
files=${FILES:-200}
size_mb=${SIZE_MB:-8}
dir=$(mktemp -d)
mnt=""; loop=""
cleanup() {
  if [ -n "$mnt" ]; then umount "$mnt" 2>/dev/null || true; rmdir "$mnt" 2>/dev/null || true; fi
  if [ -n "$loop" ]; then losetup -d "$loop" 2>/dev/null || true; fi
  rm -rf "$dir"
}
trap cleanup EXIT

card="$dir/card"
kind="folder"
if [ "$(id -u)" -eq 0 ] && command -v mkfs.vfat >/dev/null && command -v losetup >/dev/null; then
  mkfs.vfat -C -n EOS_DIGITAL "$dir/card.img" $(( (files * size_mb + 64) * 1024 )) >/dev/null
  if loop=$(losetup --find --show "$dir/card.img" 2>/dev/null); then
    mnt=$(mktemp -d /mnt/lumaro-bench-XXXXXX)
    mount -t vfat "$loop" "$mnt" && card="$mnt" && kind="FAT image on $loop" || { rmdir "$mnt"; mnt=""; }
  else
    loop=""
  fi
fi
mkdir -p "$card/DCIM/100CANON"
for i in $(seq -w 1 "$files"); do
  head -c $((size_mb << 20)) /dev/urandom > "$card/DCIM/100CANON/IMG_$i.JPG"
done
bytes=$(du -sb "$card/DCIM" | cut -f1)
sync

cold=$(cache_state)

export XDG_DATA_HOME="$dir/data"   # the remembered cards of this bench only
# Only the card is read cold: each program (and its libraries) is loaded once after the drop, as it would be
# on a desktop where the program has run before.
mkdir -p "$dir/empty/DCIM"
warm_programs() {
  "$cli" import --quiet "$dir/empty" --to "$dir/empty-to" > /dev/null 2>&1 || true
  cp -r "$dir/empty/DCIM" "$dir/empty-cp"
  rm -rf "$dir/empty-to" "$dir/empty-cp" "$dir/data"
}
run_lumaro() { rm -rf "$dir/to" "$dir/data"; mkdir -p "$dir/to"; drop || true; warm_programs
  lumaro+=("$(time_ms "$cli" import --quiet "$card" --to "$dir/to")"); }
run_peer() { rm -rf "$dir/cp"; drop || true; warm_programs
  peer+=("$(time_ms cp -r "$card/DCIM" "$dir/cp")"); }
take_turns "$runs"
l=$(printf '%s\n' "${lumaro[@]}" | median)
p=$(printf '%s\n' "${peer[@]}" | median)
echo "card: $kind; files: $files x $size_mb MB, bytes: $bytes, runs: $runs (medians; $cold)"
awk -v l="$l" -v b="$bytes" 'BEGIN { printf "lumaro-cli import:  %d ms  (%.0f MB/s)\n", l, b / 1e6 / (l / 1000) }'
awk -v p="$p" -v b="$bytes" 'BEGIN { printf "cp -r:              %d ms  (%.0f MB/s)\n", p, b / 1e6 / (p / 1000) }'
awk -v l="$l" -v p="$p" 'BEGIN { printf "ratio lumaro/cp:    %.2f  (cp speed / ours: %.2fx)\n", (p > 0 ? l / p : 0), (l > 0 ? p / l : 0) }'
