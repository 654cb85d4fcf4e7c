#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Whether two vision index files say the same about every picture: byte for byte once the run's time
# ("generatedAt") is left out and the pictures are in name order (a run lists them as they finish).
#   bench/vision-index-same.sh BEFORE.json AFTER.json     (exit 0 when the same, 1 with the differences)
set -euo pipefail
python3 - "$1" "$2" <<'PY'
import json, sys
def canonical(path):
    index = json.load(open(path, encoding='utf-8'))
    index.pop('generatedAt', None)
    results = {r['fileName']: r for r in index.pop('results')}
    return index, results
(before_rest, before), (after_rest, after) = canonical(sys.argv[1]), canonical(sys.argv[2])
differ = [name for name in sorted(set(before) | set(after)) if before.get(name) != after.get(name)]
for name in differ:
    print(f'{name}:\n  before {json.dumps(before.get(name), ensure_ascii=False)}\n  after  {json.dumps(after.get(name), ensure_ascii=False)}')
if before_rest != after_rest:
    print('the run fields differ:', before_rest, after_rest)
same = len(before) - len([n for n in differ if n in before])
print(f'{same}/{len(before)} pictures the same' + ('' if not differ and before_rest == after_rest else ' (see above)'))
sys.exit(1 if differ or before_rest != after_rest else 0)
PY
