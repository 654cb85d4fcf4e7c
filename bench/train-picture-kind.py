#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
# Fits what kind of picture each one is (people, a document, a screen, a drawing, buildings, a view, a thing,
# a room) to the scene classifier's description of it: a softmax regression over the pictures of
# bench/vision-set/manifest.tsv, their descriptions printed by the picture_kind_features bench program.
#   train-picture-kind.py FEATURES MANIFEST [OUT]
# FEATURES: lines "path<TAB>numbers" (the folder holding a picture names its set). Prints, for each set, how
# many pictures a fit on the other sets alone gets right (the figure that tells how it does on pictures it
# never saw), then fits all of them and writes the weights as C++ to OUT (default: print nothing more).
# Plain gradient descent from zero, so the same input always gives the same weights.
import sys
from collections import defaultdict

import numpy as np

KINDS = ['PEOPLE', 'DOCUMENTS', 'SCREENSHOT', 'ILLUSTRATION', 'STRUCTURE', 'OUTDOOR', 'DIVERSE', 'FURNITURE']
L2 = 0.01
STEPS = 300
RATE = 0.5


def read(features_path, manifest_path):
    expected = {}
    for line in open(manifest_path, encoding='utf-8'):
        if line.strip():
            name, kinds = line.rstrip('\n').split('\t')
            expected[name] = kinds.split('|')
    pictures = []
    for line in open(features_path, encoding='utf-8'):
        path, numbers = line.rstrip('\n').split('\t')
        folders = path.split('/')
        if folders[-1] in expected:
            pictures.append((folders[-2], expected[folders[-1]], np.array(numbers.split(), np.float64)))
    return pictures


def fit(pictures):
    x = np.stack([p[2] for p in pictures])
    mean, spread = x.mean(0), x.std(0) + 1e-6
    x = (x - mean) / spread
    target = np.zeros((len(pictures), len(KINDS)))
    target[np.arange(len(pictures)), [KINDS.index(p[1][0]) for p in pictures]] = 1
    weights, bias = np.zeros((x.shape[1], len(KINDS))), np.zeros(len(KINDS))
    for _ in range(STEPS):
        gradient = (softmax(x @ weights + bias) - target) / len(pictures)
        weights -= RATE * (x.T @ gradient + L2 * weights)
        bias -= RATE * gradient.sum(0)
    # The standardisation folded in: the program multiplies the raw description.
    return weights / spread[:, None], bias - (mean / spread) @ weights


def softmax(z):
    z = np.exp(z - z.max(1, keepdims=True))
    return z / z.sum(1, keepdims=True)


def right(model, pictures):
    weights, bias = model
    chosen = softmax(np.stack([p[2] for p in pictures]) @ weights + bias).argmax(1)
    return sum(KINDS[c] in p[1] for c, p in zip(chosen, pictures))


def write(model, path):
    weights, bias = model
    rows = ',\n'.join('    {' + ', '.join(f'{w:.7g}f' for w in row) + '}' for row in weights)
    with open(path, 'w', encoding='utf-8') as out:
        out.write('// SPDX-License-Identifier: GPL-3.0-or-later\n'
                  '// Written by bench/train-picture-kind.py; fit again rather than edit.\n'
                  f'constexpr int kDescriptionSize = {weights.shape[0]};\n'
                  f'constexpr float kKindWeights[kDescriptionSize][{len(KINDS)}] = {{\n{rows}}};\n'
                  'constexpr float kKindBias[] = {' + ', '.join(f'{b:.7g}f' for b in bias) + '};\n')


def main():
    pictures = read(sys.argv[1], sys.argv[2])
    sets = defaultdict(list)
    for p in pictures:
        sets[p[0]].append(p)
    total = 0
    for name, held_out in sorted(sets.items()):
        got = right(fit([p for p in pictures if p[0] != name]), held_out)
        total += got
        print(f'{name:10} {got}/{len(held_out)} right when fitted without it')
    print(f'all        {total}/{len(pictures)} ({100 * total / len(pictures):.1f} %)')
    if len(sys.argv) > 3:
        write(fit(pictures), sys.argv[3])


main()
