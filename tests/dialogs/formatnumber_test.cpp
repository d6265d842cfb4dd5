#include "dialogs/controls/zel_formatnumber.h"

#include "tests/support/comma_locale.h"

#include <gtest/gtest.h>

#include <limits>

using namespace zel;

namespace {

template <typename T>
constexpr T greatest = std::numeric_limits<T>::max();
template <typename T>
constexpr T least = std::numeric_limits<T>::min();

TEST(FormatInteger, PrintsEveryLengthWithEveryModifier) {
    for (const char* const format : {"%d", "%hhd", "%hd", "%ld", "%lld", "%zd", "%jd", "%i"}) {
        EXPECT_EQ("255", FormatInteger(format, greatest<unsigned char>)) << format;
        EXPECT_EQ("-2147483648", FormatInteger(format, least<int>)) << format;
        EXPECT_EQ("4294967295", FormatInteger(format, greatest<unsigned int>)) << format;
        EXPECT_EQ("-9223372036854775808", FormatInteger(format, least<long>)) << format;
        EXPECT_EQ("18446744073709551615", FormatInteger(format, greatest<unsigned long long>)) << format;
    }
    EXPECT_EQ("18446744073709551615", FormatInteger("%lu", -1)) << "the two's complement in 64 bits";
    EXPECT_EQ("18446744073709551615", FormatInteger("%u", greatest<unsigned long>));
}

TEST(FormatInteger, KeepsFlagsWidthPrecisionAndText) {
    EXPECT_EQ("at   +7 of", FormatInteger("at %+4d of", 7));
    EXPECT_EQ("[7   ]", FormatInteger("[%-4d]", 7));
    EXPECT_EQ("007", FormatInteger("%.3d", 7));
    EXPECT_EQ("0x00ff", FormatInteger("%#06x", 255));
    EXPECT_EQ("FF", FormatInteger("%lX", 255));
    EXPECT_EQ(wxString::FromUTF8("5 µm"), FormatInteger(wxString::FromUTF8("%d µm"), 5));
}

TEST(FormatInteger, LeavesWhatIsNoConversionForNumbers) {
    EXPECT_EQ("50 %", FormatInteger("%d %%", 50));
    EXPECT_EQ("% 50", FormatInteger("%% %d", 50));
    EXPECT_EQ("%s 50", FormatInteger("%s %d", 50));
    EXPECT_EQ("50 %d", FormatInteger("%d %d", 50));
    EXPECT_EQ("%*d", FormatInteger("%*d", 50));
    EXPECT_EQ("100%", FormatInteger("100%", 50));
    EXPECT_EQ("%5", FormatInteger("%5", 50));
    EXPECT_EQ("plain", FormatInteger("plain", 50));
    EXPECT_EQ("", FormatInteger("", 50));
    EXPECT_EQ("plain", FormatInteger("plain", greatest<unsigned long>));
    EXPECT_EQ("plain", FormatReal("plain", 0.5));
}

TEST(FormatInteger, ConversionsOfRealsPrintAReal) {
    EXPECT_EQ("7.00", FormatInteger("%.2f", 7));
    EXPECT_EQ("1.84467e+19", FormatInteger("%g", greatest<unsigned long>)); // 2^64 - 1
}

TEST(FormatReal, PrintsRealsAndTruncatesForIntegers) {
    EXPECT_EQ("0.500000", FormatReal("%f", 0.5));
    EXPECT_EQ("0.5", FormatReal("%lg", 0.5));
    EXPECT_EQ("  1", FormatReal("%3.2g", 1.0));
    EXPECT_EQ("-2", FormatReal("%d", -2.9));
    EXPECT_EQ("9223372036854775807", FormatReal("%d", 1e30));
    EXPECT_EQ("-9223372036854775808", FormatReal("%d", -1e30));
}

TEST(FormatReal, FollowsTheLocale) {
    const CommaLocale german;
    EXPECT_EQ("0,5", FormatReal("%g", 0.5));
}

} // namespace
