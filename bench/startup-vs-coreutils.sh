#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Start-up of the short lumaro-cli commands against the smallest tool that does the same job, each pair measured
# in one run, interleaved (warm runs, medians, bench/side_by_side.py): --help and list of 1,000 files vs ls, tags
# vs getfattr, fav list (empty store), fav add (quiet and with its log lines), fav remove and fav type of one
# picture vs the sqlite3 shell, trash and trash --json vs gio trash, fav --help and trash --help vs ls, then
# trash --restore of one file, fav audit and index --help-all vs ls (their start alone) and fav list --json vs
# sqlite3 -json: all answered by the front end. And a tag toggle (tags and XMP sidecar) vs setfattr, run by
# lumaro-cli-xmp (exiv2, no Qt).
set -euo pipefail
build=${1:-build/release}
here=$(cd "$(dirname "$0")" && pwd)
cli=${LUMARO_CLI:-$build/cli/lumaro-cli} # LUMARO_CLI: another program to time, lumaro-cli-light for one
runs=${RUNS:-30}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME="$work/data" XDG_CONFIG_HOME="$work/config" XDG_CACHE_HOME="$work/cache"

mkdir -p "$work/folder" "$work/trashed"
( cd "$work/folder" && for i in $(seq -w 1 1000); do echo > "IMG_$i.JPG"; done )
echo > "$work/tagged.jpg"
"$cli" tags "$work/tagged.jpg" --toggle red --quiet > /dev/null
"$cli" fav list --quiet > /dev/null # creates the store
db="$XDG_DATA_HOME/lumaro/fav.db"

# name, our command, the peer's command
pairs=(
  "--help|$cli --help|ls $work"
  "list 1000|$cli list --quiet $work/folder|ls $work/folder"
  "tags|$cli tags --quiet $work/tagged.jpg|getfattr --only-values -n user.xdg.tags $work/tagged.jpg"
  "fav list|$cli fav list --quiet|sqlite3 $db 'SELECT file_path FROM favourites WHERE is_favour = 1 ORDER BY updated_at DESC;'"
  "fav add|$cli fav add --quiet $work/tagged.jpg|sqlite3 $db \"UPDATE favourites SET is_favour = 1, updated_at = unixepoch() WHERE file_path = '$work/tagged.jpg';\""
  "fav add, logged|$cli fav add $work/tagged.jpg|sqlite3 $db \"UPDATE favourites SET is_favour = 1, updated_at = unixepoch() WHERE file_path = '$work/tagged.jpg';\""
  "fav remove|$cli fav remove --quiet $work/tagged.jpg|sqlite3 $db \"UPDATE favourites SET is_favour = 0, updated_at = unixepoch() WHERE file_path = '$work/tagged.jpg';\""
  "trash|$cli trash --quiet $work/trashed/f|gio trash $work/trashed/f"
  "fav --help|$cli fav --help|ls $work"
  "trash --help|$cli trash --help|ls $work"
  "tags toggle|$cli tags --quiet $work/tagged.jpg --toggle red|setfattr -n user.xdg.tags -v red $work/tagged.jpg"
  "fav type|$cli fav type sss --quiet $work/tagged.jpg|sqlite3 $db \"UPDATE favourites SET favour_type = 'SSS', updated_at = unixepoch() WHERE file_path = '$work/tagged.jpg';\""
  "trash --json|$cli trash --json --quiet $work/trashed/f|gio trash $work/trashed/f"
  "trash --restore|$cli trash --restore --quiet $work/trashed/f|ls $work"
  "fav audit|$cli fav audit --quiet|ls $work"
  "fav list --json|$cli fav list --json --quiet|sqlite3 -json $db 'SELECT file_path FROM favourites WHERE is_favour = 1 ORDER BY updated_at DESC;'"
  "index --help-all|$cli index --help-all|ls $work"
)
echo "load: $(cut -d' ' -f1-3 /proc/loadavg), runs: $runs (medians, interleaved)"
printf '%-14s %10s %10s %7s\n' command lumaro-cli peer ratio
for pair in "${pairs[@]}"; do
  IFS='|' read -r name ours peer <<< "$pair"
  command -v "${peer%% *}" > /dev/null || { printf '%-14s (peer %s not installed)\n' "$name" "${peer%% *}"; continue; }
  prepare=""
  [[ $name == trash* ]] && prepare="touch $work/trashed/f"
  [[ $name == "trash --restore" ]] && prepare="sh -c 'rm -f $work/trashed/f; touch $work/trashed/f; $cli trash --quiet $work/trashed/f'"
  python3 "$here/side_by_side.py" "$name" "$runs" "$ours" "$peer" "$prepare"
done
