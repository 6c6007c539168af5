#include "ghosts/ghost_dump.h"

#include <cstdarg>
#include <cstdio>

#include "foundation/fixed_point.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"

namespace vkr {

namespace {

constexpr int kPathLength = 128;

bool EdgesToPicture(const CShortImage& edges, CImage& picture)
{
    if (edges.Empty() || !picture.AllocateDim(edges.nWidth, edges.nHeight, edges.nDim)) return false;
    for (size_t i = 0; i < picture.Samples(); ++i) picture.pData[i] = ClampU8(128 + edges.pData[i]);
    return true;
}

}  // namespace

GhostDumps::GhostDumps(const StageDumps& dumps, int nPair) : m_dumps(dumps)
{
    HdrSprintf(m_szTag, sizeof(m_szTag), "_Exp%d", nPair);
}

void GhostDumps::Save(const CImage& image, const char* pFormat, ...) const
{
    if (!m_dumps) return;
    char szPath[kPathLength];
    va_list args;
    va_start(args, pFormat);
    std::vsnprintf(szPath, sizeof(szPath), pFormat, args);
    va_end(args);
    m_dumps.Save(image, "%s", szPath);
}

void GhostDumps::SaveEdges(const CShortImage& edges, const char* pFormat, ...) const
{
    if (!m_dumps) return;
    char szPath[kPathLength];
    va_list args;
    va_start(args, pFormat);
    std::vsnprintf(szPath, sizeof(szPath), pFormat, args);
    va_end(args);
    CImage picture{};
    ImageScope scope(picture);
    if (EdgesToPicture(edges, picture)) m_dumps.Save(picture, "%s", szPath);
}

}  // namespace vkr
