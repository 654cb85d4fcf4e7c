# SPDX-License-Identifier: GPL-3.0-or-later
"""Converts the TF.js graph models Lumaro uses (MoveNet single- and multi-pose, CenterNet) into the ONNX form
that OpenCV 4.6's DNN module runs: opset 10, float32 weights, NCHW, input "input" [1,3,S,S] raw RGB 0..255.

Only the part of the graph that feeds the named head maps is converted: the graphs' own decoding (ArgMax,
TopK, GatherNd, which OpenCV 4.6 cannot run) is cut off and Lumaro decodes the maps itself. Needs
python3-onnx and python3-numpy only.
"""
import base64

import numpy as np
from onnx import TensorProto, helper, numpy_helper

import tfjs_model

_MOVENET = "StatefulPartitionedCall/"


class Profile:
    def __init__(self, side, heads, graph_name):
        self.side = side  # the input side the model is exported at (TF "SAME" pads are made explicit for it)
        self.heads = heads  # ONNX output name -> TF tensor
        self.graph_name = graph_name


PROFILES = {
    "movenet-singlepose": Profile(192, {
        "heatmap": _MOVENET + "Sigmoid",
        "center": _MOVENET + "truediv_2",  # the centre map already weighted by the graph's centre prior
        "regress": _MOVENET + "kpt_regress_0/conv2d_6/BiasAdd",
        "offset": _MOVENET + "kpt_offset_0/conv2d_7/BiasAdd",
    }, "movenet_singlepose_lightning"),
    "movenet-multipose": Profile(256, {
        "center": _MOVENET + "Sigmoid",
        "heatmap": _MOVENET + "Sigmoid_1",
        "regress": _MOVENET + "kpt_regress_0/conv2d_8/BiasAdd",
        "offset": _MOVENET + "kpt_offset_0/conv2d_9/BiasAdd",
        "box_scale": _MOVENET + "box_scale_0/conv2d_5/BiasAdd",
        "box_offset": _MOVENET + "box_offset_0/conv2d_6/BiasAdd",
    }, "movenet_multipose_lightning"),
    "centernet": Profile(512, {
        "heatmap": "tower_0/keypoints",
        "wh": "tower_0/wh",
    }, "centernet_mbv3_coco"),
}

# Operations on the input before the first real one that leave the picture as it is ([1,S,S,3] stays so).
PASS_THROUGH = {"Cast", "Unpack", "ExpandDims", "Squeeze", "Identity"}
BINARY = {"Add": "Add", "AddV2": "Add", "Sub": "Sub", "Mul": "Mul", "RealDiv": "Div", "Maximum": "Max",
          "Minimum": "Min"}
COMMUTATIVE = {"Add", "Mul", "Max", "Min"}


def text_attr(node, name, default=None):
    value = node.get("attr", {}).get(name)
    return base64.b64decode(value["s"]).decode() if value else default


def bool_attr(node, name):
    return bool(node.get("attr", {}).get(name, {}).get("b", False))


def int_list(node, name, default):
    values = node.get("attr", {}).get(name, {}).get("list", {}).get("i")
    return [int(v) for v in values] if values else default


def fused_ops(node):
    return [base64.b64decode(v).decode() for v in node["attr"].get("fused_ops", {}).get("list", {}).get("s", [])]


def same_pads(size, kernel, stride):
    out = -(-size // stride)
    total = max((out - 1) * stride + kernel - size, 0)
    return total // 2, total - total // 2, out


def nchw_constant(array):
    """A constant an element-wise operation applies to an NHWC tensor, laid out for the NCHW one."""
    array = np.asarray(array, dtype=np.float32)
    if array.size == 1:
        return array.reshape([])
    if array.ndim == 1:
        return array.reshape(-1, 1, 1)
    if array.ndim == 3:
        return array.transpose(2, 0, 1)[None]
    if array.ndim == 4:
        return array.transpose(0, 3, 1, 2)
    raise SystemExit("unsupported constant of shape %s" % (array.shape,))


class Converter:
    def __init__(self, graph, weights, profile):
        self.nodes = {n["name"]: n for n in graph["modelTopology"]["node"]}
        self.weights = weights
        self.profile = profile
        self.onnx_nodes = []
        self.initializers = []
        self.done = {}  # tf name -> (onnx name, NCHW shape)

    def constant(self, name, array):
        self.initializers.append(numpy_helper.from_array(np.ascontiguousarray(array), name))
        return name

    def constant_value(self, tf_name):
        """The value of a constant input, or None when the input is computed."""
        base = tf_name.split(":")[0].lstrip("^")
        if base in self.weights:
            return self.weights[base]
        return None

    def emit(self, op, inputs, output, **attrs):
        self.onnx_nodes.append(helper.make_node(op, inputs, [output], name=output, **attrs))
        return output

    def value(self, tf_name):
        tf_name = tf_name.split(":")[0]
        if tf_name not in self.done:
            self.done[tf_name] = self.convert(self.nodes[tf_name])
        return self.done[tf_name]

    def activation(self, op, x, name):
        if op == "Relu6":
            return self.emit("Clip", [x], name, min=0.0, max=6.0)
        if op in ("Relu", "Sigmoid"):
            return self.emit(op, [x], name)
        raise SystemExit("unsupported activation %s in %s" % (op, name))

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
        if int_list(node, "dilations", [1, 1, 1, 1]) != [1, 1, 1, 1]:
            raise SystemExit("dilated convolution %s is not supported" % node["name"])
        stride = int_list(node, "strides", [1, 1, 1, 1])[1]
        if text_attr(node, "padding") == "SAME":
            top, bottom, out_h = same_pads(shape[2], kh, stride)
            left, right, out_w = same_pads(shape[3], kw, stride)
        else:
            top = bottom = left = right = 0
            out_h = (shape[2] - kh) // stride + 1
            out_w = (shape[3] - kw) // stride + 1
        name = node["name"]
        inputs = [x, self.constant(name + "/kernel", onnx_kernel.astype(np.float32))]
        ops = fused_ops(node) if node["op"].startswith("_Fused") or node["op"].startswith("Fused") else []
        if "BiasAdd" in ops:
            inputs.append(self.constant(name + "/bias", self.weights[node["input"][2]].astype(np.float32)))
        activations = [op for op in ops if op != "BiasAdd"]
        out = self.emit("Conv", inputs, name + ("/conv" if activations else ""), kernel_shape=[kh, kw],
                        strides=[stride, stride], pads=[top, left, bottom, right], group=group, dilations=[1, 1])
        for op in activations:
            out = self.activation(op, out, name)
        return out, [1, channels, out_h, out_w]

    def binary(self, node, onnx_op):
        operands = []
        shape = None
        for tf_input in node["input"]:
            array = self.constant_value(tf_input)
            if array is not None:
                operands.append((True, self.constant(node["name"] + "/const%d" % len(operands), nchw_constant(array))))
                continue
            name, input_shape = self.value(tf_input)
            operands.append((False, name))
            # the broadcast result has the bigger operand's shape (a squeeze-excite scale is [1,C,1,1])
            shape = input_shape if shape is None or np.prod(input_shape) > np.prod(shape) else shape
        if onnx_op in COMMUTATIVE and operands[0][0] and not operands[1][0]:
            operands.reverse()  # OpenCV 4.6 wants the tensor first and the constant second
        return self.emit(onnx_op, [name for _, name in operands], node["name"]), shape

    def resize_factors(self, node, shape):
        """The ×N of a ResizeBilinear, whether its size is a constant or Shape(x)[1:3] × constant."""
        size = self.constant_value(node["input"][1])
        if size is not None:
            return int(size[0]) // shape[2], int(size[1]) // shape[3]
        product = self.nodes[node["input"][1].split(":")[0]]
        factors = [self.constant_value(i) for i in product.get("input", [])]
        known = [f for f in factors if f is not None]
        if product["op"] != "Mul" or len(known) != 1 or np.asarray(known[0]).size != 2:
            raise SystemExit("the size of %s is neither constant nor a multiple of its input's" % node["name"])
        return int(known[0][0]), int(known[0][1])

    def resize(self, node):
        x, shape = self.value(node["input"][0])
        fy, fx = self.resize_factors(node, shape)
        scales = self.constant(node["name"] + "/scales", np.array([1, 1, fy, fx], dtype=np.float32))
        # Opset 10's Resize has no coordinate mode of its own; OpenCV 4.6 reads this attribute (and refuses
        # mode=linear without it). TF's half_pixel_centers is exactly ONNX's half_pixel.
        mode = "asymmetric"
        if bool_attr(node, "half_pixel_centers"):
            mode = "half_pixel"
        elif bool_attr(node, "align_corners"):
            mode = "align_corners"
        out = self.emit("Resize", [x, scales], node["name"], mode="linear", coordinate_transformation_mode=mode)
        return out, [1, shape[1], shape[2] * fy, shape[3] * fx]

    def mean(self, node):
        x, shape = self.value(node["input"][0])
        axes = sorted(int(a) for a in np.ravel(self.constant_value(node["input"][1])))
        if axes != [1, 2] or not bool_attr(node, "keep_dims"):
            raise SystemExit("only a spatial mean keeping its dimensions is supported (%s)" % node["name"])
        return self.emit("GlobalAveragePool", [x], node["name"]), [1, shape[1], 1, 1]

    def concat(self, node):
        parts = [self.value(i) for i in node["input"][:-1]]
        if int(self.constant_value(node["input"][-1])) not in (3, -1):
            raise SystemExit("only a channel concatenation is supported (%s)" % node["name"])
        out = self.emit("Concat", [name for name, _ in parts], node["name"], axis=1)
        shape = parts[0][1]
        return out, [1, sum(s[1] for _, s in parts), shape[2], shape[3]]

    def convert(self, node):
        op = node["op"]
        if op == "Placeholder":
            return "input", [1, 3, self.profile.side, self.profile.side]
        if op in PASS_THROUGH:
            return self.value(node["input"][0])
        if op in ("_FusedConv2D", "Conv2D"):
            return self.conv(node, depthwise=False)
        if op in ("FusedDepthwiseConv2dNative", "DepthwiseConv2dNative"):
            return self.conv(node, depthwise=True)
        if op in BINARY:
            return self.binary(node, BINARY[op])
        if op in ("Relu", "Relu6", "Sigmoid"):
            x, shape = self.value(node["input"][0])
            return self.activation(op, x, node["name"]), shape
        if op == "ResizeBilinear":
            return self.resize(node)
        if op == "Mean":
            return self.mean(node)
        if op == "ConcatV2":
            return self.concat(node)
        raise SystemExit("unsupported operation %s in %s" % (op, node["name"]))

    def build(self):
        outputs = []
        for head, tf_name in self.profile.heads.items():
            name, shape = self.value(tf_name)
            self.emit("Identity", [name], head)
            outputs.append(helper.make_tensor_value_info(head, TensorProto.FLOAT, shape))
        side = self.profile.side
        graph = helper.make_graph(self.onnx_nodes, self.profile.graph_name,
                                  [helper.make_tensor_value_info("input", TensorProto.FLOAT, [1, 3, side, side])],
                                  outputs, self.initializers)
        model = helper.make_model(graph, producer_name="lumaro modelconv",
                                  opset_imports=[helper.make_opsetid("", 10)])
        model.ir_version = 6
        return model


def convert(profile_name, model_path):
    """The ONNX model of the TF.js graph at model_path (its .json), converted as the named profile says."""
    graph, weights = tfjs_model.load(model_path)
    return Converter(graph, weights, PROFILES[profile_name]).build()
