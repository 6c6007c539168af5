#include "face/ai_processing.h"

#include "face/box_suppression.h"
#include "face/face_box_decode.h"
#include "face/tflite_api.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/timing.h"

namespace vkr {

namespace {

constexpr char kSourceFile[] = "ai_processing.cpp";
constexpr int kInvokeStep = 189;
constexpr size_t kInputPixels = size_t{AIClass::kInputWidth} * AIClass::kInputHeight;

// In 64 bits, then narrowed; 127, not 127.5 or 128, is what the network was made for.
float Normalise(uint8_t v)
{
    return static_cast<float>((static_cast<double>(v) - 127.0) * 0.0078125);
}

void FillInput(const CImage& image, float* pInput)
{
    const uint8_t* pBgr = image.pData;
    for (size_t i = 0; i < kInputPixels; ++i, pBgr += 3, pInput += 3) {
        pInput[0] = Normalise(pBgr[2]);
        pInput[1] = Normalise(pBgr[1]);
        pInput[2] = Normalise(pBgr[0]);
    }
}

// Input 0, when it holds just the floats of one picture.
float* InputFloats(TfLiteInterpreter* pInterpreter)
{
    if (TfLiteInterpreterGetInputTensorCount(pInterpreter) < 1) return nullptr;
    const TfLiteTensor* const pTensor = TfLiteInterpreterGetInputTensor(pInterpreter, 0);
    const bool bFits = TfLiteTensorType(pTensor) == kTfLiteFloat32 &&
                       TfLiteTensorByteSize(pTensor) == kInputPixels * 3 * sizeof(float);
    return bFits ? static_cast<float*>(TfLiteTensorData(pTensor)) : nullptr;
}

TensorRecord RecordOf(const TfLiteTensor* pTensor)
{
    TensorRecord record{};
    record.bFloat = TfLiteTensorType(pTensor) == kTfLiteFloat32;
    record.nDims = TfLiteTensorNumDims(pTensor);
    for (int i = 0; i < record.nDims && i < 4; ++i) record.vDims[i] = TfLiteTensorDim(pTensor, i);
    record.pData = TfLiteTensorData(pTensor);
    record.nBytes = TfLiteTensorByteSize(pTensor);
    return record;
}

}  // namespace

AIClass::AIClass(const char* pModelPath) : m_Model(pModelPath, 0)
{
    m_HomographMappingFilter.Initialize();
    m_DownScaleFilter.Initialize();
    m_UpScaleFilter.Initialize();
    AIClass::SetFilterName();
    AIClass::RegisterParameters();
}

void AIClass::SetFilterName()
{
    StoreName("CAIFlow");
}

void AIClass::RegisterParameters()
{
    ADD_PARAM(nDumpDebugFile);
    ADD_PARAM(nFFnetScoreThreshold);
    ADD_PARAM(nFFnetNMSThreshold);
    ADD_PARAM(nMaskEdgeBlur);
    m_fScoreThreshold = static_cast<float>(nFFnetScoreThreshold / 100.0);
    m_fNMSThreshold = 0.3f;
}

int AIClass::DetectFaces(const CImage& image, std::vector<FaceBoxRecord>& vBoxes)
{
    m_nImageWidth = image.nWidth;
    m_nImageHeight = image.nHeight;
    CImage input{};
    ImageScope scope(input);
    ResizeToModelInput(image, input, kInputWidth, kInputHeight);
    std::vector<TensorRecord> vTensors;
    RunFaceModel(m_Model.m_pInterpreter, input, vTensors);
    std::vector<FaceBoxRecord> vCandidates;
    DecodeFaceBoxes(vTensors, m_nImageWidth, m_nImageHeight, m_fScoreThreshold, vCandidates);
    vBoxes = SuppressOverlaps(vCandidates, m_fNMSThreshold);
    return 1;
}

void AIClass::ResizeToModelInput(const CImage& image, CImage& out, int nWidth, int nHeight)
{
    if (image.Empty() || m_ToInput.Rows() != 3) return;
    m_ToInput.At(0, 0) = static_cast<float>(nWidth) / static_cast<float>(image.nWidth);
    m_ToInput.At(1, 1) = static_cast<float>(nHeight) / static_cast<float>(image.nHeight);
    CImage resized{};
    ImageScope scope(resized);
    if (CMatrix::Inverse(m_FromInput, m_ToInput) != CMatrix::kNoError || !resized.Allocate(nWidth, nHeight)) return;
    if (m_HomographMappingFilter.ProcessImage(image, resized, m_FromInput)) out.Swap(resized);
}

int AIClass::RunFaceModel(TfLiteInterpreter* pInterpreter, const CImage& image, std::vector<TensorRecord>& vTensors)
{
    if (image.Empty() || image.nDim != 3 || image.nWidth != kInputWidth || image.nHeight != kInputHeight) return 1;
    float* const pInput = InputFloats(pInterpreter);
    if (pInput == nullptr) {
        HdrPrintf("face model: its input is not %d x %d x 3 floats\n", kInputHeight, kInputWidth);
        return 1;
    }
    FillInput(image, pInput);
    GoalTimer timer("==============================Resize");  // the network's run, for all its name
    if (TfLiteInterpreterInvoke(pInterpreter) != kTfLiteOk) EndWithModelError(kSourceFile, kInvokeStep);
    timer.Reached();
    const int32_t nTensors = TfLiteInterpreterGetOutputTensorCount(pInterpreter);
    for (int32_t i = 0; i < nTensors; ++i) {
        vTensors.push_back(RecordOf(TfLiteInterpreterGetOutputTensor(pInterpreter, i)));
    }
    return 1;
}

}  // namespace vkr
