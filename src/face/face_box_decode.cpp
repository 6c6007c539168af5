#include "face/face_box_decode.h"

#include "foundation/log.h"

namespace vkr {

namespace {

bool HoldsFloats(const TensorRecord& tensor, size_t nBoxes, size_t nFloatsPerBox)
{
    return tensor.bFloat && tensor.pData != nullptr && nBoxes <= tensor.nBytes / (nFloatsPerBox * sizeof(float));
}

}  // namespace

bool DecodeFaceBoxes(const std::vector<TensorRecord>& vTensors, int nWidth, int nHeight, double dScoreThreshold,
                     std::vector<FaceBoxRecord>& vCandidates)
{
    if (vTensors.empty()) return true;
    const bool bPair = vTensors.size() > 1 && vTensors[1].nDims > 1;
    const int32_t nBoxes = bPair ? vTensors[1].vDims[1] : 0;
    if (bPair && nBoxes < 1) return true;
    if (!bPair || !HoldsFloats(vTensors[0], nBoxes, 4) || !HoldsFloats(vTensors[1], nBoxes, 2)) {
        HdrPrintf("face model: its outputs are not boxes and scores\n");
        return false;
    }
    const float* const pBoxes = static_cast<const float*>(vTensors[0].pData);
    const float* const pScores = static_cast<const float*>(vTensors[1].pData);
    const float fWidth = static_cast<float>(nWidth), fHeight = static_cast<float>(nHeight);
    for (int32_t i = 0; i < nBoxes; ++i) {
        const double dScore = pScores[size_t{2} * i + 1];
        if (!(dScore > dScoreThreshold)) continue;
        const float* b = pBoxes + size_t{4} * i;
        vCandidates.push_back({dScore, {fWidth * b[0], fHeight * b[1], fWidth * b[2], fHeight * b[3]}});
    }
    return true;
}

}  // namespace vkr
