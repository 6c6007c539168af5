#pragma once

#include <vector>

#include "face/face_box_record.h"

namespace vkr {

// The boxes whose score is greater than dScoreThreshold, in the network's order, appended to vCandidates.
//
//   vTensors   0: boxes, four floats each, corners normalised to the picture; 1: scores, two floats each, the second
//              that of a face; its dimension 1 is the number of boxes. Further ones are not read
//   nWidth     x of a corner = nWidth * normalised, in 32 bits; nHeight the same for y
//
// No tensor and no box are no error. False, with a line and nothing appended, when the tensors are not of that kind or
// hold fewer samples than the number of boxes asks for.
bool DecodeFaceBoxes(const std::vector<TensorRecord>& vTensors, int nWidth, int nHeight, double dScoreThreshold,
                     std::vector<FaceBoxRecord>& vCandidates);

}  // namespace vkr
