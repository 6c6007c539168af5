// The calls of the network runtime. Built without it, they are these: no model can ever be made.
#pragma once

#if VKRHDR_WITH_TFLITE

#include <cstdint>

#include <tensorflow/lite/c/c_api.h>

// Exported by the library that tools/scripts/fetch_tflite pins, but not declared by the headers beside it.
extern "C" {
struct TfLiteDelegate;
struct TfLiteXNNPackDelegateOptions {
    int32_t num_threads;
    uint32_t flags;
    void* vLater[4];  // what later versions append, zero
};
TfLiteDelegate* TfLiteXNNPackDelegateCreate(const TfLiteXNNPackDelegateOptions*);
void TfLiteXNNPackDelegateDelete(TfLiteDelegate*);
TfLiteStatus TfLiteInterpreterModifyGraphWithDelegate(const TfLiteInterpreter*, TfLiteDelegate*);
}

#else

#include <cstddef>
#include <cstdint>

struct TfLiteModel;
struct TfLiteInterpreterOptions;
struct TfLiteInterpreter;
struct TfLiteTensor;
struct TfLiteDelegate;
struct TfLiteXNNPackDelegateOptions {
    int32_t num_threads;
    uint32_t flags;
    void* vLater[4];
};
enum TfLiteStatus { kTfLiteOk = 0, kTfLiteError = 1 };
enum TfLiteType { kTfLiteFloat32 = 1, kTfLiteUInt8 = 3 };

inline TfLiteModel* TfLiteModelCreate(const void*, size_t)
{
    return nullptr;
}
inline TfLiteModel* TfLiteModelCreateFromFile(const char*)
{
    return nullptr;
}
inline void TfLiteModelDelete(TfLiteModel*) {}
inline TfLiteInterpreterOptions* TfLiteInterpreterOptionsCreate()
{
    return nullptr;
}
inline void TfLiteInterpreterOptionsSetNumThreads(TfLiteInterpreterOptions*, int32_t) {}
inline void TfLiteInterpreterOptionsDelete(TfLiteInterpreterOptions*) {}
inline TfLiteInterpreter* TfLiteInterpreterCreate(const TfLiteModel*, const TfLiteInterpreterOptions*)
{
    return nullptr;
}
inline void TfLiteInterpreterDelete(TfLiteInterpreter*) {}
inline TfLiteDelegate* TfLiteXNNPackDelegateCreate(const TfLiteXNNPackDelegateOptions*)
{
    return nullptr;
}
inline void TfLiteXNNPackDelegateDelete(TfLiteDelegate*) {}
inline TfLiteStatus TfLiteInterpreterModifyGraphWithDelegate(const TfLiteInterpreter*, TfLiteDelegate*)
{
    return kTfLiteError;
}
inline TfLiteStatus TfLiteInterpreterAllocateTensors(TfLiteInterpreter*)
{
    return kTfLiteError;
}
inline TfLiteStatus TfLiteInterpreterInvoke(TfLiteInterpreter*)
{
    return kTfLiteError;
}
inline int32_t TfLiteInterpreterGetInputTensorCount(const TfLiteInterpreter*)
{
    return 0;
}
inline TfLiteTensor* TfLiteInterpreterGetInputTensor(const TfLiteInterpreter*, int32_t)
{
    return nullptr;
}
inline int32_t TfLiteInterpreterGetOutputTensorCount(const TfLiteInterpreter*)
{
    return 0;
}
inline const TfLiteTensor* TfLiteInterpreterGetOutputTensor(const TfLiteInterpreter*, int32_t)
{
    return nullptr;
}
inline TfLiteType TfLiteTensorType(const TfLiteTensor*)
{
    return kTfLiteFloat32;
}
inline int32_t TfLiteTensorNumDims(const TfLiteTensor*)
{
    return 0;
}
inline int32_t TfLiteTensorDim(const TfLiteTensor*, int32_t)
{
    return 0;
}
inline size_t TfLiteTensorByteSize(const TfLiteTensor*)
{
    return 0;
}
inline void* TfLiteTensorData(const TfLiteTensor*)
{
    return nullptr;
}

#endif
