#include "fusion/ghost_embedding.h"

namespace vkr {

// The weights stay as they are and the coefficient levels empty.
bool GhostEmbeddingIntoWeight(const CImage& /*ghostMap*/, const CImage* /*vFrames*/, int /*nExposureNum*/,
                              int /*nReference*/, int /*nTotalLevels*/, const GhostEmbedParams& /*params*/,
                              const FusionParams& /*fusion*/, const PyramidParams& /*pyramid*/, CImage* /*vWeights*/,
                              CShortImage* /*vCoefs*/)
{
    return true;
}

}  // namespace vkr
