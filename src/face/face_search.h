#pragma once

#include <string>
#include <vector>

#include "face/face_box.h"
#include "face/face_box_record.h"
#include "face/face_params.h"
#include "foundation/image.h"
#include "foundation/stage_dumps.h"

namespace vkr {

constexpr char kFaceModelPath[] = "models/faceDetect_rgb_320x240.tflite";  // relative to the working directory

// False in a build without the network's runtime, where a search ends the process as a missing model does.
bool CanFindFaces();

// For a program that brings a model: the folder that kFaceModelPath is relative to, in place of the working directory;
// "" is that again. Not beside a search.
void SetFaceModelFolder(const std::string& sFolder);

// The one face of a burst, in pixels of the working pictures: the largest that is wide or high enough, of equal ones
// the first. All zero when there is none.
//
//   reference    B, G, R, the reference's working picture
//   nFaceSource  below 1: FindFacesByNetwork; from 1 up: the rectangles of hostFaces, halved
//   dumps        the pictures that the network's search saw, and a line for each corner of its boxes
FaceBox SearchFace(const CImage& reference, int nOrientation, int nFaceSource, const HostFaces& hostFaces,
                   const FaceParams& params, const StageDumps& dumps);

// vBoxes receives all faces that the network finds in reference turned upright (see RotateUpright; nOrientation 0 as it
// is, outside 0 .. 3 none is looked for), by falling score, in pixels of reference, not clipped. The model is loaded
// from kFaceModelPath and given back within the call. A model that is missing or damaged ends the process: see
// CTfModel.
void FindFacesByNetwork(const CImage& reference, int nOrientation, const StageDumps& dumps,
                        std::vector<FaceBoxRecord>& vBoxes);

}  // namespace vkr
