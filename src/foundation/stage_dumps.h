#pragma once

#include <cstdint>

#include "foundation/image.h"

namespace vkr {

// Whether a burst leaves debug pictures and texts behind, and says more on the console. The flow makes one of its own
// switch and hands it to the stages; a filter narrows it by its own. Off, nothing is written anywhere.
class StageDumps {
public:
    // bUVOrder: chroma order of the frames. A plain 0 or 1 is a switch as well.
    StageDumps(int32_t bEnable = 0, int32_t bUVOrder = 0) : m_bEnable(bEnable != 0), m_bUVOrder(bUVOrder) {}

    explicit operator bool() const { return m_bEnable; }
    StageDumps If(int32_t bSwitch) const { return {m_bEnable && bSwitch, m_bUVOrder}; }

    // BMP, the path as printf makes it, relative to the working folder. Pictures of one or three channels; a frame is
    // converted to B, G, R. Folders are not made: a file that can not be opened is left out without a word.
    void Save(const CImage& image, const char* pFormat, ...) const __attribute__((format(printf, 3, 4)));
    void Save(const CYuvImage& frame, const char* pFormat, ...) const __attribute__((format(printf, 3, 4)));

private:
    bool m_bEnable;
    int32_t m_bUVOrder;
};

}  // namespace vkr
