#include "image/zel_stringfile.h"
#include "image/zel_voxeltext.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

using namespace zel;

namespace {

template <typename T>
using RGB = kep::RGB_generic<T>;

TEST(VoxelToStr, PrintsGrayAndColour) {
    EXPECT_EQ("200", VoxelToStr(static_cast<unsigned char>(200)));
    EXPECT_EQ("65535", VoxelToStr(static_cast<unsigned short>(65535)));
    EXPECT_EQ("-12", VoxelToStr(-12));
    EXPECT_EQ("0.25", VoxelToStr(0.25F));
    EXPECT_EQ("1e+10", VoxelToStr(1e10F));
    EXPECT_EQ("  1  20 255", VoxelToStr(RGB<unsigned char>(1, 20, 255)));
    EXPECT_EQ("  1 4095 65535", VoxelToStr(RGB<unsigned short>(1, 4095, 65535)));
}

TEST(VoxelToStr, AddsWhatTheDisplayOfComplexVoxelsLeavesOut) {
    const std::complex<float> voxel(-3.0F, 4.0F); // amplitude 5, phase pi - atan(4 / 3) = 3.1415927 - 0.9272952
    EXPECT_EQ("-3.000000 + 4.000000i\nPhase: 2.214297 rad", VoxelToStr(voxel, 2));
    EXPECT_EQ("-3.000000 + 4.000000i\nAmplitude: 5.000000", VoxelToStr(voxel, 3));
    for (const int mode : {-1, 0, 1, 4})
        EXPECT_EQ("-3.000000 + 4.000000i\n ", VoxelToStr(voxel, mode)) << mode;
    EXPECT_EQ("0.500000 + -1.000000i\n ", VoxelToStr(std::complex<double>(0.5, -1.0), 0));
}

std::string Saved(wxString s, bool addBlank) {
    std::ostringstream out;
    SavewxString(s, out, addBlank);
    return out.str();
}

/// The string that is loaded, and what the stream still holds.
std::pair<wxString, std::string> Loaded(const std::string& bytes) {
    std::istringstream in(bytes);
    wxString s = "what stood there";
    LoadwxString(s, in);
    in.clear();
    return {s, std::string(std::istreambuf_iterator<char>(in), {})};
}

using Pair = std::pair<wxString, std::string>;

TEST(StringFile, QuotesWhatHoldsABlank) {
    EXPECT_EQ("\"a b\"", Saved("a b", false));
    EXPECT_EQ("ab ", Saved("ab", true));
    EXPECT_EQ("\" \" ", Saved(" ", true));
    EXPECT_EQ("a\tb", Saved("a\tb", false));
    EXPECT_EQ("a\"b", Saved("a\"b", false));
    EXPECT_EQ("", Saved("", false));
    EXPECT_EQ(" ", Saved("", true));
}

TEST(StringFile, ReadsUpToTheDelimiter) {
    EXPECT_EQ(Pair("a b", ""), Loaded("\"a b\""));
    EXPECT_EQ(Pair("one", "two"), Loaded("one two"));
    EXPECT_EQ(Pair("one", "two"), Loaded(" \t\n one\ttwo"));
    EXPECT_EQ(Pair("a\tb", " c"), Loaded("\"a\tb\" c"));
    EXPECT_EQ(Pair("a\"b", "c"), Loaded("a\"b c")) << "a quote inside is plain";
    EXPECT_EQ(Pair("one", "\ntwo"), Loaded("one\ntwo")) << "the line's end stays";
    EXPECT_EQ(Pair("a b", "\nc\""), Loaded("\"a b\nc\"")) << "even between quotes";
    EXPECT_EQ(Pair("", "x"), Loaded("\"\"x"));
    EXPECT_EQ(Pair("", ""), Loaded(""));
    EXPECT_EQ(Pair("", ""), Loaded(" \n "));
}

TEST(StringFile, ReadsUtf8OrElseLatin1) {
    const wxString cafe = wxString::FromUTF8("caf\xC3\xA9");
    EXPECT_EQ("caf\xC3\xA9", Saved(cafe, false));
    EXPECT_EQ(Pair(cafe, ""), Loaded("caf\xC3\xA9"));
    EXPECT_EQ(Pair(cafe, ""), Loaded("caf\xE9"));
}

TEST(StringFile, GivesBackWhatWasSaved) {
    std::stringstream file;
    wxString first = "two words";
    wxString second = "one";
    SavewxString(first, file, true);
    SavewxString(second, file, true);
    wxString s;
    LoadwxString(s, file);
    EXPECT_EQ("two words", s);
    LoadwxString(s, file);
    EXPECT_EQ("one", s);
}

} // namespace
