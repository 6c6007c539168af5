#include "interface/version.h"

#include <cstdio>
#include <cstring>

#include "foundation/log.h"

namespace vkr {

namespace {

constexpr char kVersion[] = "1.1.0.9";
vkrHdrVersion g_Version;
char g_szBuildStamp[256];

}  // namespace

const vkrHdrVersion* FillVersion(const char* pConfigVersion)
{
    int32_t* pNumbers = g_Version.nVersion;
    std::sscanf(kVersion, "%d.%d.%d.%d", &pNumbers[0], &pNumbers[1], &pNumbers[2], &pNumbers[3]);
    std::memset(g_szBuildStamp, 0, sizeof(g_szBuildStamp));
    HdrSprintf(g_szBuildStamp, sizeof(g_szBuildStamp), "%s %s", __DATE__, __TIME__);
    g_Version.pVersion = kVersion;
    g_Version.pBuildStamp = g_szBuildStamp;
    g_Version.pConfigVersion = pConfigVersion;
    return &g_Version;
}

}  // namespace vkr
