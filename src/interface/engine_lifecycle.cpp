#include "interface/engine_lifecycle.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "flow/enciphered_parameters.h"
#include "foundation/log.h"
#include "foundation/mem_pool.h"
#include "interface/report.h"

namespace vkr {

std::atomic<CMultiExposureHDRProcessFlowOpt*> gVKRAlgoPool{nullptr};
std::mutex g_EngineMutex;

namespace {

// Held while the engine's version is read and while the engine is taken away, and no longer: a render never keeps
// vkrHdrGetVersion waiting.
std::mutex g_VersionMutex;

CMultiExposureHDRProcessFlowOpt* TakeEngine()
{
    const std::lock_guard<std::mutex> lock(g_VersionMutex);
    return gVKRAlgoPool.exchange(nullptr);
}

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

struct CloseFile {
    void operator()(std::FILE* pFile) const { std::fclose(pFile); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Appends the rest of an enciphered file. False when it can not be read or is larger than one may be; a file without an
// end is left as soon as that is known.
bool ReadToEnd(std::FILE* pFile, std::vector<uint8_t>& vBytes)
{
    uint8_t vPart[4096];
    while (const size_t nPart = std::fread(vPart, 1, sizeof(vPart), pFile)) {
        vBytes.insert(vBytes.end(), vPart, vPart + nPart);
        if (vBytes.size() > kEncipheredMost) return false;
    }
    return !std::ferror(pFile);
}

bool LoadEnciphered(const std::vector<uint8_t>& vFile, CMultiExposureHDRProcessFlowOpt& engine)
{
    switch (LoadEncipheredParameters(vFile.data(), vFile.size(), engine)) {
        case EncipheredLoad::kDone:
            return true;
        case EncipheredLoad::kNotDeciphered:
            Report("Load parameter file error\n");
            break;
        case EncipheredLoad::kNotParsed:
            Report("Load from decypted parameter file error\n");
            break;
    }
    EndEngine();
    return false;
}

// A readable file that fails leaves the engine, unlike all other failures.
bool LoadReadable(const char* pPath, CMultiExposureHDRProcessFlowOpt& engine)
{
    if (engine.LoadParameterFile(pPath)) return true;
    Report("LoadParameterFile %s Fail!\n", pPath);
    return false;
}

bool LoadParameters(const char* pPath, CMultiExposureHDRProcessFlowOpt& engine)
{
    File file(std::fopen(pPath, "rb"));
    std::vector<uint8_t> vBytes(kEncipheredHead);
    if (file) vBytes.resize(std::fread(vBytes.data(), 1, vBytes.size(), file.get()));
    if (!file || std::ferror(file.get())) {
        Report("Can not open parameter file:%s\n", pPath);
        EndEngine();
        return false;
    }
    if (!IsEnciphered(vBytes.data(), vBytes.size())) return LoadReadable(pPath, engine);
    if (!ReadToEnd(file.get(), vBytes)) vBytes.clear();
    return LoadEnciphered(vBytes, engine);
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
    try {
        if (!LoadParameters(pParamFilePath, *pEngine)) return false;
    } catch (const std::bad_alloc&) {
        Report("vkrHdrInit: no memory for the parameter file\n");
        EndEngine();
        return false;
    }
    HdrLog("vkrHdrInitDone");
    return true;
}

bool ReadConfigVersion(char (&szVersion)[65])
{
    const std::lock_guard<std::mutex> lock(g_VersionMutex);
    const CMultiExposureHDRProcessFlowOpt* pEngine = gVKRAlgoPool;
    if (pEngine != nullptr) std::memcpy(szVersion, pEngine->GetConfigVersion(), sizeof(szVersion));
    return pEngine != nullptr;
}

void EndEngine()
{
    const std::lock_guard<std::mutex> lock(g_EngineMutex);
    CMultiExposureHDRProcessFlowOpt* pEngine = TakeEngine();
    if (pEngine != nullptr) {
        HdrPrintf("delete gVKRAlgoPool=%p\n", static_cast<void*>(pEngine));
        HdrLog(" ADDR %p\n", static_cast<void*>(pEngine));
        delete pEngine;
    }
    PoolRelease();
}

}  // namespace vkr
