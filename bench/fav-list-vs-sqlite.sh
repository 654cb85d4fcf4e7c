#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# `lumaro-cli fav list` against the sqlite3 shell running the same query on the same 50,000-record store, in one run.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
records=${RECORDS:-50000}
runs=${RUNS:-11}
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config"
db="$XDG_DATA_HOME/lumaro/fav.db"

"$cli" fav list --quiet > /dev/null # creates the store and its table
sqlite3 "$db" "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < $records)
  INSERT INTO favourites (file_path, file_name, is_favour, favour_type, created_at, updated_at)
  SELECT printf('/home/me/Pictures/shoot-%d/IMG_%05d.JPG', i / 500, i), printf('IMG_%05d.JPG', i),
         i % 10 != 0, CASE WHEN i % 3 = 0 THEN 'SSS' END, 1.7e9 + i, 1.7e9 + i FROM n;"

query="SELECT file_path FROM favourites WHERE is_favour = 1 ORDER BY updated_at DESC;"

lumaro=(); peer=()
for _ in $(seq "$runs"); do
  lumaro+=("$(time_ms "$cli" fav list --quiet)")
  peer+=("$(time_ms sqlite3 "$db" "$query")")
done
l=$(printf '%s\n' "${lumaro[@]}" | median)
p=$(printf '%s\n' "${peer[@]}" | median)
echo "records: $records, favourites: $("$cli" fav list --quiet | wc -l), runs: $runs (medians)"
echo "lumaro-cli fav list:        ${l} ms"
echo "sqlite3 same query:         ${p} ms"
awk -v l="$l" -v p="$p" 'BEGIN { printf "ratio lumaro/sqlite3:       %.2f\n", (p > 0 ? l / p : 0) }'
