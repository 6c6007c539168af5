#include "align/align_random.h"

namespace vkr {

// The words are filled by the multiplicative generator of 16807 modulo 2^31 - 1, and ten rounds are thrown away.
AlignRandom::AlignRandom(uint32_t nSeed)
{
    int64_t nWord = static_cast<int32_t>(nSeed == 0 ? 1 : nSeed);  // seeds of 2^31 and more count as negative
    m_vWords[0] = static_cast<uint32_t>(nWord);
    for (int i = 1; i < kWords; ++i) {
        nWord = 16807 * nWord % 2147483647;
        if (nWord < 0) nWord += 2147483647;
        m_vWords[i] = static_cast<uint32_t>(nWord);
    }
    for (int i = 0; i < 10 * kWords; ++i) Next();
}

int32_t AlignRandom::Next()
{
    constexpr int kLag = 3;  // behind the newest word
    uint32_t& nWord = m_vWords[(m_nOldest + kLag) % kWords];
    nWord += m_vWords[m_nOldest];
    m_nOldest = (m_nOldest + 1) % kWords;
    return static_cast<int32_t>(nWord >> 1);
}

}  // namespace vkr
