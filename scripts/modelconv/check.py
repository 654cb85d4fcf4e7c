#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks that a converted model computes what the verified one does: OpenCV's DNN runs it on a fixed picture
drawn here and its outputs must agree with the ones recorded from the verified model (expected-outputs.json)
within 1e-4 (plus 1e-5 of the value, for maps measured in pixels).

Usage: check.py verify MODEL_NAME FILE.onnx   MODEL_NAME as installed, e.g. pose/movenet_multipose_lightning_256.onnx
       check.py record MODELS_DIR              rewrites expected-outputs.json from verified models
Exit 0 agrees, 1 differs or does not load, 2 bad usage.
"""
import json
import os
import sys

import cv2
import numpy as np

EXPECTED = os.path.join(os.path.dirname(os.path.abspath(__file__)), "expected-outputs.json")
ABSOLUTE_TOLERANCE = 1e-4
RELATIVE_TOLERANCE = 1e-5
SAMPLES = 48  # evenly spread values per output, plus the places of its largest values


class Model:
    def __init__(self, size, outputs, scale=1.0, mean=None, std=None):
        self.size = size  # (width, height) of the input
        self.outputs = outputs  # names to forward; empty: the graph's one output
        self.scale, self.mean, self.std = scale, mean, std

    def blob(self, bgr):
        picture = cv2.resize(bgr, self.size, interpolation=cv2.INTER_AREA)
        if self.mean is None:
            return cv2.dnn.blobFromImage(picture, self.scale, swapRB=True)
        rgb = cv2.cvtColor(picture, cv2.COLOR_BGR2RGB).astype(np.float32) / 255.0
        return cv2.dnn.blobFromImage((rgb - np.float32(self.mean)) / np.float32(self.std))


IMAGENET_MEAN, IMAGENET_STD = (0.485, 0.456, 0.406), (0.229, 0.224, 0.225)
MODELS = {
    "pose/movenet_singlepose_lightning_v4.onnx": Model((192, 192), ["heatmap", "center", "regress", "offset"]),
    "pose/movenet_multipose_lightning_256.onnx": Model(
        (256, 256), ["center", "heatmap", "regress", "offset", "box_scale", "box_offset"]),
    "detect/centernet_mbv3_coco_512.onnx": Model((512, 512), ["heatmap", "wh"]),
    "ocr/ch_PP-OCRv4_det_infer_cv46.onnx": Model((640, 640), [], mean=IMAGENET_MEAN, std=IMAGENET_STD),
    "ocr/ch_PP-OCRv4_rec_infer_cv46.onnx": Model((320, 48), [], mean=(0.5,) * 3, std=(0.5,) * 3),
    "illustration/nsfwjs_mobilenet_v2_224.onnx": Model((224, 224), ["prob"], scale=1 / 255.0),
}


def fixed_picture():
    """A 640×480 picture with what the networks respond to: gradients, shapes with edges, a figure, lines of
    text. Drawn with integer arithmetic and OpenCV's own Hershey fonts, so it is the same on every machine."""
    y, x = np.mgrid[0:480, 0:640]
    picture = np.stack([(x * 255 // 639), (y * 255 // 479), ((x + y) * 7 % 256)], axis=-1).astype(np.uint8)
    cv2.rectangle(picture, (20, 30), (300, 200), (250, 250, 250), cv2.FILLED)
    for row, words in enumerate(["LUMARO 2026", "culling photos", "0123456789"]):
        cv2.putText(picture, words, (30, 80 + 50 * row), cv2.FONT_HERSHEY_SIMPLEX, 1.2, (10, 10, 10), 3)
    cv2.circle(picture, (470, 110), 45, (60, 90, 200), cv2.FILLED)  # a head over a body and limbs
    cv2.rectangle(picture, (430, 160), (510, 330), (40, 60, 150), cv2.FILLED)
    for a, b in [((430, 170), (380, 280)), ((510, 170), (560, 280)), ((450, 330), (430, 460)), ((490, 330), (510, 460))]:
        cv2.line(picture, a, b, (40, 60, 150), 22)
    cv2.ellipse(picture, (160, 370), (120, 60), 15, 0, 360, (30, 160, 40), cv2.FILLED)
    return picture


def run(model_name, path):
    spec = MODELS[model_name]
    net = cv2.dnn.readNetFromONNX(path)
    net.setInput(spec.blob(fixed_picture()))
    if spec.outputs:
        return dict(zip(spec.outputs, net.forward(spec.outputs)))
    return {"output": net.forward()}


def summary(values):
    flat = values.astype(np.float64).ravel()
    places = sorted(set(np.linspace(0, flat.size - 1, SAMPLES).astype(int).tolist())
                    | set(np.argsort(-np.abs(flat), kind="stable")[:16].tolist()))
    return {"shape": list(values.shape), "mean": float(flat.mean()), "places": places,
            "values": [float(flat[i]) for i in places]}


def differences(recorded, outputs):
    """Human-readable disagreements between the recorded summaries and these outputs; empty when they agree."""
    found = []
    for name, expected in recorded.items():
        values = outputs.get(name)
        if values is None or list(values.shape) != expected["shape"]:
            found.append("%s: shape %s, expected %s" % (name, None if values is None else list(values.shape),
                                                        expected["shape"]))
            continue
        flat = values.astype(np.float64).ravel()
        pairs = [(flat[i], v) for i, v in zip(expected["places"], expected["values"])]
        pairs.append((flat.mean(), expected["mean"]))
        worst = max(abs(a - b) - RELATIVE_TOLERANCE * abs(b) for a, b in pairs)
        if worst > ABSOLUTE_TOLERANCE:
            found.append("%s: differs by %.3g" % (name, worst + ABSOLUTE_TOLERANCE))
    return found


def verify(model_name, path):
    if model_name not in MODELS:
        sys.stderr.write("check: no recorded outputs for %s\n" % model_name)
        return 2
    recorded = json.load(open(EXPECTED, encoding="utf-8"))[model_name]
    try:
        outputs = run(model_name, path)
    except cv2.error as error:
        sys.stderr.write("check: %s does not run in OpenCV %s: %s\n" % (path, cv2.__version__, error))
        return 1
    found = differences(recorded, outputs)
    for line in found:
        sys.stderr.write("check: %s %s\n" % (model_name, line))
    return 1 if found else 0


def record(models_dir):
    recorded = {}
    for model_name in MODELS:
        outputs = run(model_name, os.path.join(models_dir, model_name))
        recorded[model_name] = {name: summary(values) for name, values in outputs.items()}
    with open(EXPECTED + ".part", "w", encoding="utf-8") as out:
        json.dump(recorded, out, indent=1, sort_keys=True)
        out.write("\n")
    os.replace(EXPECTED + ".part", EXPECTED)
    return 0


def main(argv):
    if len(argv) == 4 and argv[1] == "verify":
        return verify(argv[2], argv[3])
    if len(argv) == 3 and argv[1] == "record":
        return record(argv[2])
    sys.stderr.write(__doc__)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv))
