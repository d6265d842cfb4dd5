#include "core/kepcore/convert/kep_description.h"

#include "core/kepcore/convert/kep_number.h"

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

/// Room in which an entry takes the bytes of its key and value.
DescriptionRoom MakeRoom(std::size_t bytes, std::size_t longestValue = 1000) {
    return {"a file", bytes, longestValue,
            [](const std::string& key, std::string_view value) { return key.size() + value.size(); }};
}

using Entries = std::map<std::string, std::string>;

TEST(FittedDescriptions, ThatHaveRoomAreWhole) {
    const Entries entries{{"a", "12345"}, {"b", ""}, {"c", "123"}};
    const FittedDescription fitted = FitDescription(entries, MakeRoom(11)); // 6 + 1 + 4
    EXPECT_EQ(fitted.entries, entries);
    EXPECT_EQ(fitted.notice, "");
    EXPECT_EQ(FitDescription({}, MakeRoom(0)).notice, "");
}

TEST(FittedDescriptions, LoseTheEndOfTheLongest) {
    const FittedDescription fitted = FitDescription({{"a", "12345"}, {"b", "123"}, {"c", "1"}}, MakeRoom(10));
    EXPECT_EQ(fitted.entries, (Entries{{"a", "123"}, {"b", "123"}, {"c", "1"}})); // 4 + 4 + 2
    EXPECT_EQ(fitted.notice, "The description does not fit into a file: cut off: 'a' (3 of 5 bytes).");
}

TEST(FittedDescriptions, LoseTheLongestWhereThereIsNoRoomToCutThem) {
    const FittedDescription fitted =
        FitDescription({{"a", "123456"}, {"b", "12345"}, {"c", "1234"}, {"d", "123"}}, MakeRoom(11));
    EXPECT_EQ(fitted.entries, (Entries{{"b", "1"}, {"c", "1234"}, {"d", "123"}})); // 4 + 5, and 2 are left
    EXPECT_EQ(fitted.notice, "The description does not fit into a file: cut off: 'b' (1 of 5 bytes); left out: 'a'.");
}

TEST(FittedDescriptions, LoseKeysThatAreTooLong) {
    const FittedDescription fitted = FitDescription({{std::string(100, 'k'), "1"}, {"a", "1234567"}}, MakeRoom(50));
    EXPECT_EQ(fitted.entries, (Entries{{"a", "1234567"}}));
    EXPECT_EQ(fitted.notice, "The description does not fit into a file: left out: '" + std::string(60, 'k') + "...'.");
}

TEST(FittedDescriptions, AreCutBetweenCharacters) {
    const std::string micro = "12\xC2\xB5m"; // the sign has two bytes
    EXPECT_EQ(FitDescription({{"a", micro}}, MakeRoom(4)).entries, (Entries{{"a", "12"}}));
    EXPECT_EQ(FitDescription({{"a", micro}}, MakeRoom(5)).entries, (Entries{{"a", "12\xC2\xB5"}}));
    const std::string noUtf8(10, '\xB5');
    EXPECT_EQ(FitDescription({{"a", noUtf8}}, MakeRoom(9)).entries, (Entries{{"a", noUtf8.substr(0, 8)}}));
}

TEST(FittedDescriptions, HaveNoValueBeyondTheLongest) {
    const FittedDescription fitted =
        FitDescription({{"a", "1234"}, {"b", "12345"}, {"\xB5", "123456"}}, MakeRoom(99, 4));
    EXPECT_EQ(fitted.entries, (Entries{{"a", "1234"}, {"b", "1234"}, {"\xB5", "1234"}}));
    EXPECT_EQ(fitted.notice,
              "The description does not fit into a file: cut off: 'b' (4 of 5 bytes) and '?' (4 of 6 bytes).");
}

TEST(FittedDescriptions, NameTheFirstOfManyLosses) {
    Entries entries;
    for (const char c : std::string("abcdefg"))
        entries[std::string(1, c)] = "1234";
    EXPECT_EQ(FitDescription(entries, MakeRoom(10)).notice,
              "The description does not fit into a file: left out: 'c', 'd', 'e' and 2 more.");
}

TEST(OwnLines, TakeAsManyBytesAsIsTold) {
    const std::string fixed = FormatOwnLines({}, {}, {});
    for (const auto& [key, value] : Entries{{"", ""}, {"a=b", "c=d\ne\\f"}, {"g", std::string(3, '\0')}})
        EXPECT_EQ(FormatOwnLines({}, {}, {{key, value}}).size(), fixed.size() + GetOwnLineBytes(key, value));
}

} // namespace
