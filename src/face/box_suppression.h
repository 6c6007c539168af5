#pragma once

#include <vector>

#include "face/face_box_record.h"

namespace vkr {

// Thins overlapping boxes: those of vCandidates in order of falling score, equal scores in their order, without every
// box whose overlap with one kept before is greater than fNMSThreshold. The overlap is the common area over the joint
// one, pixels at both ends counted; 0 where the joint area is 0.
std::vector<FaceBoxRecord> SuppressOverlaps(const std::vector<FaceBoxRecord>& vCandidates, float fNMSThreshold);

}  // namespace vkr
