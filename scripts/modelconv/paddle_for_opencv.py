# SPDX-License-Identifier: GPL-3.0-or-later
"""Edits PaddleOCR's Paddle2ONNX exports (PP-OCRv4 detector and recogniser) so that OpenCV 4.6 loads and runs
them with the same results. What 4.6 cannot take, measured on these graphs:
- Clip with min/max given as inputs (opset 11): it reads only the attribute form;
- a Reshape whose shape is computed by Shape -> Slice -> Cast -> Concat: replaced by a constant shape of
  0 (copy that dimension) and -1 (infer), so the graph stays free of the batch size and the line width;
- Mul of a [N,T,C] tensor by a 1-D LayerNorm weight: 4.6 broadcasts it wrongly; MatMul(x, diag(weight)) is
  the same product;
- Constant nodes: 4.6 broadcasts an Add of a Constant-node vector wrongly, but not of an initializer;
- the recogniser's final 3-D Softmax: 4.6 fails on it, so it is dropped and applied by the reader;
- dynamic input dimensions: 4.6 sizes the net from the declared input, so it is fixed (the reader re-declares
  the recogniser's width per line-width bucket).
"""
import numpy as np
import onnx
from onnx import helper, numpy_helper


class Kind:
    def __init__(self, input_dims, drop_final_softmax):
        self.input_dims = input_dims
        self.drop_final_softmax = drop_final_softmax


DETECTOR = Kind([1, 3, 640, 640], drop_final_softmax=False)
RECOGNISER = Kind([1, 3, 48, 320], drop_final_softmax=True)


class PaddleGraph:
    def __init__(self, model):
        self.model = model
        self.graph = model.graph
        self.producer = {output: node for node in self.graph.node for output in node.output}
        self.initial = {i.name: numpy_helper.to_array(i) for i in self.graph.initializer}

    def constant(self, name):
        if name in self.initial:
            return self.initial[name]
        node = self.producer.get(name)
        if node is None:
            return None
        if node.op_type == "Constant":
            return numpy_helper.to_array(node.attribute[0].t)
        if node.op_type == "Cast":
            return self.constant(node.input[0])
        return None

    def add_initializer(self, array, name):
        self.graph.initializer.append(numpy_helper.from_array(array, name))
        self.initial[name] = array
        return name

    def clips_with_attributes(self):
        for node in self.graph.node:
            if node.op_type != "Clip" or len(node.input) == 1:
                continue
            bounds = [self.constant(name) if name else None for name in node.input[1:3]]
            del node.input[1:]
            for attribute, bound in zip(("min", "max"), bounds):
                if bound is not None:
                    node.attribute.append(helper.make_attribute(attribute, float(bound)))

    def vector_products_as_matmul(self):
        for node in self.graph.node:
            weight = self.constant(node.input[1]) if node.op_type == "Mul" else None
            if weight is not None and weight.ndim == 1 and weight.size > 1:
                node.op_type = "MatMul"
                node.input[1] = self.add_initializer(np.diag(weight).astype(np.float32), node.input[1] + "_diag")

    def shape_elements(self, name):
        """Each element of a computed shape: ('c', value) or ('s', (tensor, dimension)) for Shape(tensor)[dimension]."""
        value = self.constant(name)
        if value is not None:
            return [("c", int(v)) for v in np.array(value).reshape(-1)]
        node = self.producer[name]
        if node.op_type == "Cast":
            return self.shape_elements(node.input[0])
        if node.op_type == "Concat":
            return sum((self.shape_elements(i) for i in node.input), [])
        if node.op_type == "Shape":
            return [("s", (node.input[0], i)) for i in range(8)]
        if node.op_type == "Slice":
            attributes = {a.name: helper.get_attribute_value(a) for a in node.attribute}
            starts = attributes.get("starts") or list(self.constant(node.input[1]))
            ends = attributes.get("ends") or list(self.constant(node.input[2]))
            return self.shape_elements(node.input[0])[int(starts[0]):int(ends[0])]
        raise ValueError("a Reshape's shape comes from an unsupported %s" % node.op_type)

    def constant_reshapes(self):
        for index, node in enumerate(n for n in self.graph.node if n.op_type == "Reshape"):
            if self.constant(node.input[1]) is not None:
                continue
            shape = []
            for position, (kind, value) in enumerate(self.shape_elements(node.input[1])):
                if kind == "c":
                    shape.append(value)
                elif value == (node.input[0], position) or (position == 0 and value[1] == 0):
                    shape.append(0)  # the same dimension of the reshaped tensor, or the batch
                else:
                    shape.append(-1)
            if shape.count(-1) > 1:
                raise ValueError("Reshape %s needs more than one inferred dimension" % node.name)
            node.input[1] = self.add_initializer(np.array(shape, np.int64), "constant_shape_%d" % index)

    def drop_final_softmax(self):
        output = self.graph.output[0]
        last = self.producer[output.name]
        if last.op_type == "Softmax":
            self.graph.node.remove(last)
            output.name = last.input[0]

    def prune(self):
        live = {o.name for o in self.graph.output}
        kept = []
        for node in reversed(list(self.graph.node)):
            if any(o in live for o in node.output):
                kept.append(node)
                live.update(i for i in node.input if i)
        del self.graph.node[:]
        self.graph.node.extend(reversed(kept))
        used = [i for i in self.graph.initializer if i.name in live]
        del self.graph.initializer[:]
        self.graph.initializer.extend(used)

    def constants_as_initializers(self):
        for node in [n for n in self.graph.node if n.op_type == "Constant"]:
            self.graph.initializer.append(numpy_helper.from_array(numpy_helper.to_array(node.attribute[0].t),
                                                                  node.output[0]))
            self.graph.node.remove(node)

    def fixed_input(self, dims):
        for dim, value in zip(self.graph.input[0].type.tensor_type.shape.dim, dims):
            dim.ClearField("dim_param")
            dim.dim_value = value
        for output in self.graph.output:
            for dim in output.type.tensor_type.shape.dim:
                dim.ClearField("dim_param")


def fix(path, kind):
    """The Paddle2ONNX model at path, edited for OpenCV 4.6 as a detector or a recogniser."""
    paddle = PaddleGraph(onnx.load(path))
    paddle.clips_with_attributes()
    paddle.vector_products_as_matmul()
    paddle.constant_reshapes()
    if kind.drop_final_softmax:
        paddle.drop_final_softmax()
    paddle.prune()
    paddle.fixed_input(kind.input_dims)
    paddle.constants_as_initializers()
    return paddle.model
