#include "foundation/cipher.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "foundation/cipher_tables.h"

namespace vkr {

namespace {

namespace tables = cipher_tables;

constexpr int kBlockBytes = 8, kRounds = 16, kBoxCount = 8;
constexpr int kHalfKeyBits = 28;
constexpr uint32_t kHalfKey = (1U << kHalfKeyBits) - 1;

using Subkeys = std::array<uint64_t, kRounds>;

// What every byte of a word of nBytes bytes brings to the permuted word. Bit i of a word is position i + 1 of the
// tables.
template <size_t nBytes>
using Permutation = std::array<std::array<uint64_t, 256>, nBytes>;

template <size_t nBytes, size_t nTo>
constexpr Permutation<nBytes> MakePermutation(const uint8_t (&vPositions)[nTo])
{
    Permutation<nBytes> permutation{};
    for (size_t i = 0; i < nTo; ++i) {
        const size_t nFrom = vPositions[i] - size_t{1};
        for (size_t nValue = 0; nValue < 256; ++nValue) {
            permutation[nFrom / 8][nValue] |= static_cast<uint64_t>(nValue >> (nFrom % 8) & 1) << i;
        }
    }
    return permutation;
}

constexpr auto kInitial = MakePermutation<8>(tables::kInitialPermutation);
constexpr auto kFinal = MakePermutation<8>(tables::kFinalPermutation);
constexpr auto kExpansion = MakePermutation<4>(tables::kExpansion);
constexpr auto kKeyChoice1 = MakePermutation<8>(tables::kKeyChoice1);
constexpr auto kKeyChoice2 = MakePermutation<7>(tables::kKeyChoice2);

template <size_t nBytes>
constexpr uint64_t Permute(uint64_t nWord, const Permutation<nBytes>& permutation)
{
    uint64_t nTo = 0;
    for (size_t i = 0; i < nBytes; ++i) nTo |= permutation[i][nWord >> (8 * i) & 255];
    return nTo;
}

// What the six bits of every box bring to the round's value: the box's four bits, where the round's permutation puts
// them. The first and the last bit choose the row, and those between them the column, the first one counting most.
constexpr std::array<std::array<uint32_t, 64>, kBoxCount> MakeBoxes()
{
    constexpr auto kRound = MakePermutation<4>(tables::kRoundPermutation);
    std::array<std::array<uint32_t, 64>, kBoxCount> boxes{};
    for (int i = 0; i < kBoxCount; ++i) {
        for (int n = 0; n < 64; ++n) {
            const int nRow = 2 * (n & 1) + (n >> 5);
            const int nColumn = 8 * (n >> 1 & 1) + 4 * (n >> 2 & 1) + 2 * (n >> 3 & 1) + (n >> 4 & 1);
            const uint64_t nValue = tables::kBoxes[i][16 * nRow + nColumn];
            boxes[i][n] = static_cast<uint32_t>(Permute(nValue << (4 * i), kRound));
        }
    }
    return boxes;
}
constexpr auto kBoxRounds = MakeBoxes();

uint64_t LoadBlock(const uint8_t* pBytes)
{
    uint64_t nBlock = 0;
    for (int i = 0; i < kBlockBytes; ++i) nBlock |= static_cast<uint64_t>(pBytes[i]) << (8 * i);
    return nBlock;
}

void StoreBlock(uint64_t nBlock, uint8_t* pBytes)
{
    for (int i = 0; i < kBlockBytes; ++i) pBytes[i] = static_cast<uint8_t>(nBlock >> (8 * i));
}

// Toward the first position, which is the lowest bit.
uint32_t RotateHalfKey(uint32_t nHalf, int nBy)
{
    return (nHalf >> nBy | nHalf << (kHalfKeyBits - nBy)) & kHalfKey;
}

Subkeys MakeSubkeys(const uint8_t* pKey, int nKeyLength)
{
    uint8_t vKey[kBlockBytes] = {};
    std::copy_n(pKey, std::clamp(nKeyLength, 0, kBlockBytes), vKey);
    const uint64_t nChosen = Permute(LoadBlock(vKey), kKeyChoice1);
    uint32_t nLow = static_cast<uint32_t>(nChosen) & kHalfKey;
    uint32_t nHigh = static_cast<uint32_t>(nChosen >> kHalfKeyBits);
    Subkeys subkeys;
    for (int i = 0; i < kRounds; ++i) {
        nLow = RotateHalfKey(nLow, tables::kLeftShifts[i]);
        nHigh = RotateHalfKey(nHigh, tables::kLeftShifts[i]);
        subkeys[i] = Permute(nLow | static_cast<uint64_t>(nHigh) << kHalfKeyBits, kKeyChoice2);
    }
    return subkeys;
}

uint32_t FeistelRound(uint32_t nHalf, uint64_t nSubkey)
{
    const uint64_t nWide = Permute(nHalf, kExpansion) ^ nSubkey;
    uint32_t nRound = 0;
    for (int i = 0; i < kBoxCount; ++i) nRound |= kBoxRounds[i][nWide >> (6 * i) & 63];
    return nRound;
}

uint64_t CipherBlock(const Subkeys& subkeys, bool bDecipher, uint64_t nBlock)
{
    nBlock = Permute(nBlock, kInitial);
    uint32_t nLeft = static_cast<uint32_t>(nBlock), nRight = static_cast<uint32_t>(nBlock >> 32);
    for (int i = 0; i < kRounds; ++i) {
        if (bDecipher) {
            nRight ^= FeistelRound(nLeft, subkeys[kRounds - 1 - i]);
        } else {
            nLeft ^= FeistelRound(nRight, subkeys[i]);
        }
        std::swap(nLeft, nRight);
    }
    return Permute(nLeft | static_cast<uint64_t>(nRight) << 32, kFinal);
}

}  // namespace

int DecipherBuffer(uint8_t* pOut, const uint8_t* pIn, int nLength, int nKeyLength, const uint8_t* pKey, int nDirection)
{
    if (pOut == nullptr || pIn == nullptr || pKey == nullptr || nLength < kBlockBytes) return 0;
    const Subkeys subkeys = MakeSubkeys(pKey, nKeyLength);
    for (int i = 0; i + kBlockBytes <= nLength; i += kBlockBytes) {
        StoreBlock(CipherBlock(subkeys, nDirection != 0, LoadBlock(pIn + i)), pOut + i);
    }
    return 1;
}

int DecipherBuffer(uint8_t* pOut, const uint8_t* pIn, int nLength, const CipherKey& key, int nDirection)
{
    return DecipherBuffer(pOut, pIn, nLength, key.nLength, reinterpret_cast<const uint8_t*>(key.pText), nDirection);
}

}  // namespace vkr
