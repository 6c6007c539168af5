#include <algorithm>
#include <cstring>

#include "foundation/fixed_point.h"
#include "foundation/log.h"
#include "parameters/filter.h"
#include "parameters/scan_number.h"

namespace vkr {

namespace {

constexpr int kLongestWord = 1 << 20;  // a word that is longer, as a device without end has it, ends there
constexpr int kLineBytes = 256;        // a line is taken in pieces of at most 255 characters

// Room for one character more than a filter's name may have, so that a word cut here equals no name.
using Word = char[sizeof(CFilter::m_szName) + 1];

// Blank, tab and the line ends, whatever the host's locale says.
bool IsSpace(int c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Takes the next character that is no white space; EOF at the end.
int SkipSpace(std::FILE* pFile)
{
    int c = std::fgetc(pFile);
    while (IsSpace(c)) c = std::fgetc(pFile);
    return c;
}

// Reads one word and the white space on both its sides, blank lines too. False at the end of the file.
bool ReadWord(std::FILE* pFile, Word& szWord)
{
    int nLength = 0;
    int c = SkipSpace(pFile);
    if (c == EOF) return false;
    for (; c != EOF && !IsSpace(c) && nLength < kLongestWord; c = std::fgetc(pFile), ++nLength) {
        if (nLength + 1 < static_cast<int>(sizeof(Word))) szWord[nLength] = static_cast<char>(c);
    }
    szWord[std::min(nLength, static_cast<int>(sizeof(Word)) - 1)] = '\0';
    if (c != EOF) c = SkipSpace(pFile);
    if (c != EOF) std::ungetc(c, pFile);
    return true;
}

// Reads the next line. At the end of the file the previous one stays in szLine and is taken once more; with none before
// it the read fails.
bool NextLine(std::FILE* pFile, char (&szLine)[kLineBytes])
{
    if (std::fgets(szLine, kLineBytes, pFile) == nullptr && std::ferror(pFile) != 0) return false;
    return szLine[0] != '\0';
}

bool ScanValue(const char* pText, int32_t& nValue)
{
    return *pText == 'H' || *pText == 'h' ? ScanHex(pText + 1, nValue) : ScanDecimal(pText, nValue);
}

// Stores the value of one line NAME=VALUE; szLine keeps its contents.
bool StoreStreamLine(ParamList& params, const char (&szLine)[kLineBytes])
{
    const char* const pEquals = std::strchr(szLine, '=');
    int32_t nValue = 0;
    if (pEquals == nullptr || !ScanValue(pEquals + 1, nValue)) return false;
    char szName[kLineBytes] = {};
    std::memcpy(szName, szLine, static_cast<size_t>(pEquals - szLine));
    const ParamEntry* const pEntry = FindParameter(params, szName);
    if (pEntry == nullptr) {
        HdrPrintf("Unknown Parameter %s!!!\n", szName);
        return false;
    }
    if (nValue < pEntry->nMin || nValue > pEntry->nMax) {
        HdrPrintf("%s value %d is out of range [%d,%d]!!!\n", szName, nValue, pEntry->nMin, pEntry->nMax);
        nValue = Clamp(nValue, pEntry->nMin, pEntry->nMax);
    }
    *pEntry->pValue = nValue;
    return true;
}

CFilter* FindFilter(const FilterList& filters, const char* pName)
{
    for (CFilter* pFilter : filters) {
        if (std::strcmp(pFilter->m_szName, pName) == 0) return pFilter;
    }
    return nullptr;
}

}  // namespace

// As many lines as there are parameters, in any order; a name may come twice.
bool CFilter::ReadStreamLines(std::FILE* pFile)
{
    if (pFile == nullptr) return false;
    char szLine[kLineBytes] = {};
    for (size_t i = 0; i < m_Params.size(); ++i) {
        if (!NextLine(pFile, szLine) || !StoreStreamLine(m_Params, szLine)) return false;
    }
    return true;
}

bool CFilter::LoadParameterStream(std::FILE* pFile)
{
    if (!ReadStreamLines(pFile)) return false;
    UpdateParameter();
    return true;
}

bool CFilter::LoadParameterFile(const char* pPath)
{
    std::FILE* const pFile = pPath != nullptr ? std::fopen(pPath, "rt") : nullptr;
    if (pFile == nullptr) return false;
    Word szWord;
    bool bLoaded = ReadWord(pFile, szWord);
    if (bLoaded && std::strcmp(szWord, m_szName) != 0) {
        HdrPrintf("Can not match filter name %s!!!\n", szWord);
        bLoaded = false;
    }
    bLoaded = bLoaded && LoadParameterStream(pFile);
    std::fclose(pFile);
    return bLoaded;
}

// UpdateParameter is not called for the owner itself, only for the sub-filters that are loaded.
bool CMultiFilterProcessFlow::LoadParameterStream(std::FILE* pFile)
{
    if (!ReadStreamLines(pFile)) return false;
    for (size_t i = 0; i < m_Filters.size(); ++i) {
        Word szWord;
        if (!ReadWord(pFile, szWord)) return false;
        CFilter* const pFilter = FindFilter(m_Filters, szWord);
        if (pFilter == nullptr) {
            HdrPrintf("Can not find filter name %s!!!\n", szWord);
            return false;
        }
        if (!pFilter->LoadParameterStream(pFile)) return false;
    }
    return true;
}

}  // namespace vkr
