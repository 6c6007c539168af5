#include <cstring>
#include <limits>
#include <string_view>

#include "foundation/log.h"
#include "parameters/filter.h"
#include "parameters/scan_number.h"

namespace vkr {

namespace {

constexpr std::string_view kSpace = " \t\n\v\f\r";
constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";

// Most characters of a word that a message shows.
int ShownLength(std::string_view word)
{
    return static_cast<int>(word.size() < 255 ? word.size() : 255);
}

// A text and how far it has been taken. What is cut off is a part of the text, nothing is copied.
class TextReader {
public:
    explicit TextReader(const char* pText) : m_text(pText) {}

    size_t Position() const { return m_nPos; }
    std::string_view TakeWhile(std::string_view set) { return TakeTo(m_text.find_first_not_of(set, m_nPos)); }
    std::string_view TakeUntil(std::string_view set) { return TakeTo(m_text.find_first_of(set, m_nPos)); }

private:
    std::string_view TakeTo(size_t nEnd)
    {
        if (nEnd == std::string_view::npos) nEnd = m_text.size();
        const std::string_view taken = m_text.substr(m_nPos, nEnd - m_nPos);
        m_nPos = nEnd;
        return taken;
    }

    std::string_view m_text;
    size_t m_nPos = 0;
};

// Two line feeds or two carriage returns; a single CR LF is one of each and goes on.
bool HasBlankLine(std::string_view separator)
{
    int nLineFeeds = 0, nReturns = 0;
    for (const char c : separator) {
        nLineFeeds += c == '\n' ? 1 : 0;
        nReturns += c == '\r' ? 1 : 0;
    }
    return nLineFeeds >= 2 || nReturns >= 2;
}

// Splits KEY=VALUE, with blanks and any number of '=' between them; what follows the number is ignored. A value that
// is no decimal number leaves nValue alone: the value of the line before, a fault of this form that files rely on.
std::string_view ScanKeyAndValue(std::string_view line, int32_t& nValue)
{
    const size_t nKeyEnd = line.find_first_of(" =");
    if (nKeyEnd == std::string_view::npos) return line;
    const size_t nValueBegin = line.find_first_not_of(" =", nKeyEnd);
    if (nValueBegin != std::string_view::npos) ScanDecimal(line.substr(nValueBegin), nValue);
    return line.substr(0, nKeyEnd);
}

ParamEntry* FindKey(ParamList& params, std::string_view key)
{
    for (ParamEntry& entry : params) {
        if (entry.sName == key) return &entry;
    }
    return nullptr;
}

// A value out of range is refused here, where the stream form clamps it.
bool StoreKey(CFilter& filter, std::string_view key, int32_t nValue)
{
    const ParamEntry* const pEntry = FindKey(filter.Params(), key);
    if (pEntry == nullptr) {
        HdrPrintf("Can not find parameter name %.*s!!!\n", ShownLength(key), key.data());
        HdrPrintf("Filter %s loading parameter fail!!!\n", filter.Name());
        return false;
    }
    if (nValue < pEntry->nMin || nValue > pEntry->nMax) {
        HdrPrintf("%s value %d is out of range [%d,%d]!!!\n", pEntry->sName.c_str(), nValue, pEntry->nMin,
                  pEntry->nMax);
        HdrPrintf("Filter %s loading parameter fail!!!\n", filter.Name());
        return false;
    }
    *pEntry->pValue = nValue;
    return true;
}

// The value lines behind the name: as many as there are parameters, or fewer up to a blank line or the end.
bool ReadBufferLines(CFilter& filter, TextReader& reader)
{
    int32_t nValue = 0;
    for (size_t i = 0; i < filter.Params().size(); ++i) {
        if (HasBlankLine(reader.TakeUntil(kLetters))) return true;
        const std::string_view key = ScanKeyAndValue(reader.TakeUntil("\r\n"), nValue);
        if (key.empty()) return true;
        if (!StoreKey(filter, key, nValue)) return false;
    }
    return true;
}

}  // namespace

bool CFilter::ReadBufferSection(const char* pText, int* pConsumed)
{
    if (pText == nullptr) return false;
    TextReader reader(pText);
    reader.TakeWhile(kSpace);
    const std::string_view word = reader.TakeUntil(kSpace);
    if (word != m_szName) {
        HdrPrintf("Filter %s find non-matched name %.*s!!!\n", m_szName, ShownLength(word), word.data());
        return false;
    }
    if (!ReadBufferLines(*this, reader)) return false;
    if (reader.Position() > static_cast<size_t>(std::numeric_limits<int>::max())) return false;
    if (pConsumed != nullptr) *pConsumed = static_cast<int>(reader.Position());
    return true;
}

bool CFilter::LoadParameterBuffer(const char* pText, int* pConsumed)
{
    return ReadBufferSection(pText, pConsumed);
}

bool CMultiFilterProcessFlow::LoadParameterBuffer(const char* pText, int* pConsumed)
{
    int nTaken = 0;
    if (!ReadBufferSection(pText, &nTaken)) return false;
    size_t nPos = static_cast<size_t>(nTaken);
    for (CFilter* pFilter : m_Filters) {
        if (!pFilter->LoadParameterBuffer(pText + nPos, &nTaken)) return false;
        nPos += static_cast<size_t>(nTaken);
    }
    if (nPos > static_cast<size_t>(std::numeric_limits<int>::max())) return false;
    if (pConsumed != nullptr) *pConsumed = static_cast<int>(nPos);
    return true;
}

}  // namespace vkr
