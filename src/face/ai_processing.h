#pragma once

#include <cstdint>
#include <vector>

#include "algebra/matrix.h"
#include "face/average_pooling_down_scale_filter.h"
#include "face/face_box_record.h"
#include "face/pyramid_up_scale_filter.h"
#include "face/tfutils.h"
#include "foundation/image.h"
#include "parameters/filter.h"
#include "parameters/parameter_record.h"
#include "warp/homograph_mapping_filter.h"

namespace vkr {

// Parameters of the search for faces.
// clang-format off
struct FaceNetworkParams {
    PARAM(nDumpDebugFile,       0,   1,  1, "flag", "kept with the parameters, nothing reads it");
    PARAM(nFFnetScoreThreshold, 1, 100, 80, "percent", "a face scores more");
    PARAM(nFFnetNMSThreshold,   1, 100, 30, "percent", "kept with the parameters, nothing reads it");
    PARAM(nMaskEdgeBlur,        7,  51, 10, "pixels", "kept with the parameters, nothing reads it");
};
// clang-format on

// Finds the faces of one picture with the network. Made for one search and used on one thread; the warp takes the team,
// the network its own threads. The lists are the standard library's: without memory they throw std::bad_alloc.
//
// The network has one input, 1 x 240 x 320 x 3 floats, red first, (v - 127) / 128 of bytes v, and two outputs: boxes
// and scores (see DecodeFaceBoxes).
class AIClass : public CMultiFilterProcessFlow, public FaceNetworkParams {
public:
    static constexpr int kInputWidth = 320, kInputHeight = 240;

    // Loads the model (CTfModel: a failure ends the process) and registers all parameters with their defaults.
    explicit AIClass(const char* pModelPath);

    void SetFilterName() override;
    void RegisterFilters() override {}  // its filters take no parameter text
    void RegisterParameters() override;

    // vBoxes receives the faces of image, B, G, R, in order of falling score, in its pixels, not clipped. Always 1: a
    // picture that is empty, lack of memory for the network's input, and a model of another kind find no face. A run of
    // the network that fails ends the process like a failed load.
    int DetectFaces(const CImage& image, std::vector<FaceBoxRecord>& vBoxes);

    // out receives image at nWidth x nHeight. Left as it is when there was no memory or image is empty or not of
    // nDim 3.
    void ResizeToModelInput(const CImage& image, CImage& out, int nWidth, int nHeight);

    // Fills input 0 from a 320 x 240 picture, runs the network and appends its outputs to vTensors; they stay the
    // interpreter's. Always 1: a picture of another size or kind runs nothing, and neither does, with a line, a model
    // with another input.
    static int RunFaceModel(TfLiteInterpreter* pInterpreter, const CImage& image, std::vector<TensorRecord>& vTensors);

    float m_fScoreThreshold = 0;  // from nFFnetScoreThreshold when the parameters are registered
    float m_fNMSThreshold = 0;    // does not follow nFFnetNMSThreshold

    int32_t m_nImageWidth = 0, m_nImageHeight = 0;  // of the picture that DetectFaces is at
    CTfModel m_Model;
    CHomographMappingFilter m_HomographMappingFilter;
    CAveragePoolingDownScaleFilter m_DownScaleFilter;
    CPyramidUpScaleFilter m_UpScaleFilter;
    CMatrix m_ToInput = IdentityHomography();    // pixels of the picture to pixels of the network's input
    CMatrix m_FromInput = IdentityHomography();  // and back
};

}  // namespace vkr
