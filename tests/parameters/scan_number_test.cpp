#include "parameters/scan_number.h"

#include <gtest/gtest.h>

namespace vkr {
namespace {

constexpr int32_t kUntouched = 77;
constexpr int32_t kLowest = -2147483647 - 1, kHighest = 2147483647;

int32_t Decimal(std::string_view text)
{
    int32_t nValue = kUntouched;
    const bool bScanned = ScanDecimal(text, nValue);
    EXPECT_EQ(bScanned, nValue != kUntouched) << text;
    return nValue;
}

int32_t Hex(std::string_view text)
{
    int32_t nValue = kUntouched;
    const bool bScanned = ScanHex(text, nValue);
    EXPECT_EQ(bScanned, nValue != kUntouched) << text;
    return nValue;
}

TEST(ScanNumber, DecimalStopsBehindTheDigits)
{
    EXPECT_EQ(Decimal(" \t\r\n\v\f12;\trange=[0,99]"), 12);
    EXPECT_EQ(Decimal("-005"), -5);
    EXPECT_EQ(Decimal("+3.9"), 3);
    EXPECT_EQ(Decimal("0x1F"), 0);
    for (const char* pText : {"", " ", "-", "+-1", "- 1", "x1", "H1F"}) EXPECT_EQ(Decimal(pText), kUntouched) << pText;
}

TEST(ScanNumber, DecimalKeepsToTheRange)
{
    EXPECT_EQ(Decimal("2147483647"), kHighest);
    EXPECT_EQ(Decimal("-2147483648"), kLowest);
    EXPECT_EQ(Decimal("2147483648"), kHighest);
    EXPECT_EQ(Decimal("-2147483649"), kLowest);
    EXPECT_EQ(Decimal("4294967297"), kHighest);
    EXPECT_EQ(Decimal("99999999999999999999"), kHighest);
    EXPECT_EQ(Decimal("-18446744073709551617"), kLowest);
}

TEST(ScanNumber, HexIsABitPattern)
{
    EXPECT_EQ(Hex("1f;"), 31);
    EXPECT_EQ(Hex(" 0X7fFFffFF"), kHighest);
    EXPECT_EQ(Hex("80000000"), kLowest);
    EXPECT_EQ(Hex("FFFFFFFE"), -2);
    EXPECT_EQ(Hex("-1F"), -31);
    EXPECT_EQ(Hex("100000000"), -1);
    EXPECT_EQ(Hex("-FFFFFFFFFFFFFFFFFFFFFFFF"), -1);
    EXPECT_EQ(Hex("0x"), 0);
    for (const char* pText : {"", "-", "x1", "g"}) EXPECT_EQ(Hex(pText), kUntouched) << pText;
}

}  // namespace
}  // namespace vkr
