#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

#include "flow/enciphered_parameters.h"
#include "foundation/cipher.h"
#include "foundation/log.h"
#include "fuzz_check.h"
#include "kept_engine.h"

// A whole enciphered file, by the first byte as it is or with the rest as the text that is enciphered first, so that
// what lies behind the cipher is reached too. The configuration version keeps its last zero, whatever stands in the
// text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nBytes)
{
    if (nBytes < 1) return 0;
    vkr::SetHdrPrintSink([](const char*) {});
    std::vector<uint8_t> vFile(pData + 1, pData + nBytes);
    if ((pData[0] & 1) == 0) {
        vFile.insert(vFile.begin(), vkr::kEncipheredHead, 0);
        std::copy_n(vkr::kEncipheredMagic, sizeof(vkr::kEncipheredMagic), vFile.begin());
        uint8_t* pText = vFile.data() + vkr::kEncipheredHead;
        vkr::DecipherBuffer(pText, pText, static_cast<int>(nBytes - 1), vkr::kParameterFileKey, 0);
    }
    static vkr::KeptEngine kept;
    kept.Restore();
    vkr::CMultiExposureHDRProcessFlowOpt& engine = kept.Engine();
    std::fill(std::begin(engine.m_szCfgVersion), std::end(engine.m_szCfgVersion), '\0');
    const bool bFits = vFile.size() >= vkr::kEncipheredHead + 8 && vFile.size() <= vkr::kEncipheredMost;
    const vkr::EncipheredLoad load = vkr::LoadEncipheredParameters(vFile.data(), vFile.size(), engine);
    FUZZ_CHECK(bFits == (load != vkr::EncipheredLoad::kNotDeciphered));
    FUZZ_CHECK(std::strlen(engine.GetConfigVersion()) <= 64);
    return 0;
}
