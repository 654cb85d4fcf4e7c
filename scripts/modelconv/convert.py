#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Converts one upstream model into the form OpenCV 4.6 runs.

Usage: convert.py KIND SOURCE OUTPUT.onnx
  movenet-singlepose, movenet-multipose, centernet   SOURCE is the TF.js graph's model.json
  mobilenet-v2-layers                                SOURCE is a Keras-layers TF.js model (model.json or model.min.js)
  paddle-detector, paddle-recogniser                 SOURCE is a Paddle2ONNX export
The output is written to OUTPUT.onnx.part and renamed into place only when complete. Exit 0 ok, 1 the model
could not be converted, 2 bad usage.
"""
import os
import sys

import onnx

import keras_layers
import paddle_for_opencv
import tfjs_graph

CONVERTERS = {name: (lambda source, name=name: tfjs_graph.convert(name, source)) for name in tfjs_graph.PROFILES}
CONVERTERS["mobilenet-v2-layers"] = keras_layers.convert
CONVERTERS["paddle-detector"] = lambda source: paddle_for_opencv.fix(source, paddle_for_opencv.DETECTOR)
CONVERTERS["paddle-recogniser"] = lambda source: paddle_for_opencv.fix(source, paddle_for_opencv.RECOGNISER)


def main(argv):
    if len(argv) != 4 or argv[1] not in CONVERTERS:
        sys.stderr.write(__doc__)
        return 2
    kind, source, output = argv[1:]
    try:
        model = CONVERTERS[kind](source)
    except (OSError, ValueError, KeyError) as error:
        sys.stderr.write("convert %s: %s\n" % (kind, error))
        return 1
    temporary = output + ".part"
    onnx.save(model, temporary)
    os.replace(temporary, output)
    print("wrote %s (%d nodes)" % (output, len(model.graph.node)))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
