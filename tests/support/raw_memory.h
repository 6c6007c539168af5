#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

#include "foundation/mem_pool.h"

namespace vkr {

// The raw memory behind the pool for one scope: every call is written down, and single ones can be refused. The pool
// must hold no region when the scope begins; what it holds when the scope ends is given back. One at a time.
class RawMemory {
public:
    struct Event {
        bool bAllocate;
        size_t nCall;   // which allocation, counted from 0, refused ones too
        size_t nBytes;  // of an allocation
        bool operator==(const Event& other) const
        {
            return bAllocate == other.bAllocate && nCall == other.nCall && nBytes == other.nBytes;
        }
    };

    // Where the memory comes from: 64-byte aligned, or null.
    struct Source {
        void* (*pTake)(size_t nBytes);
        void (*pGive)(void* p);
    };
    static void* TakeFromHeap(size_t nBytes) { return std::aligned_alloc(64, (nBytes + 63) / 64 * 64); }

    explicit RawMemory(const Source& source = {TakeFromHeap, std::free}) : m_Source(source)
    {
        Self() = this;
        InstallRawAllocator([](size_t nBytes) { return Self()->Allocate(nBytes); }, [](void* p) { Self()->Free(p); });
    }
    ~RawMemory()
    {
        PoolRelease();
        for (void* pRaw : m_vCalls) {
            if (pRaw != nullptr) m_Source.pGive(pRaw);
        }
        InstallRawAllocator(nullptr, nullptr);
        Self() = nullptr;
    }
    RawMemory(const RawMemory&) = delete;
    RawMemory& operator=(const RawMemory&) = delete;

    // Refuses nCount allocations, after nSkip that are still served.
    void Refuse(size_t nSkip, size_t nCount)
    {
        m_nRefuseFrom = m_vCalls.size() + nSkip;
        m_nRefuseCount = nCount;
    }
    bool Refuses(size_t nCall) const { return nCall - m_nRefuseFrom < m_nRefuseCount; }

    size_t Calls() const { return m_vCalls.size(); }
    size_t Live() const
    {
        return static_cast<size_t>(
            std::count_if(m_vCalls.begin(), m_vCalls.end(), [](void* p) { return p != nullptr; }));
    }
    uint8_t* Base(size_t nCall) const { return static_cast<uint8_t*>(m_vCalls[nCall]); }
    std::vector<Event> TakeEvents() { return std::exchange(m_vEvents, {}); }

private:
    static RawMemory*& Self()
    {
        static RawMemory* pSelf = nullptr;
        return pSelf;
    }
    void* Allocate(size_t nBytes)
    {
        const size_t nCall = m_vCalls.size();
        m_vEvents.push_back({true, nCall, nBytes});
        m_vCalls.push_back(Refuses(nCall) ? nullptr : m_Source.pTake(nBytes));
        return m_vCalls.back();
    }
    void Free(void* pRaw)
    {
        const auto it = std::find(m_vCalls.begin(), m_vCalls.end(), pRaw);
        if (it == m_vCalls.end()) std::abort();  // never handed out, or given back twice
        m_vEvents.push_back({false, static_cast<size_t>(it - m_vCalls.begin()), 0});
        m_Source.pGive(*it);
        *it = nullptr;
    }

    Source m_Source;
    std::vector<void*> m_vCalls;  // by number; null where refused or given back
    std::vector<Event> m_vEvents;
    size_t m_nRefuseFrom = 0, m_nRefuseCount = 0;
};

}  // namespace vkr
