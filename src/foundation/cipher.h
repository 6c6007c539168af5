#pragma once

#include <cstdint>

namespace vkr {

// One key per kind of file; of a longer key only the first eight characters act.
struct CipherKey {
    const char* pText;
    int nLength;
};
constexpr CipherKey kParameterFileKey{"ZQRTMNWXP", 9};
constexpr CipherKey kModelFileKey{"KLM_QURT_7306", 13};

// Blocks of eight bytes, each by itself: deciphers, or enciphers where nDirection is 0. The cipher has the constants of
// FIPS 46, but bits count from the least significant one, so do those of an S-box, and the halves are not exchanged at
// the end: files of other programs can not be read. No integrity check: a wrong key gives garbage.
//
//   pOut, pIn    may be the same; only the whole blocks of nLength are touched, the caller copies what is left
//   pKey         nKeyLength bytes; at most eight act, a shorter key is continued with zero bytes
//
// 1, or 0 when pOut, pIn or pKey is null or nLength is below 8. Safe from any thread.
int DecipherBuffer(uint8_t* pOut, const uint8_t* pIn, int nLength, int nKeyLength, const uint8_t* pKey, int nDirection);

// The same with a key of the table above.
int DecipherBuffer(uint8_t* pOut, const uint8_t* pIn, int nLength, const CipherKey& key, int nDirection);

}  // namespace vkr
