# SPDX-License-Identifier: GPL-3.0-or-later
"""Converts a Keras functional MobileNetV2-style model, stored as a TF.js layers model, into ONNX opset 10 for
OpenCV 4.6: input "input" [1,3,S,S] float NCHW, output "prob".

BatchNormalization is folded into the convolution before it and ZeroPadding2D into the padding of the one
after it, so OpenCV sees plain Conv/Clip/Add layers. Layers outside that family stop the conversion with
their name rather than giving a model that computes something else.
"""
import numpy as np
from onnx import TensorProto, helper, numpy_helper

import tfjs_model


class LayersConverter:
    def __init__(self, config, weights):
        self.config = config
        self.weights = weights
        self.nodes = []
        self.arrays = {}  # initializer name -> array, still open to BatchNormalization folding
        self.outputs = {}  # Keras layer name -> (ONNX tensor name, (C, H, W))
        self.padding = {}  # ZeroPadding2D layer -> ([top, left, bottom, right], its input layer)
        self.conv_of = {}  # ONNX tensor of a convolution -> (kernel name, bias name)

    def emit(self, op, inputs, output, **attrs):
        self.nodes.append(helper.make_node(op, inputs, [output], name=output, **attrs))
        return output

    def conv(self, layer, source, config):
        pads = [0, 0, 0, 0]
        if source in self.padding:
            pads, source = self.padding[source]
        x, (_, h, w) = self.outputs[source]
        kh, kw = config["kernel_size"]
        sh, sw = config["strides"]
        if config.get("dilation_rate", [1, 1]) != [1, 1] or config["activation"] != "linear":
            raise ValueError("layer %s: dilated or activated convolutions are not supported" % layer)
        if layer + "/depthwise_kernel" in self.weights:
            kernel = self.weights[layer + "/depthwise_kernel"]  # [kh, kw, C, multiplier]
            kernel = kernel.transpose(2, 3, 0, 1).reshape(kernel.shape[2] * kernel.shape[3], 1, kh, kw)
            group = kernel.shape[0] // self.weights[layer + "/depthwise_kernel"].shape[3]
        else:
            kernel = self.weights[layer + "/kernel"].transpose(3, 2, 0, 1)
            group = 1
        if config["padding"] == "same":
            if (sh, sw) != (1, 1):
                raise ValueError("layer %s: strided 'same' padding is not supported" % layer)
            pads = [(kh - 1) // 2, (kw - 1) // 2, kh // 2, kw // 2]
        bias = self.weights.get(layer + "/bias") if config.get("use_bias") else None
        self.arrays[layer + "/w"] = kernel.astype(np.float32)
        self.arrays[layer + "/b"] = np.zeros(kernel.shape[0], np.float32) if bias is None else bias.astype(np.float32)
        out = self.emit("Conv", [x, layer + "/w", layer + "/b"], layer, kernel_shape=[kh, kw], strides=[sh, sw],
                        pads=pads, group=group)
        self.conv_of[out] = (layer + "/w", layer + "/b")
        out_h = (h + pads[0] + pads[2] - kh) // sh + 1
        out_w = (w + pads[1] + pads[3] - kw) // sw + 1
        return out, (kernel.shape[0], out_h, out_w)

    def batch_norm(self, layer, source, config):
        x, shape = self.outputs[source]
        if x not in self.conv_of:
            raise ValueError("layer %s: a BatchNormalization must follow a convolution" % layer)
        kernel, bias = self.conv_of.pop(x)
        w = self.weights
        scale = w[layer + "/gamma"] / np.sqrt(w[layer + "/moving_variance"] + np.float32(config["epsilon"]))
        self.arrays[kernel] = (self.arrays[kernel] * scale[:, None, None, None]).astype(np.float32)
        self.arrays[bias] = ((self.arrays[bias] - w[layer + "/moving_mean"]) * scale + w[layer + "/beta"]).astype(
            np.float32)
        return x, shape

    def dense(self, layer, source, config):
        x, shape = self.outputs[source]
        self.arrays[layer + "/w"] = self.weights[layer + "/kernel"].T.astype(np.float32)
        self.arrays[layer + "/b"] = self.weights[layer + "/bias"].astype(np.float32)
        out = self.emit("Gemm", [x, layer + "/w", layer + "/b"], layer, transB=1)
        activation = config["activation"]
        if activation == "relu":
            out = self.emit("Relu", [out], layer + "/relu")
        elif activation == "softmax":
            out = self.emit("Softmax", [out], layer + "/softmax", axis=1)
        elif activation != "linear":
            raise ValueError("layer %s: activation %s is not supported" % (layer, activation))
        return out, (config["units"], 1, 1)

    def layer(self, kind, layer, sources, config):
        source = sources[0] if sources else None
        if kind in ("Conv2D", "DepthwiseConv2D"):
            return self.conv(layer, source, config)
        if kind == "BatchNormalization":
            return self.batch_norm(layer, source, config)
        if kind == "Dense":
            return self.dense(layer, source, config)
        x, shape = self.outputs[source]
        if kind == "ReLU":
            if config.get("max_value"):
                return self.emit("Clip", [x], layer, min=0.0, max=float(config["max_value"])), shape
            return self.emit("Relu", [x], layer), shape
        if kind == "Add":
            return self.emit("Add", [self.outputs[s][0] for s in sources], layer), shape
        if kind == "AveragePooling2D":
            (ph, pw), (sh, sw) = config["pool_size"], config["strides"]
            out_shape = (shape[0], (shape[1] - ph) // sh + 1, (shape[2] - pw) // sw + 1)
            return self.emit("AveragePool", [x], layer, kernel_shape=[ph, pw], strides=[sh, sw]), out_shape
        if kind == "GlobalAveragePooling2D":
            return self.emit("GlobalAveragePool", [x], layer), (shape[0], 1, 1)
        if kind == "Flatten":
            if shape[1:] != (1, 1):
                raise ValueError("layer %s: flattening a map (NHWC order) is not supported" % layer)
            return self.emit("Flatten", [x], layer, axis=1), shape
        if kind == "Dropout":
            return x, shape
        raise ValueError("layer %s: %s is not supported" % (layer, kind))

    def build(self):
        side = None
        for entry in self.config["layers"]:
            kind, layer, config = entry["class_name"], entry["name"], entry["config"]
            sources = [inbound[0] for inbound in entry["inbound_nodes"][0]] if entry["inbound_nodes"] else []
            if kind == "InputLayer":
                side = config["batch_input_shape"][1]
                self.outputs[layer] = ("input", (3, side, config["batch_input_shape"][2]))
            elif kind == "ZeroPadding2D":
                (top, bottom), (left, right) = config["padding"]
                self.padding[layer] = ([top, left, bottom, right], sources[0])
            else:
                self.outputs[layer] = self.layer(kind, layer, sources, config)
        last, (classes, _, _) = self.outputs[self.config["output_layers"][0][0]]
        self.emit("Identity", [last], "prob")
        initializers = [numpy_helper.from_array(array, name) for name, array in self.arrays.items()]
        graph = helper.make_graph(self.nodes, "keras_layers",
                                  [helper.make_tensor_value_info("input", TensorProto.FLOAT, [1, 3, side, side])],
                                  [helper.make_tensor_value_info("prob", TensorProto.FLOAT, [1, classes])],
                                  initializers)
        model = helper.make_model(graph, producer_name="lumaro modelconv", opset_imports=[helper.make_opsetid("", 10)])
        model.ir_version = 6
        return model


def convert(model_path):
    """The ONNX model of the Keras layers model at model_path (model.json or model.min.js)."""
    model, weights = tfjs_model.load(model_path)
    return LayersConverter(model["modelTopology"]["model_config"]["config"], weights).build()
