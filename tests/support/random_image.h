#pragma once

#include <cstdlib>
#include <random>
#include <type_traits>
#include <vector>

#include "foundation/image.h"

namespace vkr {

// Picture records that release themselves, for tests.
template <class Record>
struct Owned : Record {
    Owned() : Record{} {}
    ~Owned() { this->Release(); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
};
using TestImage = Owned<CImage>;
using TestShortImage = Owned<CShortImage>;
using TestYuvImage = Owned<CYuvImage>;

// nCount random samples lo .. hi.
template <class T>
std::vector<T> RandomRow(std::mt19937& rng, size_t nCount, int lo, int hi)
{
    std::uniform_int_distribution<int> pick(lo, hi);
    std::vector<T> vRow(nCount);
    for (T& sample : vRow) sample = static_cast<T>(pick(rng));
    return vRow;
}

// Sizes image and fills it with random samples lo .. hi. Record is CImage or CShortImage.
template <class Record>
void FillRandom(std::mt19937& rng, Record& image, int w, int h, int nDim, int lo, int hi)
{
    std::uniform_int_distribution<int> pick(lo, hi);
    if (!image.AllocateDim(w, h, nDim)) std::abort();
    for (size_t i = 0; i < image.Samples(); ++i)
        image.pData[i] = static_cast<std::remove_reference_t<decltype(image.pData[0])>>(pick(rng));
}

// Sizes image and fills it with one value.
template <class Record>
void FillConstant(Record& image, int w, int h, int nDim, int nValue)
{
    if (!image.AllocateDim(w, h, nDim)) std::abort();
    for (size_t i = 0; i < image.Samples(); ++i)
        image.pData[i] = static_cast<std::remove_reference_t<decltype(image.pData[0])>>(nValue);
}

// The samples of a picture, for EXPECT_EQ.
inline std::vector<uint8_t> Samples(const CImage& image)
{
    return std::vector<uint8_t>(image.pData, image.pData + image.Samples());
}
inline std::vector<int16_t> Samples(const CShortImage& image)
{
    return std::vector<int16_t>(image.pData, image.pData + image.Samples());
}
inline std::vector<uint8_t> Samples(const CYuvImage& image)
{
    return std::vector<uint8_t>(image.pBuffer,
                                image.pBuffer + static_cast<size_t>(image.nWidth) * image.nHeight / 2 * 3);
}

// A row or plane of a caller-chosen length with known bytes before and behind it, to see that nothing else is written.
template <class T>
class Guarded {
public:
    explicit Guarded(size_t nCount) : m_vBytes((nCount + 2 * kGuard) * sizeof(T), 0xA5), m_nCount(nCount) {}
    T* Data() { return reinterpret_cast<T*>(m_vBytes.data()) + kGuard; }
    std::vector<T> Values() { return std::vector<T>(Data(), Data() + m_nCount); }
    bool Intact() const
    {
        const size_t nGuard = kGuard * sizeof(T);
        for (size_t i = 0; i < nGuard; ++i) {
            if (m_vBytes[i] != 0xA5 || m_vBytes[m_vBytes.size() - 1 - i] != 0xA5) return false;
        }
        return true;
    }

private:
    static constexpr size_t kGuard = 64;
    std::vector<uint8_t> m_vBytes;
    size_t m_nCount;
};

}  // namespace vkr
