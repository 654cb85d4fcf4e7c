#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Marks and text read by `lumaro-cli index` on the picture sets made by bench/make-vision-set.sh and
# bench/make-vision-fresh{,3,4,5,6,7,8,9,10,11,12}-set.sh: the share of pictures whose mark is what a photographer expects
# (bench/vision-set/manifest.tsv), for each part separately (tuned, heldout, fresh, fresh2 … fresh12: those
# present), and the characters read right on every text picture (white space ignored: 1 - edit distance / length
# of the true text).
#   bench/vision-accuracy.sh [BUILD] [SET] [PART...]      (defaults: build/dev, /tmp/lumaro-vision-set, all parts)
set -euo pipefail
build=${1:-build/dev}
set_dir=${2:-/tmp/lumaro-vision-set}
here=$(cd "$(dirname "$0")" && pwd)
export LUMARO_MODELS_DIR=${LUMARO_MODELS_DIR:-$here/../../shared/models}
parts=("${@:3}")
if [ ${#parts[@]} -eq 0 ]; then
    for part in tuned heldout fresh fresh2 fresh3 fresh4 fresh5 fresh6 fresh7 fresh8 fresh9 fresh10 fresh11 fresh12; do [ -d "$set_dir/$part" ] && parts+=("$part"); done
fi
for part in "${parts[@]}"; do
    rm -rf "$set_dir/$part/_index"
    "$build/cli/lumaro-cli" index "$set_dir/$part" --quiet >/dev/null 2>"$set_dir/$part.log" || true
done
python3 - "$set_dir" "$here/vision-set/manifest.tsv" "${parts[@]}" <<'PY'
import glob, json, sys, re
set_dir, manifest, parts = sys.argv[1], sys.argv[2], sys.argv[3:]
expected = dict(line.rstrip('\n').split('\t') for line in open(manifest, encoding='utf-8') if line.strip())
family = {'PEOPLE': r'MARK_PEOPLE(_PORTRAIT)?$', 'DOCUMENTS': r'MARK_DOCUMENTS', 'SCREENSHOT': r'MARK_(PEOPLE_|DOCUMENTS_)?SCREENSHOT$',
          'ILLUSTRATION': r'MARK_ILLUSTRATION', 'STRUCTURE': r'MARK_STRUCTURE$', 'OUTDOOR': r'MARK_OUTDOOR$', 'DIVERSE': r'MARK_DIVERSE_',
          'FURNITURE': r'MARK_FURNITURE$'}
def distance(a, b):
    row = list(range(len(b) + 1))
    for i, ca in enumerate(a, 1):
        prev, row[0] = row[0], i
        for j, cb in enumerate(b, 1):
            prev, row[j] = row[j], min(row[j] + 1, row[j - 1] + 1, prev + (ca != cb))
    return row[-1]
for part in parts:
    index = sorted(glob.glob(f'{set_dir}/{part}/_index/vision_index_*.json'))
    results = {r['fileName']: r for r in json.load(open(index[-1]))['results']} if index else {}
    right = total = 0
    print(f'== {part}')
    for name in sorted(n for n in expected if glob.glob(f'{set_dir}/{part}/{glob.escape(n)}')):
        total += 1
        mark = results.get(name, {}).get('classification', '(none)')
        ok = any(re.match(family[f], mark) for f in expected[name].split('|'))
        right += ok
        line = f'  {"ok " if ok else "BAD"} {name:28} {expected[name]:22} {mark}'
        truth = glob.glob(f'{set_dir}/truth/{name.rsplit(".", 1)[0]}.txt')
        if truth:
            want = re.sub(r'\s', '', open(truth[0], encoding='utf-8').read())
            got = re.sub(r'\s', '', ''.join(results.get(name, {}).get('text', [])))
            line += f'   characters {100 * max(0, 1 - distance(want, got) / len(want)):.1f} %'
        if not ok:
            line += '   labels: ' + ', '.join(results.get(name, {}).get('objects', []))
        print(line)
    print(f'{part}: {right}/{total} marks right ({100 * right / max(total, 1):.0f} %)')
PY
