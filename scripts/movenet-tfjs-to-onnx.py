#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Converts MoveNet Lightning's TF.js graph model (movenet-lightning.json + .bin) into the ONNX form that
OpenCV 4.6's DNN module runs: opset 10, float32 weights, NCHW, input "input" [1,3,192,192] raw RGB 0..255,
outputs "heatmap" [1,17,48,48] (sigmoid), "center" [1,1,48,48] (sigmoid x the graph's centre prior),
"regress" [1,34,48,48] and "offset" [1,34,48,48].

The graph's own decoding (ArgMax/GatherNd, which OpenCV 4.6 cannot run) is cut off; Lumaro decodes the four
maps itself. Needs python3-onnx and python3-numpy only.

Usage: movenet-tfjs-to-onnx.py MODEL.json OUTPUT.onnx
"""
import base64
import json
import os
import sys

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

PREFIX = "StatefulPartitionedCall/"
HEADS = {
    "heatmap": PREFIX + "Sigmoid",
    "center": PREFIX + "truediv_2",
    "regress": PREFIX + "kpt_regress_0/conv2d_6/BiasAdd",
    "offset": PREFIX + "kpt_offset_0/conv2d_7/BiasAdd",
}
# The input chain before the first real operation only reshapes the picture in place ([1,192,192,3] stays so).
PASS_THROUGH = {"Cast", "Unpack", "ExpandDims", "Squeeze", "Identity"}
SIDE = 192


def load_weights(model_path, graph):
    """Every constant of the manifest as a numpy array, float16 weights widened to float32."""
    folder = os.path.dirname(os.path.abspath(model_path))
    weights = {}
    for group in graph["weightsManifest"]:
        data = b"".join(open(os.path.join(folder, path), "rb").read() for path in group["paths"])
        offset = 0
        for entry in group["weights"]:
            shape = entry["shape"]
            count = int(np.prod(shape)) if shape else 1
            stored = entry.get("quantization", {}).get("dtype", entry["dtype"])
            dtype = {"float16": np.float16, "float32": np.float32, "int32": np.int32}[stored]
            size = count * np.dtype(dtype).itemsize
            array = np.frombuffer(data[offset:offset + size], dtype=dtype).reshape(shape)
            offset += size
            weights[entry["name"]] = array.astype(np.float32) if dtype == np.float16 else array.copy()
    return weights


def text_attr(node, name):
    return base64.b64decode(node["attr"][name]["s"]).decode()


def int_list(node, name):
    return [int(v) for v in node["attr"].get(name, {}).get("list", {}).get("i", [])]


def fused_ops(node):
    return [base64.b64decode(v).decode() for v in node["attr"].get("fused_ops", {}).get("list", {}).get("s", [])]


def same_pads(size, kernel, stride):
    out = -(-size // stride)
    total = max((out - 1) * stride + kernel - size, 0)
    return total // 2, total - total // 2, out


class Converter:
    def __init__(self, graph, weights):
        self.nodes = {n["name"]: n for n in graph["modelTopology"]["node"]}
        self.weights = weights
        self.onnx_nodes = []
        self.initializers = []
        self.done = {}  # tf name -> (onnx name, NCHW shape)

    def constant(self, name, array):
        self.initializers.append(numpy_helper.from_array(np.ascontiguousarray(array), name))
        return name

    def to_nchw_constant(self, name):
        array = self.weights[name].astype(np.float32)
        if array.ndim == 4:
            array = array.transpose(0, 3, 1, 2)
        elif array.ndim == 3:
            array = array.transpose(2, 0, 1)[None]
        return self.constant(name, array)

    def emit(self, op, inputs, output, **attrs):
        self.onnx_nodes.append(helper.make_node(op, inputs, [output], name=output, **attrs))
        return output

    def value(self, tf_name):
        tf_name = tf_name.split(":")[0]
        if tf_name in self.done:
            return self.done[tf_name]
        node = self.nodes[tf_name]
        result = self.convert(node)
        self.done[tf_name] = result
        return result

    def conv(self, node, depthwise):
        x, shape = self.value(node["input"][0])
        kernel = self.weights[node["input"][1]]
        kh, kw = kernel.shape[0], kernel.shape[1]
        if depthwise:
            channels = kernel.shape[2] * kernel.shape[3]
            onnx_kernel = kernel.reshape(kh, kw, channels).transpose(2, 0, 1)[:, None, :, :]
            group = kernel.shape[2]
        else:
            onnx_kernel = kernel.transpose(3, 2, 0, 1)
            channels = kernel.shape[3]
            group = 1
        stride = int_list(node, "strides")[1]
        padding = text_attr(node, "padding")
        if padding == "SAME":
            top, bottom, out_h = same_pads(shape[2], kh, stride)
            left, right, out_w = same_pads(shape[3], kw, stride)
        else:
            top = bottom = left = right = 0
            out_h = (shape[2] - kh) // stride + 1
            out_w = (shape[3] - kw) // stride + 1
        name = node["name"]
        inputs = [x, self.constant(name + "/kernel", onnx_kernel.astype(np.float32))]
        ops = fused_ops(node)
        if "BiasAdd" in ops:
            inputs.append(self.constant(name + "/bias", self.weights[node["input"][2]].astype(np.float32)))
        out = name + ("/conv" if len(ops) > 1 else "")
        self.emit("Conv", inputs, out, kernel_shape=[kh, kw], strides=[stride, stride],
                  pads=[top, left, bottom, right], group=group, dilations=[1, 1])
        if "Relu6" in ops:
            out = self.emit("Clip", [out], name, min=0.0, max=6.0)
        elif "Relu" in ops:
            out = self.emit("Relu", [out], name)
        return out, [1, channels, out_h, out_w]

    def binary(self, node, onnx_op):
        operands = []
        shape = None
        for tf_input in node["input"]:
            base = tf_input.split(":")[0]
            if self.nodes[base]["op"] == "Const":
                operands.append(self.to_nchw_constant(base))
            else:
                name, shape = self.value(tf_input)
                operands.append(name)
        return self.emit(onnx_op, operands, node["name"]), shape

    def convert(self, node):
        op = node["op"]
        if op == "Placeholder":
            return "input", [1, 3, SIDE, SIDE]
        if op in PASS_THROUGH:
            return self.value(node["input"][0])
        if op == "_FusedConv2D":
            return self.conv(node, depthwise=False)
        if op in ("FusedDepthwiseConv2dNative", "DepthwiseConv2dNative"):
            return self.conv(node, depthwise=True)
        if op == "AddV2":
            return self.binary(node, "Add")
        if op == "Sub":
            return self.binary(node, "Sub")
        if op == "Mul":
            return self.binary(node, "Mul")
        if op == "Sigmoid":
            x, shape = self.value(node["input"][0])
            return self.emit("Sigmoid", [x], node["name"]), shape
        if op == "ResizeBilinear":
            x, shape = self.value(node["input"][0])
            size = self.weights[node["input"][1]]
            scales = np.array([1, 1, size[0] / shape[2], size[1] / shape[3]], dtype=np.float32)
            scale_name = self.constant(node["name"] + "/scales", scales)
            # Opset 10's Resize has no coordinate mode of its own; OpenCV reads this attribute, and TF's
            # half_pixel_centers is exactly ONNX's half_pixel.
            out = self.emit("Resize", [x, scale_name], node["name"], mode="linear",
                            coordinate_transformation_mode="half_pixel")
            return out, [shape[0], shape[1], int(size[0]), int(size[1])]
        raise SystemExit("unsupported operation %s in %s" % (op, node["name"]))

    def build(self):
        outputs = []
        for head, tf_name in HEADS.items():
            name, shape = self.value(tf_name)
            self.emit("Identity", [name], head)
            outputs.append(helper.make_tensor_value_info(head, TensorProto.FLOAT, shape))
        graph = helper.make_graph(self.onnx_nodes, "movenet_singlepose_lightning",
                                  [helper.make_tensor_value_info("input", TensorProto.FLOAT, [1, 3, SIDE, SIDE])],
                                  outputs, self.initializers)
        model = helper.make_model(graph, producer_name="lumaro movenet-tfjs-to-onnx",
                                  opset_imports=[helper.make_opsetid("", 10)])
        model.ir_version = 5
        return model


def main():
    if len(sys.argv) != 3:
        sys.stderr.write(__doc__)
        return 2
    model_path, output_path = sys.argv[1], sys.argv[2]
    graph = json.load(open(model_path))
    model = Converter(graph, load_weights(model_path, graph)).build()
    temporary = output_path + ".part"
    onnx.save(model, temporary)
    os.replace(temporary, output_path)
    print("wrote %s (%d nodes)" % (output_path, len(model.graph.node)))
    return 0


if __name__ == "__main__":
    sys.exit(main())
