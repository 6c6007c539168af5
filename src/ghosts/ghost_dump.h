#pragma once

#include "foundation/image.h"
#include "foundation/stage_dumps.h"

namespace vkr {

// Debug pictures of ghost detection under GhostDump/, and the text that tells the pairs apart in their names. Each pair
// has an object of its own, so pairs may run at once. Where the folder does not exist nothing is written, and nothing
// is reported.
class GhostDumps {
public:
    GhostDumps(const StageDumps& dumps, int nPair);

    const char* Tag() const { return m_szTag; }  // "_Exp0"

    // The path as printf makes it. Pictures of one or three channels.
    void Save(const CImage& image, const char* pFormat, ...) const __attribute__((format(printf, 3, 4)));

    // Three channels; an edge of 0 shows as 128.
    void SaveEdges(const CShortImage& edges, const char* pFormat, ...) const __attribute__((format(printf, 3, 4)));

private:
    StageDumps m_dumps;
    char m_szTag[16];
};

}  // namespace vkr
