#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef VKRHDR_POOL_CHECK
#include <sanitizer/asan_interface.h>
#endif

namespace vkr {

// What a block's holder may touch, told to AddressSanitizer: the bytes that were asked for, from the allocation to the
// release. For a picture that includes the 128 bytes of margin behind its samples, which vector loops may read.
// Without VKRHDR_POOL_CHECK all of this is nothing.
#ifdef VKRHDR_POOL_CHECK

inline void ForbidBytes(uintptr_t nStart, size_t nBytes)
{
    __asan_poison_memory_region(reinterpret_cast<void*>(nStart), nBytes);
}

inline void AllowBytes(uintptr_t nStart, size_t nBytes)
{
    __asan_unpoison_memory_region(reinterpret_cast<void*>(nStart), nBytes);
}

// A fresh block holds a pattern, so that nobody lives on what its last holder left there.
inline void ScrambleBytes(uintptr_t nStart, size_t nBytes)
{
    std::memset(reinterpret_cast<void*>(nStart), 0xA5, nBytes);
}

#else

inline void ForbidBytes(uintptr_t /*nStart*/, size_t /*nBytes*/) {}
inline void AllowBytes(uintptr_t /*nStart*/, size_t /*nBytes*/) {}
inline void ScrambleBytes(uintptr_t /*nStart*/, size_t /*nBytes*/) {}

#endif

}  // namespace vkr
