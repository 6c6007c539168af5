#pragma once

#include <cstdint>
#include <string_view>

namespace vkr {

// The number at the front of a text, behind white space, as the scans of the C library take it: a sign, then digits up
// to the first character that is none; the rest of the text does not matter. False, nValue untouched, if there is no
// digit. Unlike those, defined for any number of digits.

// Decimal; beyond 32 bits the nearest end of the range.
bool ScanDecimal(std::string_view text, int32_t& nValue);

// Hexadecimal, "0x" in front allowed: the bit pattern of 32 bits, so FFFFFFFF is -1. A minus sign negates modulo 2^32;
// more than 32 bits give FFFFFFFF, with any sign.
bool ScanHex(std::string_view text, int32_t& nValue);

}  // namespace vkr
