#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "flow/multi_exposure_flow.h"
#include "interface/plane_copy.h"
#include "support/random_image.h"
#include "support/rectangle_scene.h"
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

// A hand-held burst: every frame a cut of its own place and brightness, and a block that is elsewhere in each.
inline std::unique_ptr<CMultiExposureHDRProcessFlowOpt> EngineWithShakenBurst(int w, int h, int nExposureNum)
{
    auto pEngine = EngineWithBurst(w, h, 0);
    pEngine->m_AlignFilter.nMinFeatureNum = 8;
    pEngine->m_AlignFilter.nFeatureMatchLevel = 2;
    CGhostProcessFilter& ghosts = pEngine->m_GhostFilter;  // for small movers in small pictures
    ghosts.nGhostPyramidStartLevel = 1;
    ghosts.nMinGhostLevel = ghosts.bErodeDiffEnable = 0;
    ghosts.nGrayCloseItAtGhostStartLevel = ghosts.nGhostCloseIter = 2;
    for (auto& nThre : ghosts.nGhostThre) nThre[0] = 16, nThre[1] = 32, nThre[2] = 64;
    const RectangleScene scene(5);
    for (int k = 0; k < nExposureNum; ++k) {
        CYuvImage& frame = pEngine->m_YuvFrames[k];
        scene.Cut(40 + 3 * k, 30 - 2 * k * (k % 2), w, h, 0.5 + 0.25 * k, frame);
        for (int y = h / 3; y < h / 3 + 36; ++y) {
            std::fill_n(frame.RowY(y) + w / 3 + 40 * k, 30, static_cast<uint8_t>(y % 8 < 4 ? 20 : 120 + 20 * k));
        }
    }
    return pEngine;
}

// Calls fn for every parameter of a filter and its sub-filters but the ones that write debug pictures.
template <class Fn>
void ForParameters(CFilter& filter, const Fn& fn)
{
    for (ParamEntry& entry : filter.Params()) {
        if (entry.sName.find("Dump") == std::string::npos) fn(entry);
    }
    if (auto* pFlow = dynamic_cast<CMultiFilterProcessFlow*>(&filter)) {
        for (CFilter* pSub : pFlow->Filters()) ForParameters(*pSub, fn);
    }
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
