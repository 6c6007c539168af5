#include <algorithm>
#include <vector>

#include "face/model_container.h"
#include "fuzz_check.h"

// A ciphered model file: sections that are found lie inside it, and are deciphered without a read outside.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nBytes)
{
    const std::vector<uint8_t> vFile(pData, pData + nBytes);  // an overrun meets the sanitizer
    vkr::ModelContainer container;
    if (!vkr::ParseModelContainer(vFile.data(), vFile.size(), container)) return 0;
    for (const vkr::ByteRun& section : {container.model, container.second}) {
        FUZZ_CHECK(section.pData >= vFile.data() && section.nSize <= nBytes);
        FUZZ_CHECK(static_cast<size_t>(section.pData - vFile.data()) <= nBytes - section.nSize);
        vkr::HeapBuffer<uint8_t> plain;
        if (vkr::DecipherSection(section, plain)) FUZZ_CHECK(plain.Count() == section.nSize);
    }
    return 0;
}
