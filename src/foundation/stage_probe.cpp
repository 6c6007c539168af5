#include "foundation/stage_probe.h"

#include <cstdio>

namespace vkr {

namespace {

const StageProbe* g_pProbe = nullptr;

template <class Image, class Callback>
void Show(Callback pCallback, const char* pName, const Image& image, int nIndex)
{
    if (pCallback == nullptr || image.Empty()) return;
    char szName[64];
    if (nIndex >= 0) {
        std::snprintf(szName, sizeof(szName), "%s%d", pName, nIndex);
    } else {
        std::snprintf(szName, sizeof(szName), "%s", pName);
    }
    pCallback(g_pProbe->pUser, szName, image);
}

}  // namespace

void SetStageProbe(const StageProbe* pProbe)
{
    g_pProbe = pProbe;
}

void ProbeImage(const char* pName, const CImage& image, int nIndex)
{
    if (g_pProbe != nullptr) Show(g_pProbe->pOnImage, pName, image, nIndex);
}

void ProbeImage(const char* pName, const CShortImage& image, int nIndex)
{
    if (g_pProbe != nullptr) Show(g_pProbe->pOnShortImage, pName, image, nIndex);
}

void ProbeImage(const char* pName, const CYuvImage& image, int nIndex)
{
    if (g_pProbe != nullptr) Show(g_pProbe->pOnYuvImage, pName, image, nIndex);
}

}  // namespace vkr
