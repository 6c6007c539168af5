#pragma once

#include <cstdint>

namespace vkr {

// The random numbers of one alignment: those of the usual C library's rand(), of which this is the additive feedback
// generator r[i] = r[i - 3] + r[i - 31], so that the samples are the same wherever the library runs, whatever the host
// draws, and nothing of the host's is touched. Each run owns one. Not for two threads at a time.
class AlignRandom {
public:
    static constexpr uint32_t kSeed = 455;

    explicit AlignRandom(uint32_t nSeed = kSeed);  // 0 counts as 1
    int32_t Next();                                // 0 .. 2^31 - 1

private:
    static constexpr int kWords = 31;

    uint32_t m_vWords[kWords];
    int m_nOldest = 0;  // the word that Next replaces
};

}  // namespace vkr
