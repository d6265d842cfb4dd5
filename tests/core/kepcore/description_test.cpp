#include "core/kepcore/kep_description.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <locale>
#include <random>

namespace {

using kep::Vector3d;
using namespace kep::detail;

TEST(OwnLines, SayWhatTheGrammarSays) {
    EXPECT_EQ(FormatOwnLines({0.1F, 2.0F, 0.0F}, {0.8F, 0.0F, -3.2F}, {{"a=b", "c=d\ne\\f"}, {"g", ""}}),
              "kep resolution=0.100000001 2 0\n"
              "kep offset=0.800000012 0 -3.20000005\n"
              "kep entry=a\\eb=c=d\\ne\\\\f\n"
              "kep entry=g=\n");
}

TEST(OwnLines, ComeBackAsTheyWere) {
    const std::map<std::string, std::string> entries{{"", "no key"},
                                                     {"key", ""},
                                                     {"a=b\\e", "\\n\n\r\n"},
                                                     {std::string("zero\0byte", 9), std::string(3, '\0')},
                                                     {"kep entry", "kep resolution=1 1 1\nkep offset=0 0 0"},
                                                     {"Größe", "10 µm = viel"}};
    const OwnLines lines =
        ParseOwnLines("ImageJ=1.11a\nunit=pixel\n" + FormatOwnLines({}, {1.0F, 2.0F, 3.0F}, entries));
    EXPECT_TRUE(lines.IsOwn());
    EXPECT_EQ(lines.entries, entries);
    EXPECT_EQ(lines.offset, Vector3d<float>(1.0F, 2.0F, 3.0F));
}

TEST(OwnLines, GiveEveryFloatBackBitForBit) {
    std::mt19937 random(11);
    for (int i = 0; i < 20000; ++i) {
        const auto bits = static_cast<std::uint32_t>(random());
        float value = 0.0F;
        std::memcpy(&value, &bits, sizeof(value));
        if (!std::isfinite(value))
            continue;
        const OwnLines lines = ParseOwnLines(FormatOwnLines({value, 0.0F, 1.0F}, {-value, value, value}, {}));
        ASSERT_TRUE(lines.IsOwn()) << value;
        ASSERT_EQ(std::memcmp(&lines.resolution->x, &value, sizeof(value)), 0) << value;
        ASSERT_EQ(lines.offset->x, -value);
    }
}

TEST(OwnLines, DamagedOnesAreLeftOut) {
    for (const char* text : {"", "kep resolution=1 2\nkep offset=1 2 3\n", "kep resolution=1 2 3 4\nkep offset=1 2 3",
                             "kep resolution=1,5 2 3\nkep offset=1 2 3", "kep resolution=1  2 3\nkep offset=1 2 3",
                             "kep resolution=\nkep offset="})
        EXPECT_FALSE(ParseOwnLines(text).IsOwn()) << text;
    EXPECT_TRUE(ParseOwnLines("kep entry=a\nkep entry=a=b\\x\nkep entry=a=b\\").entries.empty());
}

TEST(OwnLines, NumbersAreInTheClassicForm) {
    EXPECT_EQ(FormatNineDigits(0.1), "0.1");
    EXPECT_EQ(FormatNineDigits(-1234567.25), "-1234567.25");
    EXPECT_EQ(FormatNineDigits(1.0 / 3.0), "0.333333333");
    EXPECT_EQ(FormatNineDigits(2.5e-7), "2.5e-07");
}

} // namespace
