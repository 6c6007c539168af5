#include "face/face_search.h"

#include <cstddef>

#include "face/ai_processing.h"
#include "face/average_pooling_down_scale_filter.h"
#include "face/face_boxes.h"
#include "face/rotate_image.h"
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
void MakeUpright(const CImage& reference, int nOrientation, const StageDumps& dumps, CImage& upright)
{
    if (nOrientation == 0) {
        upright.CopyFrom(reference);
        return;
    }
    RotateUpright(reference, nOrientation, upright);
    dumps.Save(upright, "AISeg/RotatedImage.bmp");
}

// Levels 1 and 2 are for the eye: detection takes level 0. One that finds no memory stays empty.
void MakeSmallerLevels(CImage (&vLevels)[kInputLevels])
{
    CAveragePoolingDownScaleFilter filter;
    filter.Initialize();
    filter.nDownScaleSize = 2;
    for (int i = 1; i < kInputLevels; ++i) {
        const StageTimer timer("====================ApplyImage");
        filter.ApplyDownScale(vLevels[i - 1], vLevels[i], filter.nDownScaleSize);
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

FaceBox ChooseNetworkFace(const CImage& reference, int nOrientation, int nMinSide, const StageDumps& dumps)
{
    std::vector<FaceBoxRecord> vBoxes;
    FindFacesByNetwork(reference, nOrientation, dumps, vBoxes);
    FaceBox face;
    if (vBoxes.empty()) return face;  // nothing to log either
    for (const FaceBoxRecord& box : vBoxes) TakeLarger(WholePixels(box), nMinSide, face);
    if (dumps) DumpBoxes(vBoxes);
    HdrLog("VKR AI Face Detection Coordinate x1 %i y1 %i x2 %i y2 %i", face.x1, face.y1, face.x2, face.y2);
    return face;
}

FaceBox ChooseHostFace(const HostFaces& hostFaces, int nMinSide)
{
    FaceBox face;
    if (hostFaces.nCount <= 0) return face;
    for (int i = 0; i < hostFaces.nCount; ++i) {
        const FaceBox& box = hostFaces.pFaces[i];
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

FaceBox SearchFace(const CImage& reference, int nOrientation, int nFaceSource, const HostFaces& hostFaces,
                   const FaceParams& params, const StageDumps& dumps)
{
    if (nFaceSource < 1) return ChooseNetworkFace(reference, nOrientation, params.nAIFaceHeightWidthThres, dumps);
    return ChooseHostFace(hostFaces, params.nAIFaceHeightWidthThres);
}

void FindFacesByNetwork(const CImage& reference, int nOrientation, const StageDumps& dumps,
                        std::vector<FaceBoxRecord>& vBoxes)
{
    vBoxes.clear();
    GoalTimer timer("==========AI init");
    AIClass detector(ModelPath().c_str());
    timer.Reached();
    if (nOrientation < 0 || nOrientation > 3) return;
    CImage m_InputLevel[kInputLevels] = {};
    ImageScope scope(m_InputLevel);
    MakeUpright(reference, nOrientation, dumps, m_InputLevel[0]);
    MakeSmallerLevels(m_InputLevel);
    for (int i = 0; i < kInputLevels; ++i)
        dumps.If(nOrientation == 0).Save(m_InputLevel[i], "AISeg/Input_Level%d.bmp", i);
    detector.DetectFaces(m_InputLevel[0], vBoxes);
    for (FaceBoxRecord& box : vBoxes) box = MapToUnturned(box, nOrientation, reference.nWidth, reference.nHeight);
}

}  // namespace vkr
