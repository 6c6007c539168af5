#include <cinttypes>

#include "parameters/filter.h"

namespace vkr {

int32_t g_nParamPrintMode = 0;

namespace {

bool WriteDecimalLine(std::FILE* pFile, const ParamEntry& entry)
{
    return std::fprintf(pFile, "%s=%" PRId32 ";\trange=[%" PRId32 ",%" PRId32 "]\n", entry.sName.c_str(), *entry.pValue,
                        entry.nMin, entry.nMax) >= 0;
}

// Negative values are written as the bit pattern of 32 bits.
bool WriteHexLine(std::FILE* pFile, const ParamEntry& entry, int nDigits)
{
    return std::fprintf(pFile, "%s=H%0*" PRIX32 ";\trange=[%0*" PRIX32 ",%0*" PRIX32 "]\n", entry.sName.c_str(),
                        nDigits, static_cast<uint32_t>(*entry.pValue), nDigits, static_cast<uint32_t>(entry.nMin),
                        nDigits, static_cast<uint32_t>(entry.nMax)) >= 0;
}

bool WriteLine(std::FILE* pFile, const ParamEntry& entry)
{
    switch (g_nParamPrintMode) {
        case 0:
            return WriteDecimalLine(pFile, entry);
        case 1:
            return WriteHexLine(pFile, entry, 2);
        case 2:
            return WriteHexLine(pFile, entry, 4);
        default:
            return WriteHexLine(pFile, entry, 8);
    }
}

}  // namespace

// The blank line that closes a section is the line feed in front of the next section's name.
bool CFilter::WriteSection(std::FILE* pFile) const
{
    if (pFile == nullptr || std::fprintf(pFile, "\n%s\n", m_szName) < 0) return false;
    for (const ParamEntry& entry : m_Params) {
        if (!WriteLine(pFile, entry)) return false;
    }
    return true;
}

bool CFilter::SaveParameterStream(std::FILE* pFile) const
{
    return WriteSection(pFile);
}

bool CFilter::SaveParameterFile(const char* pPath) const
{
    std::FILE* const pFile = pPath != nullptr ? std::fopen(pPath, "wt") : nullptr;
    if (pFile == nullptr) return false;
    const bool bWritten = SaveParameterStream(pFile);
    return std::fclose(pFile) == 0 && bWritten;
}

bool CMultiFilterProcessFlow::SaveParameterStream(std::FILE* pFile) const
{
    if (!WriteSection(pFile)) return false;
    for (const CFilter* pFilter : m_Filters) {
        if (!pFilter->SaveParameterStream(pFile)) return false;
    }
    return true;
}

}  // namespace vkr
