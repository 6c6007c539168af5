"""Runs a TensorFlow Lite model of floats through the C library, without a Python package for it."""
import array
import ctypes
import math


class TfLiteModel:
    """One input; two threads, as the library runs it. It lives as long as the process."""

    def __init__(self, library, path):
        self.library = ctypes.CDLL(library)
        model = self._make('ModelCreateFromFile', str(path).encode())
        options = self._make('InterpreterOptionsCreate')
        self._call('InterpreterOptionsSetNumThreads', options, 2)
        self.interpreter = self._make('InterpreterCreate', model, options)
        assert self._call('InterpreterAllocateTensors', self.interpreter) == 0

    def _call(self, name, *arguments):
        return getattr(self.library, 'TfLite' + name)(*arguments)

    def _make(self, name, *arguments):
        """What the library gives as a pointer, which must not be null."""
        getattr(self.library, 'TfLite' + name).restype = ctypes.c_void_p
        pointer = self._call(name, *arguments)
        assert pointer, name
        return ctypes.c_void_p(pointer)

    def _floats(self, tensor):
        shape = [self._call('TensorDim', tensor, i) for i in range(self._call('TensorNumDims', tensor))]
        assert self._call('TensorType', tensor) == 1  # float, 32 bits
        return shape, (ctypes.c_float * math.prod(shape)).from_address(self._make('TensorData', tensor).value)

    def run(self, shape, values):
        """The outputs in the model's order, each as its shape and its floats. The input must have the shape told."""
        input_shape, floats = self._floats(self._make('InterpreterGetInputTensor', self.interpreter, 0))
        assert input_shape == shape and len(values) == len(floats), input_shape
        floats[:] = values
        assert self._call('InterpreterInvoke', self.interpreter) == 0
        outputs = range(self._call('InterpreterGetOutputTensorCount', self.interpreter))
        outputs = [self._floats(self._make('InterpreterGetOutputTensor', self.interpreter, i)) for i in outputs]
        return [(shape, array.array('f', bytes(floats))) for shape, floats in outputs]
