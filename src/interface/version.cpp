#include "interface/version.h"

#include <cstdio>
#include <cstring>
#include <mutex>

#include "foundation/fork_locks.h"
#include "foundation/log.h"

namespace vkr {

namespace {

constexpr char kVersion[] = "1.1.0.9";
std::mutex g_RecordMutex;
const FreeAfterFork g_RecordAfterFork(g_RecordMutex);
vkrHdrVersion g_Version;
char g_szBuildStamp[256];
char g_szConfigVersion[65];

void FillOnce()
{
    if (g_Version.pVersion != nullptr) return;
    int32_t* pNumbers = g_Version.nVersion;
    std::sscanf(kVersion, "%d.%d.%d.%d", &pNumbers[0], &pNumbers[1], &pNumbers[2], &pNumbers[3]);
    HdrSprintf(g_szBuildStamp, sizeof(g_szBuildStamp), "%s %s", __DATE__, __TIME__);
    g_Version.pBuildStamp = g_szBuildStamp;
    g_Version.pVersion = kVersion;
}

}  // namespace

// What stays the same is not written again: a host's thread may be reading the record.
const vkrHdrVersion* FillVersion(const char* pConfigVersion)
{
    const std::lock_guard<std::mutex> lock(g_RecordMutex);
    FillOnce();
    const char* pShown = pConfigVersion != nullptr ? g_szConfigVersion : nullptr;
    if (pConfigVersion != nullptr && std::strcmp(g_szConfigVersion, pConfigVersion) != 0) {
        std::snprintf(g_szConfigVersion, sizeof(g_szConfigVersion), "%s", pConfigVersion);
    }
    if (g_Version.pConfigVersion != pShown) g_Version.pConfigVersion = pShown;
    return &g_Version;
}

}  // namespace vkr
