"""A TensorFlow Lite file with one graph, to which tensors and operators are added.

References in a FlatBuffer point forward only, so a file may be laid whole behind new tables that point into it. That
is how the graph grows here: tensors, operators and weights of the old file stay the bytes that they were, and few of
their fields need to be known. The field and operator numbers below are the file format's.
"""
import struct

from flatbuffers import Builder, number_types as kinds
from flatbuffers.table import Table


class Model:
    VERSION, OPERATOR_CODES, GRAPHS, _, BUFFERS = range(5)


class Graph:
    TENSORS, INPUTS, OUTPUTS, OPERATORS = range(4)


class Tensor:
    SHAPE, TYPE, BUFFER, NAME = range(4)
    FLOAT32, INT32 = 0, 2


class Buffer:
    NONE = 0  # number of the empty one, of all tensors that are computed
    DATA = 0


class Operator:
    CODE, INPUTS, OUTPUTS, OPTIONS_TYPE, OPTIONS = range(5)


class OperatorCode:
    BYTE_CODE, _, VERSION, CODE = range(4)


# Name: code, version, type of its options, the one of its options that is switched on.
OPERATORS = {
    'ADD': (0, 1, 11, None),
    'CONCATENATION': (2, 1, 10, None),  # along the first axis, the default
    'FULLY_CONNECTED': (9, 2, 8, 2),  # keeps the number of dimensions
    'LOGISTIC': (14, 1, 0, None),
    'MUL': (18, 1, 21, None),
    'RESHAPE': (22, 1, 17, None),
    'RESIZE_BILINEAR': (23, 3, 15, 3),  # positions are pixel centres
    'PADV2': (60, 1, 0, None),
}
DEQUANTIZE, RESHAPE = 6, 22
ALIGNMENT = 16  # of weights, and so of the old file within the new one


class _Record:
    """A table of the old file; a number that is not there is 0, a vector empty."""

    def __init__(self, data, position):
        self.data, self.table = data, Table(data, position)

    def _offset(self, field):
        return self.table.Offset(4 + 2 * field)

    def number(self, field, kind):
        offset = self._offset(field)
        return self.table.Get(kind, self.table.Pos + offset) if offset else 0

    def record(self, field):
        return _Record(self.data, self.table.Indirect(self.table.Pos + self._offset(field)))

    def places(self, field):
        """Where the elements of a vector of numbers or references stand, 4 bytes each."""
        offset = self._offset(field)
        if not offset:
            return []
        begin = self.table.Vector(offset)
        return [begin + 4 * i for i in range(self.table.VectorLen(offset))]

    def numbers(self, field):
        return [self.table.Get(kinds.Int32Flags, place) for place in self.places(field)]

    def records(self, field):
        return [_Record(self.data, self.table.Indirect(place)) for place in self.places(field)]


class GraphFile:
    """operators run in the order of the list, at first those of the file; inputs, outputs: numbers of tensors."""

    def __init__(self, data):
        self.data = bytearray(data) + bytes(-len(data) % ALIGNMENT)
        model = _Record(self.data, struct.unpack_from('<I', self.data)[0])
        graph, = model.records(Model.GRAPHS)
        self.codes = model.records(Model.OPERATOR_CODES)
        self.buffers = model.records(Model.BUFFERS)
        self.tensors = graph.records(Graph.TENSORS)
        self.operators = graph.records(Graph.OPERATORS)
        self.inputs, self.outputs = graph.numbers(Graph.INPUTS), graph.numbers(Graph.OUTPUTS)

    def shape(self, tensor):
        return self.tensors[tensor].numbers(Tensor.SHAPE)

    def set_batch(self, count):
        """Lets the old graph, made for one picture, take count pictures at once; weights have no such dimension."""
        shapes = [self.tensors[tensor].places(Tensor.SHAPE) for tensor in self.inputs]
        for operator in self.operators:
            code = self.codes[operator.number(Operator.CODE, kinds.Uint32Flags)]
            code = code.number(OperatorCode.BYTE_CODE, kinds.Int8Flags)
            if code != DEQUANTIZE:
                shapes += [self.tensors[i].places(Tensor.SHAPE) for i in operator.numbers(Operator.OUTPUTS)]
            if code == RESHAPE:
                shapes.append(operator.record(Operator.OPTIONS).places(0))
        for places in shapes:
            if struct.unpack_from('<i', self.data, places[0])[0] != 1:
                raise ValueError('the graph is not one for a single picture')
            struct.pack_into('<i', self.data, places[0], count)

    def add_tensor(self, name, shape):
        self.tensors.append((name, shape, Tensor.FLOAT32, Buffer.NONE))
        return len(self.tensors) - 1

    def add_constant(self, shape, values):
        """Floats, or integers if the first value is one."""
        letter, kind = ('i', Tensor.INT32) if isinstance(values[0], int) else ('f', Tensor.FLOAT32)
        self.buffers.append(struct.pack(f'<{len(values)}{letter}', *values))
        self.tensors.append(('', shape, kind, len(self.buffers) - 1))
        return len(self.tensors) - 1

    def add_operator(self, name, inputs, output):
        """Gives the output back, the number of a tensor as the inputs are."""
        if name not in self.codes:
            self.codes.append(name)
        self.operators.append((name, inputs, output))
        return output

    def to_bytes(self):
        return _Writer(self).finish()


class _Writer:
    """Writes from the end of the file to its beginning, as FlatBuffers are."""

    def __init__(self, graph_file):
        self.file = graph_file
        self.builder = Builder(0)
        self.builder.Bytes = bytearray(graph_file.data)  # behind all that follows
        self.builder.head = 0

    def finish(self):
        file = self.file
        graph = self._table({
            Graph.TENSORS: self._records(file.tensors, self._tensor),
            Graph.INPUTS: self._numbers(file.inputs),
            Graph.OUTPUTS: self._numbers(file.outputs),
            Graph.OPERATORS: self._records(file.operators, self._operator),
        }, {})
        model = self._table({
            Model.OPERATOR_CODES: self._records(file.codes, self._operator_code),
            Model.GRAPHS: self._references([graph]),
            Model.BUFFERS: self._records(file.buffers, self._buffer),
        }, {Model.VERSION: (kinds.Uint32Flags, 3)})
        self.builder.Finish(model, file_identifier=b'TFL3')
        return bytes(self.builder.Output())

    def _records(self, items, write):
        """Old tables are referred to where they stand, counted from the end as the builder does; new ones written."""
        end = len(self.file.data)
        return self._references([end - item.table.Pos if isinstance(item, _Record) else write(item) for item in items])

    def _references(self, offsets):
        self.builder.StartVector(4, len(offsets), 4)
        for offset in reversed(offsets):
            self.builder.PrependUOffsetTRelative(offset)
        return self.builder.EndVector()

    def _numbers(self, values):
        self.builder.StartVector(4, len(values), 4)
        for value in reversed(values):
            self.builder.PrependInt32(value)
        return self.builder.EndVector()

    def _table(self, references, numbers):
        fields = {**references, **numbers}
        self.builder.StartObject(max(fields, default=-1) + 1)
        for field, offset in references.items():
            self.builder.PrependUOffsetTRelativeSlot(field, offset, 0)
        for field, (kind, value) in numbers.items():
            self.builder.PrependSlot(kind, field, value, 0)
        return self.builder.EndObject()

    def _tensor(self, tensor):
        name, shape, kind, buffer = tensor
        return self._table({Tensor.SHAPE: self._numbers(shape), Tensor.NAME: self.builder.CreateString(name)},
                           {Tensor.TYPE: (kinds.Int8Flags, kind), Tensor.BUFFER: (kinds.Uint32Flags, buffer)})

    def _buffer(self, data):
        self.builder.StartVector(1, len(data), ALIGNMENT)
        self.builder.head -= len(data)
        self.builder.Bytes[self.builder.head:self.builder.head + len(data)] = data
        return self._table({Buffer.DATA: self.builder.EndVector()}, {})

    def _operator_code(self, name):
        code, version = OPERATORS[name][:2]
        return self._table({}, {OperatorCode.BYTE_CODE: (kinds.Int8Flags, code),
                                OperatorCode.VERSION: (kinds.Int32Flags, version),
                                OperatorCode.CODE: (kinds.Int32Flags, code)})

    def _operator(self, operator):
        name, inputs, output = operator
        options_type, switched_on = OPERATORS[name][2:]
        references = {Operator.INPUTS: self._numbers(inputs), Operator.OUTPUTS: self._numbers([output])}
        if options_type:
            on = {} if switched_on is None else {switched_on: (kinds.BoolFlags, True)}
            references[Operator.OPTIONS] = self._table({}, on)
        return self._table(references, {Operator.CODE: (kinds.Uint32Flags, self.file.codes.index(name)),
                                        Operator.OPTIONS_TYPE: (kinds.Uint8Flags, options_type)})
