#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "flow/multi_exposure_flow.h"
#include "interface/plane_copy.h"
#include "support/random_image.h"
#include "support/test_burst.h"

namespace vkr {

// An engine with the registered defaults, no debug pictures, and its slots filled from the drawn scene.
inline std::unique_ptr<CMultiExposureHDRProcessFlowOpt> EngineWithBurst(int w, int h, int nExposureNum)
{
    auto pEngine = std::make_unique<CMultiExposureHDRProcessFlowOpt>();
    pEngine->m_AlignFilter.bDumpDebug = 0;
    *FindParameter(pEngine->m_LocalCurve.Params(), "bDumpDebugFile")->pValue = 0;
    for (int k = 0; k < nExposureNum; ++k) {
        EXPECT_TRUE(CopyFrameIn(*DrawExposure(w, h, k, nExposureNum).Frame(), pEngine->m_YuvFrames[k]));
    }
    return pEngine;
}

// The result of a burst; empty when the engine refused it.
inline std::vector<uint8_t> Fuse(CMultiExposureHDRProcessFlowOpt& engine, int nExposureNum, int nReference,
                                 const HostFaces& faces = {})
{
    TestYuvImage output;
    if (!engine.ProcessImage(nExposureNum, nReference, faces, 0, 1, output)) return {};
    return Samples(output);
}

}  // namespace vkr
