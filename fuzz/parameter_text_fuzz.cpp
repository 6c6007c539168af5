#include <cstring>
#include <memory>
#include <string>

#include "foundation/log.h"
#include "fuzz_check.h"
#include "kept_engine.h"

// A parameter text in one of its two forms, for the engine or one of its filters, by the first byte: from a stream or
// from memory. Whatever it says, the engine stands afterwards, and every value of a stream lies in its range; a text
// that was taken is written and taken again.

namespace {

void CheckRanges(vkr::CFilter& filter)
{
    for (const vkr::ParamEntry& entry : filter.Params()) {
        FUZZ_CHECK(*entry.pValue >= entry.nMin && *entry.pValue <= entry.nMax);
    }
}

std::string Saved(const vkr::CFilter& filter)
{
    char* pText = nullptr;
    size_t nBytes = 0;
    std::FILE* pFile = open_memstream(&pText, &nBytes);
    FUZZ_CHECK(pFile != nullptr && filter.SaveParameterStream(pFile));
    std::fclose(pFile);
    const std::string sText(pText, nBytes);
    std::free(pText);
    return sText;
}

bool LoadStream(vkr::CFilter& filter, const std::string& sText)
{
    if (sText.empty()) return false;
    std::FILE* pFile = fmemopen(const_cast<char*>(sText.data()), sText.size(), "rb");
    FUZZ_CHECK(pFile != nullptr);
    const bool bLoaded = filter.LoadParameterStream(pFile);
    std::fclose(pFile);
    return bLoaded;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nBytes)
{
    if (nBytes < 1) return 0;
    vkr::SetHdrPrintSink([](const char*) {});
    const std::string sText(reinterpret_cast<const char*>(pData + 1), nBytes - 1);
    static vkr::KeptEngine kept;
    kept.Restore();
    vkr::CFilter& filter = *kept.Filters()[pData[0] / 2 % kept.Filters().size()];
    if ((pData[0] & 1) == 0) {
        const bool bLoaded = LoadStream(filter, sText);
        for (vkr::CFilter* pFilter : kept.Filters()) CheckRanges(*pFilter);
        if (!bLoaded) return 0;
        const std::string sSaved = Saved(filter);
        kept.Restore();
        const size_t nName = sSaved.find_first_not_of('\n');  // a saved text has its name, a stream begins behind it
        FUZZ_CHECK(LoadStream(filter, sSaved.substr(sSaved.find('\n', nName) + 1)));
        FUZZ_CHECK(Saved(filter) == sSaved);
    } else {
        const std::unique_ptr<char[]> pExact(new char[sText.size() + 1]);  // an overrun meets the sanitizer
        std::memcpy(pExact.get(), sText.c_str(), sText.size() + 1);
        int nConsumed = -1;
        if (filter.LoadParameterBuffer(pExact.get(), &nConsumed)) {
            FUZZ_CHECK(nConsumed >= 0 && static_cast<size_t>(nConsumed) <= sText.size());
        }
    }
    return 0;
}
