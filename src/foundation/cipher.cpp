#include "foundation/cipher.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "foundation/cipher_tables.h"

namespace vkr {

namespace {

namespace tables = cipher_tables;

constexpr int kBlockBytes = 8, kRounds = 16;

// One byte a bit.
template <size_t nCount>
using Bits = std::array<uint8_t, nCount>;
using Half = Bits<32>;
using Subkey = Bits<48>;
using Subkeys = std::array<Subkey, kRounds>;

template <size_t nFrom, size_t nTo>
Bits<nTo> Permute(const Bits<nFrom>& from, const uint8_t (&vPositions)[nTo])
{
    Bits<nTo> to;
    for (size_t i = 0; i < nTo; ++i) to[i] = from[vPositions[i] - 1];
    return to;
}

Bits<64> Unpack(const uint8_t* pBytes)
{
    Bits<64> bits;
    for (int i = 0; i < 64; ++i) bits[i] = pBytes[i / 8] >> (i % 8) & 1;
    return bits;
}

void Pack(const Bits<64>& bits, uint8_t* pBytes)
{
    std::fill_n(pBytes, kBlockBytes, uint8_t{0});
    for (int i = 0; i < 64; ++i) pBytes[i / 8] = static_cast<uint8_t>(pBytes[i / 8] | bits[i] << (i % 8));
}

Subkeys MakeSubkeys(const uint8_t* pKey, int nKeyLength)
{
    uint8_t vKey[kBlockBytes] = {};
    std::copy_n(pKey, std::clamp(nKeyLength, 0, kBlockBytes), vKey);
    Bits<56> bits = Permute(Unpack(vKey), tables::kKeyChoice1);
    Subkeys subkeys;
    for (int i = 0; i < kRounds; ++i) {
        const auto pMiddle = bits.begin() + 28;
        std::rotate(bits.begin(), bits.begin() + tables::kLeftShifts[i], pMiddle);
        std::rotate(pMiddle, pMiddle + tables::kLeftShifts[i], bits.end());
        subkeys[i] = Permute(bits, tables::kKeyChoice2);
    }
    return subkeys;
}

Half FeistelRound(const Half& half, const Subkey& subkey)
{
    Bits<48> wide = Permute(half, tables::kExpansion);
    for (int i = 0; i < 48; ++i) wide[i] ^= subkey[i];
    Half boxed;
    for (int i = 0; i < 8; ++i) {
        const uint8_t* b = &wide[6 * i];
        const int nRow = 2 * b[0] + b[5], nColumn = 8 * b[1] + 4 * b[2] + 2 * b[3] + b[4];
        const int nValue = tables::kBoxes[i][16 * nRow + nColumn];
        for (int k = 0; k < 4; ++k) boxed[4 * i + k] = nValue >> k & 1;
    }
    return Permute(boxed, tables::kRoundPermutation);
}

// target = FeistelRound(source) XOR target
void Mix(const Half& source, const Subkey& subkey, Half& target)
{
    const Half round = FeistelRound(source, subkey);
    for (int i = 0; i < 32; ++i) target[i] ^= round[i];
}

void CipherBlock(const Subkeys& subkeys, bool bDecipher, const uint8_t* pIn, uint8_t* pOut)
{
    Bits<64> bits = Permute(Unpack(pIn), tables::kInitialPermutation);
    Half left, right;
    std::copy_n(bits.begin(), 32, left.begin());
    std::copy_n(bits.begin() + 32, 32, right.begin());
    for (int i = 0; i < kRounds; ++i) {
        if (bDecipher) {
            Mix(left, subkeys[kRounds - 1 - i], right);
        } else {
            Mix(right, subkeys[i], left);
        }
        left.swap(right);
    }
    std::copy_n(left.begin(), 32, bits.begin());
    std::copy_n(right.begin(), 32, bits.begin() + 32);
    Pack(Permute(bits, tables::kFinalPermutation), pOut);
}

}  // namespace

int DecipherBuffer(uint8_t* pOut, const uint8_t* pIn, int nLength, int nKeyLength, const uint8_t* pKey, int nDirection)
{
    if (pOut == nullptr || pIn == nullptr || pKey == nullptr || nLength < kBlockBytes) return 0;
    const Subkeys subkeys = MakeSubkeys(pKey, nKeyLength);
    for (int i = 0; i + kBlockBytes <= nLength; i += kBlockBytes) {
        CipherBlock(subkeys, nDirection != 0, pIn + i, pOut + i);
    }
    return 1;
}

int DecipherBuffer(uint8_t* pOut, const uint8_t* pIn, int nLength, const CipherKey& key, int nDirection)
{
    return DecipherBuffer(pOut, pIn, nLength, key.nLength, reinterpret_cast<const uint8_t*>(key.pText), nDirection);
}

}  // namespace vkr
