#pragma once

#include <cstdint>

#include "foundation/heap_buffer.h"

struct TfLiteModel;
struct TfLiteInterpreterOptions;
struct TfLiteInterpreter;
struct TfLiteTensor;
struct TfLiteDelegate;

namespace vkr {

// One model of the network runtime and its interpreter, which has two threads of its own; what its vector kernels take
// over, mostly the whole graph, runs on the calling thread. Every failure writes one
// line on standard error, "Error at %s:%d\n" with a name of a source file and a number that stands for the step, and
// ends the process with status 1: an object that exists can be run. Not thread-safe.
class CTfModel {
public:
    // pModelPath   the file, relative to the working directory; the text stays the caller's and outlives the object
    // nCiphered    0: a model as the runtime reads it; other values: a container (see ParseModelContainer)
    //
    // Steps: 87 or 122 the model (a file that is not there, too), 91 or 126 the interpreter, 93 or 129 its tensors,
    // the second number from a container. A container that is none says "Model load from Buffer failed" on standard
    // output instead, after "Decypt parameter file error" when it was the cipher that refused a section.
    CTfModel(const char* pModelPath, uint32_t nCiphered);
    ~CTfModel();  // interpreter, options, model, in this order
    CTfModel(const CTfModel&) = delete;
    CTfModel& operator=(const CTfModel&) = delete;

    // Input tensor 0 from pPixels, then one run; step 137.
    int RunModel(const uint8_t* pPixels);

    // Fills a tensor of dimensions batch, width, height, channels from width * height pixels, row by row:
    //   32-bit floats  from 3 bytes a, b, c a pixel: a / 255, (b - 128) / 255, (c - 128) / 255
    //   bytes          channels bytes a pixel, as they are
    //   other types    "default error " and nothing else
    // A tensor that is not of four dimensions, or smaller than they say, stays as it is.
    static void FillInputTensor(const uint8_t* pPixels, TfLiteTensor* pTensor);

    const char* const m_pModelPath;
    const uint32_t m_nCiphered;
    TfLiteModel* m_pModel = nullptr;
    TfLiteInterpreterOptions* m_pOptions = nullptr;
    TfLiteInterpreter* m_pInterpreter = nullptr;

private:
    // The numbers of the three steps of a load.
    struct LoadSteps {
        int nModel, nInterpreter, nTensors;
    };

    int LoadCipheredModel();  // 1, or the process ends
    void MakeInterpreter(const LoadSteps& steps);
    void UseVectorKernels();

    TfLiteDelegate* m_pDelegate = nullptr;
    HeapBuffer<uint8_t> m_ModelBytes;  // behind a model out of a container, as long as that lives
};

// The line of a failed step, then the end of the process.
[[noreturn]] void EndWithModelError(const char* pSourceFile, int nStep);

}  // namespace vkr
