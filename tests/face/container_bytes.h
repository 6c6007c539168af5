#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/cipher.h"

namespace vkr {

// sFile with one word of its table changed.
inline std::string WithTableWord(std::string sFile, int nWord, int32_t nValue)
{
    for (int i = 0; i < 4; ++i) {
        sFile[68 + 4 * nWord + i] = static_cast<char>(static_cast<uint32_t>(nValue) >> (8 * i));
    }
    return sFile;
}

// A ciphered model file: header, table, the model, a second section of 24 bytes.
inline std::string ContainerBytes(const std::string& sModel)
{
    const auto Cipher = [](std::string sPlain) {
        std::vector<uint8_t> vIn(sPlain.begin(), sPlain.end()), vOut(vIn);
        const int nCiphered = static_cast<int>(vIn.size() < 20000 ? vIn.size() : 20000);
        DecipherBuffer(vOut.data(), vIn.data(), nCiphered, 13, reinterpret_cast<const uint8_t*>("KLM_QURT_7306"), 0);
        return std::string(vOut.begin(), vOut.end());
    };
    const int32_t nTable = 28, nModel = static_cast<int32_t>(sModel.size());
    std::string sFile(68 + nTable, '\0');
    const int32_t vWords[] = {3, nTable, nModel, 0, 0, nTable + nModel, 24};
    for (int i = 0; i < 7; ++i) sFile = WithTableWord(sFile, i, vWords[i]);
    return sFile + Cipher(sModel) + Cipher(std::string(24, 's'));
}

}  // namespace vkr
