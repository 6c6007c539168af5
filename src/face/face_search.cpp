#include "face/face_search.h"

#include <cstddef>

#include "face/ai_processing.h"
#include "face/average_pooling_down_scale_filter.h"
#include "face/face_boxes.h"
#include "face/rotate_image.h"
#include "foundation/bmp.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/timing.h"

namespace vkr {

namespace {

constexpr int kInputLevels = 3;

std::string& ModelFolder()
{
    static std::string s_sFolder;
    return s_sFolder;
}

std::string ModelPath()
{
    return ModelFolder().empty() ? kFaceModelPath : ModelFolder() + "/" + kFaceModelPath;
}

// The upright picture; empty when there was no memory.
void MakeUpright(const CImage& reference, int nOrientation, bool bDump, CImage& upright)
{
    if (nOrientation == 0) {
        upright.CopyFrom(reference);
        return;
    }
    RotateUpright(reference, nOrientation, upright);
    if (bDump) SaveBmp(upright, "AISeg/RotatedImage.bmp", true);
}

// Levels 1 and 2 are for the eye: detection takes level 0. One that finds no memory stays empty.
void MakeSmallerLevels(CImage (&vLevels)[kInputLevels])
{
    CAveragePoolingDownScaleFilter filter;
    filter.Initialize();
    filter.nDownScaleSize = 2;
    for (int i = 1; i < kInputLevels; ++i) {
        Tic();
        filter.ApplyDownScale(vLevels[i - 1], vLevels[i], filter.nDownScaleSize);
        Toc("====================ApplyImage");
    }
}

void DumpLevels(const CImage (&vLevels)[kInputLevels])
{
    for (int i = 0; i < kInputLevels; ++i) {
        char szPath[32];
        HdrSprintf(szPath, sizeof(szPath), "AISeg/Input_Level%d.bmp", i);
        SaveBmp(vLevels[i], szPath, true);
    }
}

void DumpBoxes(const std::vector<FaceBoxRecord>& vBoxes)
{
    for (const FaceBoxRecord& record : vBoxes) {
        const FaceBox box = WholePixels(record);
        HdrPrintf("bounding box x1 %i\n", box.x1);
        HdrPrintf("bounding box y1 %i\n", box.y1);
        HdrPrintf("bounding box x2 %i\n", box.x2);
        HdrPrintf("bounding box y2 %i\n", box.y2);
    }
}

FaceBox ChooseNetworkFace(const CImage& reference, int nOrientation, int nMinSide, bool bDump)
{
    std::vector<FaceBoxRecord> vBoxes;
    FindFacesByNetwork(reference, nOrientation, bDump, vBoxes);
    FaceBox face;
    if (vBoxes.empty()) return face;  // nothing to log either
    for (const FaceBoxRecord& box : vBoxes) TakeLarger(WholePixels(box), nMinSide, face);
    if (bDump) DumpBoxes(vBoxes);
    HdrLog("VKR AI Face Detection Coordinate x1 %i y1 %i x2 %i y2 %i", face.x1, face.y1, face.x2, face.y2);
    return face;
}

FaceBox ChooseHostFace(const FaceBox* pHostFaces, int nHostFaces, int nMinSide)
{
    FaceBox face;
    if (nHostFaces <= 0) return face;
    for (int i = 0; i < nHostFaces; ++i) {
        const FaceBox& box = pHostFaces[i];
        TakeLarger({box.x1 / 2, box.y1 / 2, box.x2 / 2, box.y2 / 2}, nMinSide, face);
    }
    HdrLog("System Face Detection Coordinate x1 %i y1 %i x2 %i y2 %i", face.x1, face.y1, face.x2, face.y2);
    return face;
}

}  // namespace

bool CanFindFaces()
{
    return VKRHDR_WITH_TFLITE != 0;
}

void SetFaceModelFolder(const std::string& sFolder)
{
    ModelFolder() = sFolder;
}

FaceBox SearchFace(const CImage& reference, int nOrientation, int nFaceSource, const FaceBox* pHostFaces,
                   int nHostFaces, const FaceParams& params, bool bDump)
{
    if (nFaceSource < 1) return ChooseNetworkFace(reference, nOrientation, params.nAIFaceHeightWidthThres, bDump);
    return ChooseHostFace(pHostFaces, nHostFaces, params.nAIFaceHeightWidthThres);
}

void FindFacesByNetwork(const CImage& reference, int nOrientation, bool bDump, std::vector<FaceBoxRecord>& vBoxes)
{
    vBoxes.clear();
    Tic();
    AIClass detector(ModelPath().c_str());
    Toc("==========AI init");
    if (nOrientation < 0 || nOrientation > 3) return;
    CImage m_InputLevel[kInputLevels] = {};
    ImageScope scope(m_InputLevel);
    MakeUpright(reference, nOrientation, bDump, m_InputLevel[0]);
    MakeSmallerLevels(m_InputLevel);
    if (bDump && nOrientation == 0) DumpLevels(m_InputLevel);
    detector.DetectFaces(m_InputLevel[0], vBoxes);
    for (FaceBoxRecord& box : vBoxes) box = MapToUnturned(box, nOrientation, reference.nWidth, reference.nHeight);
}

}  // namespace vkr
