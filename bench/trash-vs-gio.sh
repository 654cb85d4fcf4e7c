#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Delete and restore as a user does them, side by side, in one run, with a throwaway Trash (XDG_DATA_HOME):
#  1. a round trip of FILES pictures: `lumaro-cli trash` + `lumaro-cli trash --restore` against `gio trash` and
#     the desktop's way back (`gio trash --restore` when gvfs serves trash://, else one batch `mv` back and one
#     `rm` of the records, as a user in a shell would do it: one process each, not one per file);
#  2. restoring FILES pictures while FILLER other items sit in the Trash: `lumaro-cli trash --restore` against
#     one batch `mv` (+ one `rm` of the records). This is the lookup cost: the Trash's info/ folder is large.
# Prints the median of RUNS rounds for each side and the ratio.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
files=${FILES:-200}
filler=${FILLER:-10000}
runs=${RUNS:-5}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME="$work/data"
trash="$XDG_DATA_HOME/Trash"
mkdir -p "$trash/files" "$trash/info" "$work/shoot"
for i in $(seq -w 1 "$files"); do head -c 20000 /dev/urandom > "$work/shoot/IMG $i.JPG"; done
shots=("$work"/shoot/*.JPG)
names=(); for f in "${shots[@]}"; do names+=("$(basename "$f")"); done

gio_restore_works=no
probe="$work/shoot/probe.jpg"; echo x > "$probe"
if command -v gio > /dev/null && gio trash "$probe" 2>/dev/null && gio trash --restore "trash:///probe.jpg" 2>/dev/null \
   && [ -e "$probe" ]; then
  gio_restore_works=yes
fi
rm -f "$probe" "$trash/files/probe.jpg" "$trash/info/probe.jpg.trashinfo"

now_ns() { date +%s%N; }
us() { echo $(( ($2 - $1) / 1000 )); }

# The peer's way back for the whole batch: one mv of every item, one rm of every record.
mv_back() {
  (cd "$trash/files" && mv -n -t "$work/shoot" -- "${names[@]}")
  (cd "$trash/info" && rm -f -- "${names[@]/%/.trashinfo}")
}

peer_trash() {
  if command -v gio > /dev/null; then gio trash "${shots[@]}"; else "$cli" trash --quiet "${shots[@]}" > /dev/null; fi
}

round_lumaro() {
  local s e; s=$(now_ns)
  "$cli" trash --quiet "${shots[@]}" > /dev/null
  "$cli" trash --quiet --restore "${shots[@]}" > /dev/null
  e=$(now_ns); us "$s" "$e"
}

round_peer() {
  local s e; s=$(now_ns)
  peer_trash
  if [ "$gio_restore_works" = yes ]; then
    gio trash --restore "${names[@]/#/trash:///}"
  else
    mv_back
  fi
  e=$(now_ns); us "$s" "$e"
}

# Restores only: the pictures are put in the Trash (untimed) by lumaro-cli, then brought back by each side.
restore_lumaro() {
  local s e
  "$cli" trash --quiet "${shots[@]}" > /dev/null
  s=$(now_ns)
  "$cli" trash --quiet --restore "${shots[@]}" > /dev/null
  e=$(now_ns); us "$s" "$e"
}

restore_peer() {
  local s e
  "$cli" trash --quiet "${shots[@]}" > /dev/null
  s=$(now_ns)
  mv_back
  e=$(now_ns); us "$s" "$e"
}

report() { # label, ours, peer's label, peer
  echo "$1: $2 us"
  echo "$3: $4 us"
  awk -v l="$2" -v p="$4" 'BEGIN { printf "ratio lumaro/peer: %.2f\n", (p > 0 ? l / p : 0) }'
}

check() { [ "$(ls "$work/shoot" | wc -l)" -eq "$files" ] || { echo "files went missing" >&2; exit 1; }; }

a=(); b=()
for _ in $(seq "$runs"); do a+=("$(round_lumaro)"); check; b+=("$(round_peer)"); check; done
peer_name="gio trash + gio trash --restore"
[ "$gio_restore_works" = yes ] || peer_name="gio trash + one mv back and one rm (no gvfs: gio cannot --restore here)"
command -v gio > /dev/null || peer_name="lumaro-cli trash + one mv back and one rm (no gio here)"
echo "== delete + restore of $files files, one batch each way, median of $runs rounds"
report "lumaro-cli trash + trash --restore" "$(printf '%s\n' "${a[@]}" | median)" "$peer_name" \
  "$(printf '%s\n' "${b[@]}" | median)"

# Other items in the Trash, as after a season of culling: records named like camera files, from other folders.
for i in $(seq 1 "$filler"); do
  n="OLD_$i.JPG"; : > "$trash/files/$n"
  printf '[Trash Info]\nPath=/media/card%d/DCIM/%s\nDeletionDate=2024-01-01T10:00:00\n' $((i % 7)) "$n" \
    > "$trash/info/$n.trashinfo"
done
a=(); b=()
for _ in $(seq "$runs"); do a+=("$(restore_lumaro)"); check; b+=("$(restore_peer)"); check; done
echo "== restore of $files files with $filler other items in the Trash, median of $runs rounds"
report "lumaro-cli trash --restore" "$(printf '%s\n' "${a[@]}" | median)" "one mv back + one rm" \
  "$(printf '%s\n' "${b[@]}" | median)"
