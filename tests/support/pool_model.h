#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <vector>

#include "support/raw_memory.h"

namespace vkr {

// What the pool must do, without its lists: every region knows its used ranges, and a request takes the first gap. Told
// the same calls as the pool, it foretells where blocks lie, what raw memory is asked for and what goes back.
class PoolModel {
public:
    // A block as region (the number of its raw allocation) and offset from the region's first usable byte.
    struct Block {
        size_t nCall = SIZE_MAX, nOffset = 0;
        bool Null() const { return nCall == SIZE_MAX; }
    };

    explicit PoolModel(const RawMemory& raw) : m_Raw(raw) {}

    void Init(size_t nBytes)
    {
        const bool bBig = nBytes > (60U << 20);
        if (m_nUsers == 0) {
            m_vSmall.clear();
            if (bBig) m_vBig.clear();
        }
        const size_t nBig = bBig ? nBytes * 3 / 5 + (4U << 20) : 0;
        if (bBig) AddRegion(m_vBig, nBig);
        AddRegion(m_vSmall, nBytes - nBig);
        ++m_nUsers;
    }
    Block Allocate(size_t nAsked)
    {
        if (nAsked > SIZE_MAX - 64) return {};  // as large as rounding can serve
        const size_t nBytes = Rounded(nAsked);
        const bool bSmall = nBytes <= (6U << 20);
        std::vector<Region>& vRegions = bSmall ? m_vSmall : m_vBig;
        const Block block = FirstGap(vRegions, nBytes);
        if (!block.Null()) return block;
        const size_t nDoubled = nBytes >= (1U << 30) ? 0 : 2 * nBytes;
        if (!AddRegion(vRegions, bSmall ? 20U << 20 : std::max<size_t>(nDoubled, 40U << 20))) return {};
        return FirstGap(vRegions, nBytes);
    }
    // Regions go as long as the next one in order is wholly free too.
    void Free(const Block& block)
    {
        for (std::vector<Region>* pRegions : {&m_vBig, &m_vSmall}) {
            for (size_t i = 0; i < pRegions->size(); ++i) {
                if ((*pRegions)[i].nCall != block.nCall || (*pRegions)[i].mUsed.erase(block.nOffset) == 0) continue;
                while (i < pRegions->size() && (*pRegions)[i].mUsed.empty()) {
                    m_vEvents.push_back({false, (*pRegions)[i].nCall, 0});
                    pRegions->erase(pRegions->begin() + static_cast<std::ptrdiff_t>(i));
                }
                return;
            }
        }
    }
    void Release()
    {
        m_nUsers = std::max(m_nUsers - 1, 0);
        if (m_nUsers > 0) return;
        for (std::vector<Region>* pRegions : {&m_vSmall, &m_vBig}) {
            for (const Region& region : *pRegions) m_vEvents.push_back({false, region.nCall, 0});
            pRegions->clear();
        }
    }

    std::vector<RawMemory::Event> TakeEvents() { return std::exchange(m_vEvents, {}); }

    // Regions, their bytes, blocks with the gaps between them, bytes in use.
    PoolUse Use() const
    {
        PoolUse use{};
        for (const std::vector<Region>* pRegions : {&m_vSmall, &m_vBig}) {
            for (const Region& region : *pRegions) {
                ++use.nRegions;
                use.nRegionBytes += region.nBytes;
                size_t nEnd = 0;
                for (const auto& [nOffset, nBytes] : region.mUsed) {
                    use.nBlocks += nOffset > nEnd ? 2 : 1;
                    use.nUsedBytes += nBytes;
                    nEnd = nOffset + nBytes;
                }
                if (nEnd < region.nBytes || region.mUsed.empty()) ++use.nBlocks;
            }
        }
        return use;
    }

private:
    struct Region {
        size_t nCall, nBytes;
        std::map<size_t, size_t> mUsed;  // offset to bytes
    };

    static size_t Rounded(size_t nAsked) { return std::max<size_t>((nAsked + 63) / 64 * 64, 64); }
    bool AddRegion(std::vector<Region>& vRegions, size_t nBytes)
    {
        m_vEvents.push_back({true, m_nCalls, nBytes + 128});
        const size_t nCall = m_nCalls++;
        if (m_Raw.Refuses(nCall)) return false;
        vRegions.push_back({nCall, nBytes, {}});
        return true;
    }
    static Block FirstGap(std::vector<Region>& vRegions, size_t nBytes)
    {
        for (Region& region : vRegions) {
            size_t nEnd = 0;
            for (const auto& [nOffset, nUsed] : region.mUsed) {
                if (nOffset - nEnd >= nBytes) break;
                nEnd = nOffset + nUsed;
            }
            if (region.nBytes - nEnd < nBytes) continue;
            region.mUsed[nEnd] = nBytes;
            return {region.nCall, nEnd};
        }
        return {};
    }

    const RawMemory& m_Raw;
    std::vector<Region> m_vSmall, m_vBig;
    int m_nUsers = 0;
    size_t m_nCalls = 0;
    std::vector<RawMemory::Event> m_vEvents;
};

}  // namespace vkr
