#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "vkrHdr.h"

namespace vkr {

// A picture of the host's: both planes with nPad bytes behind every row and kGuard behind the last one, all bytes 0x5A
// until written.
class HostPicture {
public:
    HostPicture(int w, int h, int nPad = 0)
        : m_vLuma(static_cast<size_t>(w + nPad) * h + kGuard, 0x5A),
          m_vChroma(static_cast<size_t>(w + nPad) * (h / 2) + kGuard, 0x5A)
    {
        m_frame.nWidth = w;
        m_frame.nHeight = h;
        m_frame.pPlane[0] = m_vLuma.data();
        m_frame.pPlane[1] = m_vChroma.data();
        m_frame.nPitch[0] = m_frame.nPitch[1] = w + nPad;
    }
    HostPicture(HostPicture&&) = default;

    vkrHdrFrame* Frame() { return &m_frame; }
    uint8_t& Luma(int x, int y) { return m_vLuma[static_cast<size_t>(y) * m_frame.nPitch[0] + x]; }
    uint8_t& Chroma(int i, int y) { return m_vChroma[static_cast<size_t>(y) * m_frame.nPitch[1] + i]; }

    // The samples without the bytes between the rows.
    std::vector<uint8_t> Pixels()
    {
        std::vector<uint8_t> vPixels;
        for (int y = 0; y < m_frame.nHeight; ++y)
            vPixels.insert(vPixels.end(), &Luma(0, y), &Luma(0, y) + m_frame.nWidth);
        for (int y = 0; y < m_frame.nHeight / 2; ++y) {
            vPixels.insert(vPixels.end(), &Chroma(0, y), &Chroma(0, y) + m_frame.nWidth);
        }
        return vPixels;
    }
    // True while nobody wrote between the rows or behind the planes.
    bool PaddingIntact()
    {
        for (const std::vector<uint8_t>* pPlane : {&m_vLuma, &m_vChroma}) {
            if (std::any_of(pPlane->end() - kGuard, pPlane->end(), [](uint8_t v) { return v != 0x5A; })) return false;
        }
        for (int y = 0; y < m_frame.nHeight; ++y) {
            for (int x = m_frame.nWidth; x < m_frame.nPitch[0]; ++x) {
                if (Luma(x, y) != 0x5A || Chroma(x, y / 2) != 0x5A) return false;
            }
        }
        return true;
    }
    bool Untouched()
    {
        for (const uint8_t v : Pixels()) {
            if (v != 0x5A) return false;
        }
        return PaddingIntact();
    }

private:
    static constexpr int kGuard = 16384;  // bytes; more than a padded picture of the tests is larger than its own size
    vkrHdrFrame m_frame{};
    std::vector<uint8_t> m_vLuma, m_vChroma;
};

}  // namespace vkr
