# SPDX-License-Identifier: GPL-3.0-or-later
"""Reads a TF.js model (graph or Keras layers) with its weights, as numpy arrays.

Two packagings occur upstream: the plain one (model.json beside binary shards named in its weightsManifest)
and a JavaScript-module one (model.min.js holding the model as an object literal, each shard a .min.js
holding its bytes as one base64 string). Weights stored as float16 or quantized to uint8/uint16 are widened
to float32, as TF.js itself does when it loads them.
"""
import base64
import json
import os
import re

import numpy as np

# One token of a JavaScript literal: a string, a number, a word, !0/!1 (minifiers' true/false) or punctuation.
_JS_TOKEN = re.compile(r'\s*("(?:[^"\\]|\\.)*"|-?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?|[A-Za-z_$][\w$]*|![01]|[{}\[\]:,])')


def _js_literal_to_json(text, start):
    """The object literal beginning at text[start] ('{'), rewritten as JSON text."""
    out = []
    depth = 0
    at = start
    while True:
        match = _JS_TOKEN.match(text, at)
        if not match:
            raise ValueError("unexpected JavaScript near offset %d" % at)
        token = match.group(1)
        at = match.end()
        if token in ("{", "["):
            depth += 1
        elif token in ("}", "]"):
            depth -= 1
        if token == "!0":
            token = "true"
        elif token == "!1":
            token = "false"
        elif token[0] in "-.0123456789":
            token = re.sub(r"^(-?)\.", r"\g<1>0.", token)
        elif token[0] not in '"{}[]:,' and token not in ("true", "false", "null"):
            token = json.dumps(token)  # a bare object key
        out.append(token)
        if depth == 0:
            return "".join(out)


def _module_export(path):
    """The literal a browserified .min.js file exports: an object or a string."""
    text = open(path, encoding="utf-8").read()
    found = re.search(r'\.exports=(?=[{"])', text)
    if not found:
        raise ValueError("%s exports no literal" % path)
    at = found.end()
    if text[at] == '"':
        end = text.index('"', at + 1)
        return text[at + 1:end]
    return json.loads(_js_literal_to_json(text, at))


def _shard_bytes(folder, name, packed_as_js):
    if packed_as_js:
        return base64.b64decode(_module_export(os.path.join(folder, name + ".min.js")))
    with open(os.path.join(folder, name), "rb") as shard:
        return shard.read()


def _decode(entry, data, offset):
    shape = entry["shape"]
    count = int(np.prod(shape)) if shape else 1
    quantization = entry.get("quantization")
    stored = quantization["dtype"] if quantization else entry["dtype"]
    dtype = {"float16": np.float16, "float32": np.float32, "int32": np.int32, "uint8": np.uint8,
             "uint16": np.uint16, "bool": np.bool_}[stored]
    size = count * np.dtype(dtype).itemsize
    array = np.frombuffer(data, dtype=dtype, count=count, offset=offset)
    if stored in ("uint8", "uint16"):
        array = array.astype(np.float32) * np.float32(quantization["scale"]) + np.float32(quantization["min"])
    elif stored == "float16":
        array = array.astype(np.float32)
    return array.reshape(shape).copy(), size


def load(path):
    """(model, weights): the model description as a dict and every weight by name."""
    packed_as_js = path.endswith(".js")
    model = _module_export(path) if packed_as_js else json.load(open(path, encoding="utf-8"))
    folder = os.path.dirname(os.path.abspath(path))
    weights = {}
    for group in model["weightsManifest"]:
        data = b"".join(_shard_bytes(folder, name, packed_as_js) for name in group["paths"])
        offset = 0
        for entry in group["weights"]:
            weights[entry["name"]], size = _decode(entry, data, offset)
            offset += size
        if offset != len(data):
            raise ValueError("the weights of %s do not fill their shards (%d of %d bytes)" % (path, offset, len(data)))
    return model, weights
