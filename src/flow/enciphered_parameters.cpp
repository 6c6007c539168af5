#include "flow/enciphered_parameters.h"

#include <algorithm>
#include <cstring>

#include "foundation/cipher.h"
#include "foundation/heap_buffer.h"
#include "foundation/log.h"

namespace vkr {

namespace {

constexpr char kVersionName[] = "cfg_version";
constexpr size_t kVersionTail = 128;  // the version is looked for in the last bytes only

bool DecipherText(const uint8_t* pFile, size_t nBytes, HeapBuffer<char>& text)
{
    if (nBytes < kEncipheredHead || nBytes > kEncipheredMost) return false;
    const size_t nText = nBytes - kEncipheredHead, nClear = nText % 8;
    if (!text.Allocate(nText + 1)) return false;
    const uint8_t* pIn = pFile + kEncipheredHead;
    uint8_t* pOut = reinterpret_cast<uint8_t*>(text.Data());
    if (!DecipherBuffer(pOut, pIn, static_cast<int>(nText), kParameterFileKey, 1)) return false;
    std::copy_n(pIn + nText - nClear, nClear, pOut + nText - nClear);
    pOut[nText] = 0;
    return true;
}

// The value stands behind the name and one character that separates them, and ends at ';' or at the text's end. It
// overwrites the version from its first character on and is not terminated: what is longer in the old one stays behind
// it.
void TakeConfigVersion(const char* pText, size_t nText, char (&szVersion)[65])
{
    const char* pEnd = pText + nText;
    const char* pFrom = pEnd - std::min(nText, kVersionTail);
    constexpr size_t nName = sizeof(kVersionName) - 1;
    const char* pName = std::search(pFrom, pEnd, kVersionName, kVersionName + nName);
    if (pName == pEnd) {
        HdrPrintf("not found");
        return;
    }
    const char* pValue = std::min(pName + nName + 1, pEnd);
    for (size_t i = 0; i + 1 < sizeof(szVersion) && pValue < pEnd && *pValue != ';' && *pValue != 0; ++i, ++pValue) {
        szVersion[i] = *pValue;
    }
}

}  // namespace

bool IsEnciphered(const uint8_t* pBytes, size_t nBytes)
{
    constexpr size_t nMagic = sizeof(kEncipheredMagic);
    return nBytes >= nMagic && std::memcmp(pBytes, kEncipheredMagic, nMagic) == 0;
}

EncipheredLoad LoadEncipheredParameters(const uint8_t* pFile, size_t nBytes, CMultiExposureHDRProcessFlow& engine)
{
    HeapBuffer<char> text;
    if (!DecipherText(pFile, nBytes, text)) return EncipheredLoad::kNotDeciphered;
    TakeConfigVersion(text.Data(), nBytes - kEncipheredHead, engine.m_szCfgVersion);
    return engine.LoadParameterBuffer(text.Data(), nullptr) ? EncipheredLoad::kDone : EncipheredLoad::kNotParsed;
}

}  // namespace vkr
