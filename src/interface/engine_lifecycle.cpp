#include "interface/engine_lifecycle.h"

#include <cstdio>
#include <new>

#include "foundation/log.h"
#include "foundation/mem_pool.h"
#include "interface/report.h"

namespace vkr {

std::atomic<CMultiExposureHDRProcessFlowOpt*> gVKRAlgoPool{nullptr};
std::mutex g_EngineMutex;

namespace {

constexpr size_t kPoolBytes = 314572800;  // 300 MiB: a burst of three at 8 megapixels

// From the ordinary heap, never from the pool. Null when there is no memory.
CMultiExposureHDRProcessFlowOpt* NewEngine()
{
    try {
        return new CMultiExposureHDRProcessFlowOpt;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool CanOpen(const char* pPath)
{
    std::FILE* pFile = std::fopen(pPath, "rb");
    if (pFile == nullptr) return false;
    std::fclose(pFile);
    return true;
}

}  // namespace

// An engine that still lives is replaced and stays allocated: hosts call vkrHdrUninit first.
bool MakeEngine(const char* pParamFilePath)
{
    PoolInit(kPoolBytes);
    CMultiExposureHDRProcessFlowOpt* pEngine = NewEngine();
    if (pEngine == nullptr) {
        Report("vkrHdrInit: no memory for the engine\n");
        PoolRelease();
        return false;
    }
    gVKRAlgoPool = pEngine;
    HdrPrintf("new gVKRAlgoPool = %p\n", static_cast<void*>(pEngine));
    HdrLog(" ADDR %p\n", static_cast<void*>(pEngine));
    if (!CanOpen(pParamFilePath)) {
        Report("Can not open parameter file:%s\n", pParamFilePath);
        EndEngine();
        return false;
    }
    if (!pEngine->LoadParameterFile(pParamFilePath)) {
        Report("LoadParameterFile %s Fail!\n", pParamFilePath);
        return false;
    }
    HdrLog("vkrHdrInitDone");
    return true;
}

void EndEngine()
{
    const std::lock_guard<std::mutex> lock(g_EngineMutex);
    CMultiExposureHDRProcessFlowOpt* pEngine = gVKRAlgoPool.exchange(nullptr);
    if (pEngine != nullptr) {
        HdrPrintf("delete gVKRAlgoPool=%p\n", static_cast<void*>(pEngine));
        HdrLog(" ADDR %p\n", static_cast<void*>(pEngine));
        delete pEngine;
    }
    PoolRelease();
}

}  // namespace vkr
