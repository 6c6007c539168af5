#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "fuzz_check.h"

namespace vkr {

// Raw memory for the pool: nPlaces places of nPlaceBytes, a multiple of 64, that are reserved once and handed out again
// and again, so that a case costs no mapping, no fresh pages and no bookkeeping of the address sanitizer. Null when all
// are taken, or for more bytes than a place has. For one thread, or under the pool's mutex.
template <size_t nPlaces, size_t nPlaceBytes>
class ReservedMemory {
public:
    static void* Take(size_t nBytes)
    {
        const auto pPlace = std::find(std::begin(s_vTaken), std::end(s_vTaken), nullptr);
        if (nBytes > nPlaceBytes || pPlace == std::end(s_vTaken)) return nullptr;
        static uint8_t* const pMemory = Map();
        return *pPlace = pMemory + (pPlace - s_vTaken) * nPlaceBytes;
    }
    static void Give(void* p)
    {
        const auto pPlace = std::find(std::begin(s_vTaken), std::end(s_vTaken), p);
        FUZZ_CHECK(pPlace != std::end(s_vTaken));
        *pPlace = nullptr;
    }

private:
    static uint8_t* Map()
    {
        const int nFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
        void* const p = mmap(nullptr, nPlaces * nPlaceBytes, PROT_READ | PROT_WRITE, nFlags, -1, 0);
        FUZZ_CHECK(p != MAP_FAILED);
        return static_cast<uint8_t*>(p);
    }

    static inline void* s_vTaken[nPlaces] = {};
};

}  // namespace vkr
