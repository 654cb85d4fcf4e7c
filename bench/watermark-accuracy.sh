#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The share of stamped identifiers `lumaro-cli watermark --all` reads right, on two sets of saved-style
# pictures made by watermark_set_maker: tuned/ (the photos of ../shared/models/test-images, posters of
# watermark-set/posters-tuned.tsv) and heldout/ (other photos, other posters, another seed), and the time.
# "readable" leaves out the stamps no person could read either (white on white without a shadow).
#   watermark-accuracy.sh BUILD_DIR HELDOUT_PHOTOS [SET_DIR] [FRESH] [NEW] [RESAVED] [MIXED] [TEXTURED]
# HELDOUT_PHOTOS: photos gathered by watermark-photos.sh; the reader has since been tuned on their failures.
# FRESH: photos and fonts gathered by watermark-fresh-photos.sh, stamped with the posters of
# posters-fresh.tsv and another seed: the set the reader was never tuned on. Only its counts are printed, not
# its pictures: looking at its failures would make it a tuning set. NEW: photos and fonts gathered by
# watermark-new-photos.sh, stamped in the maker's varied mode with posters-new.tsv and seed 61: held out the
# same way, made after the fresh set had been looked at. RESAVED: photos and fonts gathered by
# watermark-resaved-photos.sh, stamped with posters-resaved.tsv and seed 89 in the varied mode, then
# downscaled and recompressed as platforms serve pictures: held out the same way, made after the new set had
# been looked at. MIXED: photos and fonts gathered by watermark-mixed-photos.sh, stamped with posters-mixed.tsv
# and seed 131 in the varied mode and resaved, a third kept at full size: held out the same way, made after
# the resaved set had been looked at. TEXTURED: photos and fonts gathered by watermark-textured-photos.sh
# (busy textures edge to edge), stamped with posters-textured.tsv and seed 167 in the varied mode and resaved:
# held out the same way, made after the mixed set had been looked at. degraded/ is a tuning set of small and
# resaved pictures: the photos of tuned/, posters of posters-degraded.tsv, seed 5, stamped in the installed
# Noto CJK and DejaVu fonts and resaved; its failures are printed.
# SETS="tuned heldout fresh new resaved mixed textured degraded" picks the sets.
set -euo pipefail
build=$1
heldout_photos=$2
set_dir=${3:-/tmp/lumaro-watermark-set}
fresh=${4:-}
new=${5:-}
resaved=${6:-}
mixed=${7:-}
textured=${8:-}
sets=${SETS:-tuned heldout${fresh:+ fresh}${new:+ new}${resaved:+ resaved}${mixed:+ mixed}${textured:+ textured} degraded}
here=$(cd "$(dirname "$0")" && pwd)
models=${LUMARO_MODELS_DIR:-$here/../../shared/models}
export LUMARO_MODELS_DIR=$models
maker=$build/bench/watermark_set_maker
mkdir -p "$set_dir"
for set in $sets; do
    rm -rf "${set_dir:?}/$set"
    case $set in
    tuned) "$maker" "$models/test-images" "$set_dir/tuned" 1 "$here/watermark-set/posters-tuned.tsv" 3 ;;
    heldout) "$maker" "$heldout_photos" "$set_dir/heldout" 7 "$here/watermark-set/posters-heldout.tsv" 3 ;;
    fresh) "$maker" "$fresh/photos" "$set_dir/fresh" 23 "$here/watermark-set/posters-fresh.tsv" 3 "$fresh/fonts" ;;
    new) "$maker" "$new/photos" "$set_dir/new" 61 "$here/watermark-set/posters-new.tsv" 4 "$new/fonts" varied ;;
    resaved) "$maker" "$resaved/photos" "$set_dir/resaved" 89 "$here/watermark-set/posters-resaved.tsv" 4 \
        "$resaved/fonts" varied,resaved ;;
    mixed) "$maker" "$mixed/photos" "$set_dir/mixed" 131 "$here/watermark-set/posters-mixed.tsv" 4 "$mixed/fonts" \
        varied,resaved ;;
    textured) "$maker" "$textured/photos" "$set_dir/textured" 167 "$here/watermark-set/posters-textured.tsv" 3 \
        "$textured/fonts" varied,resaved ;;
    degraded)
        rm -rf "$set_dir/degraded-fonts" && mkdir -p "$set_dir/degraded-fonts"
        ln -s /usr/share/fonts/opentype/noto/NotoSansCJK-{Regular,Bold}.ttc \
            /usr/share/fonts/truetype/dejavu/DejaVuSans{,-Bold}.ttf "$set_dir/degraded-fonts/"
        "$maker" "$models/test-images" "$set_dir/degraded" 5 "$here/watermark-set/posters-degraded.tsv" 5 \
            "$set_dir/degraded-fonts" varied,resaved ;;
    esac 2>/dev/null
    mv "$set_dir/$set/truth.tsv" "$set_dir/$set.truth.tsv"
    start=$(date +%s.%N)
    "$build/cli/lumaro-cli" watermark "$set_dir/$set" --all --quiet > "$set_dir/$set.out" || true
    end=$(date +%s.%N)
    python3 - "$set" "$set_dir/$set.truth.tsv" "$set_dir/$set.out" "$start" "$end" <<'PY'
import sys
name, truth_path, out_path, start, end = sys.argv[1:]
rows = [l.rstrip('\n').split('\t') for l in open(truth_path, encoding='utf-8') if '\t' in l]
truth = {r[0]: r[1].lower() for r in rows}  # identifiers are read in one case
faint = {r[0] for r in rows if len(r) > 2 and r[2] == 'faint'}
got = {}
for line in open(out_path, encoding='utf-8'):
    parts = line.rstrip('\n').split('\t')
    if len(parts) >= 2 and parts[0] in truth:
        got[parts[0]] = '' if parts[1] == '-' else parts[1]
stamped = [f for f in truth if truth[f]]
readable = [f for f in stamped if f not in faint]
right = sum(1 for f in stamped if got.get(f) == truth[f])
right_readable = sum(1 for f in readable if got.get(f) == truth[f])
wrong = [f for f in truth if got.get(f) and got[f] != truth[f]]
missed = [f for f in stamped if not got.get(f)]
seconds = float(end) - float(start)
print(f"{name}: {right}/{len(stamped)} identifiers right ({100 * right / max(1, len(stamped)):.1f} %), "
      f"readable stamps {right_readable}/{len(readable)} ({100 * right_readable / max(1, len(readable)):.1f} %), "
      f"{len(wrong)} pictures given a wrong identifier, {len(missed)} stamps not read, "
      f"{len(truth) - len(stamped)} clean; "
      f"{seconds:.1f} s for {len(truth)} pictures ({seconds / max(1, len(truth)):.2f} s each)")
if name not in ('fresh', 'new', 'resaved', 'mixed', 'textured'):
    for f in wrong:
        print(f"  wrong: {f}: {got[f]!r} for {truth[f]!r}")
    for f in missed:
        print(f"  missed: {f}: {truth[f]!r}")
PY
done
