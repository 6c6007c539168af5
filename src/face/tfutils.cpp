#include "face/tfutils.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "face/model_container.h"
#include "face/tflite_api.h"
#include "foundation/log.h"

namespace vkr {

namespace {

constexpr char kSourceFile[] = "tfutils.cpp";
constexpr int kThreads = 2;
constexpr int kInvokeStep = 137;

[[noreturn]] void EndWithBufferError()
{
    HdrPrintf("Model load from Buffer failed");
    std::exit(1);
}

// A file that can not be read is an empty one.
void ReadWholeFile(const char* pPath, HeapBuffer<uint8_t>& bytes)
{
    std::FILE* pFile = std::fopen(pPath, "rb");
    if (pFile == nullptr) return;
    const bool bEnd = std::fseek(pFile, 0, SEEK_END) == 0;
    const long nSize = bEnd ? std::ftell(pFile) : -1;
    std::rewind(pFile);
    if (nSize > 0 && bytes.Allocate(static_cast<size_t>(nSize)) &&
        std::fread(bytes.Data(), 1, bytes.Count(), pFile) != bytes.Count()) {
        bytes.Allocate(0);
    }
    std::fclose(pFile);
}

void DecipherOrEnd(const ByteRun& section, HeapBuffer<uint8_t>& plain)
{
    if (DecipherSection(section, plain)) return;
    HdrPrintf("Decypt parameter file error\n");
    EndWithBufferError();
}

void FillFloats(const uint8_t* pPixels, size_t nPixels, float* pOut)
{
    for (size_t i = 0; i < 3 * nPixels; i += 3) {
        pOut[i] = static_cast<float>(pPixels[i] / 255.0);
        pOut[i + 1] = static_cast<float>((pPixels[i + 1] - 128) / 255.0);
        pOut[i + 2] = static_cast<float>((pPixels[i + 2] - 128) / 255.0);
    }
}

}  // namespace

void EndWithModelError(const char* pSourceFile, int nStep)
{
    std::fprintf(stderr, "Error at %s:%d\n", pSourceFile, nStep);
    std::exit(1);
}

CTfModel::CTfModel(const char* pModelPath, uint32_t nCiphered) : m_pModelPath(pModelPath), m_nCiphered(nCiphered)
{
    if (m_nCiphered != 0) {
        if (LoadCipheredModel() == 0) HdrPrintf("Initial Model %s failed", m_pModelPath);
        return;
    }
    m_pModel = TfLiteModelCreateFromFile(m_pModelPath);
    MakeInterpreter({87, 91, 93});
}

CTfModel::~CTfModel()
{
    TfLiteInterpreterDelete(m_pInterpreter);
    TfLiteInterpreterOptionsDelete(m_pOptions);
    TfLiteModelDelete(m_pModel);
    if (m_pDelegate != nullptr) TfLiteXNNPackDelegateDelete(m_pDelegate);  // must outlive the interpreter
}

// The second section is deciphered too, though nothing uses it: a container where that fails is refused.
int CTfModel::LoadCipheredModel()
{
    HeapBuffer<uint8_t> file, second;
    ReadWholeFile(m_pModelPath, file);
    ModelContainer container{};
    if (!ParseModelContainer(file.Data(), file.Count(), container)) EndWithBufferError();
    DecipherOrEnd(container.model, m_ModelBytes);
    DecipherOrEnd(container.second, second);
    m_pModel = TfLiteModelCreate(m_ModelBytes.Data(), m_ModelBytes.Count());
    MakeInterpreter({122, 126, 129});
    return 1;
}

void CTfModel::MakeInterpreter(const LoadSteps& steps)
{
    if (m_pModel == nullptr) EndWithModelError(kSourceFile, steps.nModel);
    m_pOptions = TfLiteInterpreterOptionsCreate();
    TfLiteInterpreterOptionsSetNumThreads(m_pOptions, kThreads);
    m_pInterpreter = TfLiteInterpreterCreate(m_pModel, m_pOptions);
    if (m_pInterpreter == nullptr) EndWithModelError(kSourceFile, steps.nInterpreter);
    if (TfLiteInterpreterAllocateTensors(m_pInterpreter) != kTfLiteOk) EndWithModelError(kSourceFile, steps.nTensors);
    UseVectorKernels();
}

// Several times as fast as the runtime's own kernels, even on one thread; with more they wait for each other by
// spinning, which costs a second on a busy machine. A graph that they do not take stays with the runtime.
void CTfModel::UseVectorKernels()
{
    constexpr TfLiteXNNPackDelegateOptions options{1, 0, {}};
    m_pDelegate = TfLiteXNNPackDelegateCreate(&options);
    if (m_pDelegate != nullptr) TfLiteInterpreterModifyGraphWithDelegate(m_pInterpreter, m_pDelegate);
}

int CTfModel::RunModel(const uint8_t* pPixels)
{
    if (TfLiteInterpreterGetInputTensorCount(m_pInterpreter) > 0) {
        FillInputTensor(pPixels, TfLiteInterpreterGetInputTensor(m_pInterpreter, 0));
    }
    if (TfLiteInterpreterInvoke(m_pInterpreter) != kTfLiteOk) EndWithModelError(kSourceFile, kInvokeStep);
    return 1;
}

void CTfModel::FillInputTensor(const uint8_t* pPixels, TfLiteTensor* pTensor)
{
    const TfLiteType type = TfLiteTensorType(pTensor);
    if (type != kTfLiteFloat32 && type != kTfLiteUInt8) {
        HdrPrintf("default error ");
        return;
    }
    void* const pData = TfLiteTensorData(pTensor);
    if (pData == nullptr || TfLiteTensorNumDims(pTensor) != 4) return;
    const size_t nPixels =
        static_cast<size_t>(TfLiteTensorDim(pTensor, 1)) * static_cast<size_t>(TfLiteTensorDim(pTensor, 2));
    const size_t nChannels = static_cast<size_t>(TfLiteTensorDim(pTensor, 3)), nBytes = TfLiteTensorByteSize(pTensor);
    if (type == kTfLiteFloat32 && nPixels <= nBytes / (3 * sizeof(float))) {
        FillFloats(pPixels, nPixels, static_cast<float*>(pData));
    } else if (type == kTfLiteUInt8 && nChannels > 0 && nPixels <= nBytes / nChannels) {
        std::memcpy(pData, pPixels, nPixels * nChannels);
    }
}

}  // namespace vkr
