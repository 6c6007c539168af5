#include "parameters/scan_number.h"

#include <cstring>
#include <limits>

namespace vkr {

namespace {

bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Digit value, or 16 for what is no digit at all.
unsigned DigitOf(char c)
{
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
    return 16;
}

// Steps over white space and a sign; true for a minus.
bool TakeSign(std::string_view& text)
{
    while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
    const bool bMinus = !text.empty() && text.front() == '-';
    if (bMinus || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    return bMinus;
}

// Digits in nBase, the value kept at most 2^32. False if there is none.
bool TakeDigits(std::string_view text, unsigned nBase, uint64_t& nMagnitude)
{
    constexpr uint64_t nTooLarge = uint64_t{1} << 32;
    nMagnitude = 0;
    size_t i = 0;
    for (; i < text.size() && DigitOf(text[i]) < nBase; ++i) {
        nMagnitude = nMagnitude * nBase + DigitOf(text[i]);
        if (nMagnitude > nTooLarge) nMagnitude = nTooLarge;
    }
    return i > 0;
}

}  // namespace

bool ScanDecimal(std::string_view text, int32_t& nValue)
{
    const bool bMinus = TakeSign(text);
    uint64_t nMagnitude = 0;
    if (!TakeDigits(text, 10, nMagnitude)) return false;
    const int64_t nSigned = bMinus ? -static_cast<int64_t>(nMagnitude) : static_cast<int64_t>(nMagnitude);
    constexpr int64_t nLow = std::numeric_limits<int32_t>::min(), nHigh = std::numeric_limits<int32_t>::max();
    nValue = static_cast<int32_t>(nSigned < nLow ? nLow : (nSigned > nHigh ? nHigh : nSigned));
    return true;
}

bool ScanHex(std::string_view text, int32_t& nValue)
{
    const bool bMinus = TakeSign(text);
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') && DigitOf(text[2]) < 16) {
        text.remove_prefix(2);
    }
    uint64_t nMagnitude = 0;
    if (!TakeDigits(text, 16, nMagnitude)) return false;
    uint32_t nBits = 0xFFFFFFFFU;
    if (nMagnitude <= nBits)
        nBits = bMinus ? 0U - static_cast<uint32_t>(nMagnitude) : static_cast<uint32_t>(nMagnitude);
    std::memcpy(&nValue, &nBits, sizeof(nValue));
    return true;
}

}  // namespace vkr
