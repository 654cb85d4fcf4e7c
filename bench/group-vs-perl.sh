#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# `lumaro-cli group` / `ungroup` against a Perl loop that renames the same files with the same prefixes
# (no-clobber check, one rename each), on one folder of 10,000 pictures, in one run.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/timing.sh"
build=${1:-build/release}
cli="$build/cli/lumaro-cli"
files=${FILES:-10000}
runs=${RUNS:-7}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

# Two cameras and a phone, a person in every third frame; the vision index marks each picture.
mkdir "$dir/_index"
( cd "$dir" && for i in $(seq -w 1 "$files"); do
    n=$((10#$i)); stem="IMG_$i"; ext=JPG
    [ $((n % 7)) -eq 0 ] && stem="DSC0$i"
    [ $((n % 5)) -eq 0 ] && ext=CR2
    : > "$stem.$ext"
  done )
( cd "$dir" && ls | grep -v "^_index$" | awk 'BEGIN { printf "{\"generatedAt\":\"2024-01-01T00:00:00Z\",\"results\":[" }
    { printf "%s{\"fileName\":\"%s\",\"classification\":\"%s\"}", (NR > 1 ? "," : ""), $0,
             (NR % 3 == 0 ? "MARK_PEOPLE" : "MARK_OUTDOOR") }
    END { print "]}" }' > _index/vision_index_0101000000_bench.json )
sync


# The peer: the same renames, no grouping logic (every file into one group), in one process.
perl_group='opendir my $d, $ARGV[0] or die; chdir $ARGV[0];
  for (sort grep { -f && !/^\./ && !/^_G\d+_/ } readdir $d) { my $t = "_G1_$_"; rename $_, $t unless -e $t }'
perl_ungroup='opendir my $d, $ARGV[0] or die; chdir $ARGV[0];
  for (sort grep { -f && /^_G\d+_/ } readdir $d) { (my $t = $_) =~ s/^_G\d+_//; rename $_, $t unless -e $t }'

lg=(); lu=(); pg=(); pu=()
for _ in $(seq "$runs"); do
  lg+=("$(time_ms "$cli" group --quiet "$dir")")
  lu+=("$(time_ms "$cli" ungroup --quiet "$dir")")
  pg+=("$(time_ms perl -e "$perl_group" "$dir")")
  pu+=("$(time_ms perl -e "$perl_ungroup" "$dir")")
done
[ "$(ls "$dir" | grep -c '^_G')" -eq 0 ] || { echo "names were not restored" >&2; exit 1; }
m() { printf '%s\n' "$@" | median; }
LG=$(m "${lg[@]}"); LU=$(m "${lu[@]}"); PG=$(m "${pg[@]}"); PU=$(m "${pu[@]}")
echo "files: $files, runs: $runs (medians)"
echo "lumaro-cli group:      ${LG} ms    perl rename loop: ${PG} ms"
echo "lumaro-cli ungroup:    ${LU} ms    perl rename loop: ${PU} ms"
awk -v a="$LG" -v b="$PG" -v c="$LU" -v d="$PU" \
  'BEGIN { printf "ratio lumaro/perl:     group %.2f, ungroup %.2f\n", (b > 0 ? a / b : 0), (d > 0 ? c / d : 0) }'
