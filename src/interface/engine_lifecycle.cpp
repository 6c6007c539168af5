#include "interface/engine_lifecycle.h"

#include <pthread.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "flow/enciphered_parameters.h"
#include "foundation/fork_locks.h"
#include "foundation/log.h"
#include "foundation/mem_pool.h"
#include "interface/report.h"

namespace vkr {

std::atomic<CMultiExposureHDRProcessFlowOpt*> gVKRAlgoPool{nullptr};
std::mutex g_EngineMutex;

namespace {

// Held while the engine's version is read and while the engine is put up or taken away, and no longer: a render never
// keeps vkrHdrGetVersion waiting.
std::mutex g_VersionMutex;
const FreeAfterFork g_VersionAfterFork(g_VersionMutex);

// Returns the engine before.
CMultiExposureHDRProcessFlowOpt* ExchangeEngine(CMultiExposureHDRProcessFlowOpt* pEngine)
{
    const std::lock_guard<std::mutex> lock(g_VersionMutex);
    return gVKRAlgoPool.exchange(pEngine);
}

// A fork does not wait for a running call, it only learns of it. One fork at a time.
class ForkWatch {
public:
    ForkWatch() { pthread_atfork(Before, InParent, InChild); }

    static ForkState s_State;

private:
    static void Before()
    {
        s_ForkMutex.lock();
        s_bNoCall = g_EngineMutex.try_lock();
    }
    static void InParent()
    {
        if (s_bNoCall) g_EngineMutex.unlock();
        s_ForkMutex.unlock();
    }
    static void InChild()
    {
        if (s_State != ForkState::kChildOfCall) s_State = s_bNoCall ? ForkState::kChild : ForkState::kChildOfCall;
        InParent();
    }

    static std::mutex s_ForkMutex;
    static bool s_bNoCall;
};
ForkState ForkWatch::s_State = ForkState::kNone;
std::mutex ForkWatch::s_ForkMutex;
bool ForkWatch::s_bNoCall = false;
const ForkWatch g_ForkWatch;

constexpr size_t kPoolBytes = 314572800;  // 300 MiB: a burst of three at 8 megapixels

// From the ordinary heap, never from the pool. Null when there is no memory.
using Engine = std::unique_ptr<CMultiExposureHDRProcessFlowOpt>;
Engine NewEngine()
{
    try {
        return std::make_unique<CMultiExposureHDRProcessFlowOpt>();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void DeleteEngine(CMultiExposureHDRProcessFlowOpt* pEngine)
{
    if (pEngine == nullptr) return;
    HdrPrintf("delete gVKRAlgoPool=%p\n", static_cast<void*>(pEngine));
    HdrLog(" ADDR %p\n", static_cast<void*>(pEngine));
    delete pEngine;
}

// What became of the parameter file: all of it read, what was read so far, nothing that an engine could live with.
enum class Load { kDone, kPart, kNone };

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

Load LoadEnciphered(const std::vector<uint8_t>& vFile, CMultiExposureHDRProcessFlowOpt& engine)
{
    switch (LoadEncipheredParameters(vFile.data(), vFile.size(), engine)) {
        case EncipheredLoad::kDone:
            return Load::kDone;
        case EncipheredLoad::kNotDeciphered:
            Report("Load parameter file error\n");
            break;
        case EncipheredLoad::kNotParsed:
            Report("Load from decypted parameter file error\n");
            break;
    }
    return Load::kNone;
}

// A readable file that fails leaves the engine, unlike all other failures.
Load LoadReadable(const char* pPath, CMultiExposureHDRProcessFlowOpt& engine)
{
    if (engine.LoadParameterFile(pPath)) return Load::kDone;
    Report("LoadParameterFile %s Fail!\n", pPath);
    return Load::kPart;
}

Load LoadParameters(const char* pPath, CMultiExposureHDRProcessFlowOpt& engine)
{
    File file(std::fopen(pPath, "rb"));
    std::vector<uint8_t> vBytes(kEncipheredHead);
    if (file) vBytes.resize(std::fread(vBytes.data(), 1, vBytes.size(), file.get()));
    if (!file || std::ferror(file.get())) {
        Report("Can not open parameter file:%s\n", pPath);
        return Load::kNone;
    }
    if (!IsEnciphered(vBytes.data(), vBytes.size())) return LoadReadable(pPath, engine);
    if (!ReadToEnd(file.get(), vBytes)) vBytes.clear();
    return LoadEnciphered(vBytes, engine);
}

}  // namespace

ForkState ReadForkState()
{
    return ForkWatch::s_State;
}

// An engine that still lives is replaced and stays allocated: hosts call vkrHdrUninit first. The new one is put up when
// it has its parameters: vkrHdrGetVersion never sees half of them.
bool MakeEngine(const char* pParamFilePath)
{
    PoolInit(kPoolBytes);
    Engine pEngine = NewEngine();
    if (pEngine == nullptr) {
        Report("vkrHdrInit: no memory for the engine\n");
        PoolRelease();
        return false;
    }
    HdrPrintf("new gVKRAlgoPool = %p\n", static_cast<void*>(pEngine.get()));
    HdrLog(" ADDR %p\n", static_cast<void*>(pEngine.get()));
    Load load = Load::kNone;
    try {
        load = LoadParameters(pParamFilePath, *pEngine);
    } catch (const std::bad_alloc&) {
        Report("vkrHdrInit: no memory for the parameter file\n");
    }
    if (load == Load::kNone) {
        ExchangeEngine(nullptr);
        DeleteEngine(pEngine.release());
        PoolRelease();
        return false;
    }
    ExchangeEngine(pEngine.release());
    if (load == Load::kDone) HdrLog("vkrHdrInitDone");
    return load == Load::kDone;
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
    DeleteEngine(ExchangeEngine(nullptr));
    PoolRelease();
}

}  // namespace vkr
