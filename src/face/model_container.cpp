#include "face/model_container.h"

#include <algorithm>
#include <cstring>

#include "foundation/cipher.h"

namespace vkr {

namespace {

constexpr size_t kHeaderBytes = 68, kTableWords = 7, kTableBytes = 4 * kTableWords;
constexpr size_t kCipheredBytes = 20000;
constexpr char kModelKey[] = "KLM_QURT_7306";

int32_t TableWord(const uint8_t* pBody, size_t nWord)
{
    const uint8_t* p = pBody + 4 * nWord;
    return static_cast<int32_t>(p[0] | p[1] << 8 | p[2] << 16 | static_cast<uint32_t>(p[3]) << 24);
}

// The section whose offset stands in word nWord and whose size behind it; false when it is not inside the body.
bool FindSection(const ByteRun& body, size_t nWord, ByteRun& section)
{
    const int32_t nOffset = TableWord(body.pData, nWord), nSize = TableWord(body.pData, nWord + 1);
    if (nOffset < 0 || nSize < 0) return false;
    const size_t nBegin = static_cast<size_t>(nOffset), nBytes = static_cast<size_t>(nSize);
    if (nBegin < kTableBytes || nBegin > body.nSize || nBytes > body.nSize - nBegin) return false;
    section = {body.pData + nBegin, nBytes};
    return true;
}

bool Apart(const ByteRun& a, const ByteRun& b)
{
    return a.pData + a.nSize <= b.pData || b.pData + b.nSize <= a.pData;
}

}  // namespace

bool ParseModelContainer(const uint8_t* pFile, size_t nSize, ModelContainer& container)
{
    if (pFile == nullptr || nSize < kHeaderBytes + kTableBytes) return false;
    const ByteRun body{pFile + kHeaderBytes, nSize - kHeaderBytes};
    if (TableWord(body.pData, 0) <= 2) return false;
    return FindSection(body, 1, container.model) && FindSection(body, 5, container.second) &&
           Apart(container.model, container.second);
}

bool DecipherSection(const ByteRun& section, HeapBuffer<uint8_t>& plain)
{
    if (!plain.AllocateZero(section.nSize)) return false;
    const size_t nCiphered = std::min(section.nSize, kCipheredBytes);
    if (!DecipherBuffer(plain.Data(), section.pData, static_cast<int>(nCiphered), sizeof(kModelKey) - 1,
                        reinterpret_cast<const uint8_t*>(kModelKey), 1)) {
        return false;
    }
    if (section.nSize > nCiphered) {
        std::memcpy(plain.Data() + nCiphered, section.pData + nCiphered, section.nSize - nCiphered);
    }
    return true;
}

}  // namespace vkr
