#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace vkr {

// Scratch memory from the general heap, 64-byte aligned, released at scope end. Never throws: Allocate returns false
// when there is no memory or the size overflows, and the buffer is empty then. Contents start undefined.
// Taken before a parallel region, never inside one.
template <class T>
class HeapBuffer {
    static_assert(std::is_trivial<T>::value, "scratch is raw memory");

public:
    HeapBuffer() = default;
    ~HeapBuffer() { std::free(m_pData); }
    HeapBuffer(const HeapBuffer&) = delete;
    HeapBuffer& operator=(const HeapBuffer&) = delete;

    bool Allocate(size_t nCount)
    {
        std::free(m_pData);
        m_pData = nullptr;
        m_nCount = 0;
        if (nCount > (static_cast<size_t>(-1) - 64) / sizeof(T)) return false;
        const size_t nBytes = (nCount * sizeof(T) + 63) / 64 * 64;
        m_pData = static_cast<T*>(std::aligned_alloc(64, nBytes > 0 ? nBytes : 64));
        if (m_pData != nullptr) m_nCount = nCount;
        return m_pData != nullptr;
    }
    bool AllocateZero(size_t nCount)
    {
        if (!Allocate(nCount)) return false;
        if (nCount > 0) std::memset(m_pData, 0, nCount * sizeof(T));
        return true;
    }

    T* Data() { return m_pData; }
    const T* Data() const { return m_pData; }
    size_t Count() const { return m_nCount; }
    T& operator[](size_t i) { return m_pData[i]; }
    const T& operator[](size_t i) const { return m_pData[i]; }

private:
    T* m_pData = nullptr;
    size_t m_nCount = 0;
};

}  // namespace vkr
