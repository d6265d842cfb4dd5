#include "core/kepcore/tiff/kep_tiffmeta.h"

#include "core/kepcore/convert/kep_description.h"
#include "tests/support/comma_locale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace {

using namespace kep::detail;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::Pair;

TiffDescription Parse(const std::string& text) {
    return ParseTiffDescription(text, "file.tif");
}

TiffScaleTags Scale(double perUnit, int unit) {
    TiffScaleTags tags;
    tags.xResolution = tags.yResolution = perUnit;
    tags.unit = unit;
    return tags;
}

kep::Vector3d<float> GetRes(const TiffScaleTags& tags, const std::string& text, std::size_t slices) {
    return FindTiffPlace(tags, Parse(text), slices).resolution.GetRes();
}

using V = kep::Vector3d<float>;
constexpr int inch = 2;
constexpr int cm = 3;

TEST(TiffUnits, LengthsWhateverTheirCase) {
    for (const char* micron : {"um", "micron", "Microns", "MICROMETER", "micrometers", "\xC2\xB5m", "\xCE\xBCm",
                               "\xB5m", "\\u00B5m", "\\u00b5m", " um "})
        EXPECT_THAT(GetMicronsOfUnit(micron), Optional(1.0)) << micron;
    EXPECT_THAT(GetMicronsOfUnit("nm"), Optional(0.001));
    EXPECT_THAT(GetMicronsOfUnit("nanometers"), Optional(0.001));
    EXPECT_THAT(GetMicronsOfUnit("mm"), Optional(1000.0));
    EXPECT_THAT(GetMicronsOfUnit("millimeter"), Optional(1000.0));
    EXPECT_THAT(GetMicronsOfUnit("cm"), Optional(10000.0));
    EXPECT_THAT(GetMicronsOfUnit("M"), Optional(1e6));
    EXPECT_THAT(GetMicronsOfUnit("meters"), Optional(1e6));
    EXPECT_THAT(GetMicronsOfUnit("Inch"), Optional(25400.0));
}

TEST(TiffUnits, EverythingElseIsNone) {
    for (const char* unit : {"", "pixel", "pixels", "undefined", "sec", "u", "umm", "\xB5"})
        EXPECT_EQ(GetMicronsOfUnit(unit), std::nullopt) << unit;
}

TEST(TiffScale, PixelsPerCentimeterAndInch) {
    // 20,000 pixels per cm = 2 per micron; 50,800 per inch of 25,400 microns = 2.
    EXPECT_TRUE(GetRes(Scale(20000, cm), "", 1) == V(2, 2, 2));
    EXPECT_TRUE(GetRes(Scale(50800, inch), "", 1) == V(2, 2, 2));
}

TEST(TiffScale, ZIsXInAFlatPictureAndUnknownInAStack) {
    EXPECT_TRUE(GetRes(Scale(20000, cm), "", 1) == V(2, 2, 2));
    EXPECT_TRUE(GetRes(Scale(20000, cm), "", 5) == V(2, 2, 0));
    EXPECT_TRUE(GetRes(Scale(2, 1), "ImageJ=1.53c\nunit=um\nspacing=0.25\n", 1) == V(2, 2, 4));
}

TEST(TiffScale, WholePixelsPerInchAreForPrinters) {
    for (const double dpi : {1.0, 72.0, 96.0, 300.0, 1200.0})
        EXPECT_TRUE(GetRes(Scale(dpi, inch), "", 1) == V()) << dpi;
    // 118.11 per cm are 299.9994 per inch: 300 that went through a conversion.
    EXPECT_TRUE(GetRes(Scale(118.11, cm), "", 1) == V());
    // Neither whole, nor as coarse as printers are, nor in both directions.
    EXPECT_FLOAT_EQ(GetRes(Scale(72.5, inch), "", 1).x, static_cast<float>(72.5 / 25400));
    EXPECT_FLOAT_EQ(GetRes(Scale(1201, inch), "", 1).x, static_cast<float>(1201 / 25400.0));
    TiffScaleTags uneven = Scale(72, inch);
    uneven.yResolution = 72.25;
    EXPECT_FLOAT_EQ(GetRes(uneven, "", 1).x, static_cast<float>(72 / 25400.0));
    // An ImageJ-style description says that somebody meant it.
    EXPECT_FLOAT_EQ(GetRes(Scale(72, inch), "ImageJ=1.53c\n", 1).x, static_cast<float>(72 / 25400.0));
    EXPECT_FLOAT_EQ(GetRes(Scale(72, inch), "A picture of ImageJ=1.53c\n", 1).x, 0.0F);
}

TEST(TiffScale, WithoutAUnitOrNumbersThereIsNone) {
    EXPECT_TRUE(GetRes(Scale(20000, 1), "", 1) == V());
    EXPECT_TRUE(GetRes(Scale(20000, 0), "", 1) == V());
    EXPECT_TRUE(GetRes(Scale(0, cm), "", 1) == V());
    EXPECT_TRUE(GetRes(Scale(-5, cm), "", 1) == V());
    EXPECT_TRUE(GetRes(TiffScaleTags{}, "", 1) == V());
    EXPECT_TRUE(GetRes(Scale(2, cm), "ImageJ=1.53c\nunit=pixel\nspacing=3\n", 4) == V());
    EXPECT_TRUE(GetRes(Scale(1e300, cm), "", 1) == V());
}

TEST(TiffScale, TheDescriptionsUnitReplacesTheTags) {
    // 0.01 pixels per nm = 10 per micron; a spacing of 250 nm = 4 per micron.
    EXPECT_TRUE(GetRes(Scale(0.01, inch), "ImageJ=1.51n\nunit=nm\nspacing=250.0\n", 8) == V(10, 10, 4));
    // 2 per mm = 0.002 per micron.
    EXPECT_TRUE(GetRes(Scale(2, 1), "ImageJ=1.52n\nunit=millimeter\nspacing=0\n", 27) == V(0.002F, 0.002F, 0));
}

TEST(TiffScale, OriginsArePixelsBeforeTheFirst) {
    // x: -(-10) / 2 = 5 microns; y: -4 / 2 = -2; z: -8 / 4 = -2.
    const auto place = FindTiffPlace(
        Scale(2, 1), Parse("ImageJ=1.53c\nunit=um\nspacing=0.25\nxorigin=-10\nyorigin=4\nzorigin=8.0\n"), 3);
    EXPECT_TRUE(place.offset == V(5, -2, -2));
    // Without a spacing z is measured as x, as everywhere.
    const auto flat = FindTiffPlace(Scale(2, 1), Parse("ImageJ=1.53c\nunit=um\nzorigin=8\n"), 3);
    EXPECT_TRUE(flat.resolution.GetRes() == V(2, 2, 0));
    EXPECT_TRUE(flat.offset == V(0, 0, -4));
    EXPECT_FALSE(std::signbit(flat.offset.x));
    // Without any unit there is no place.
    EXPECT_TRUE(FindTiffPlace(Scale(2, 1), Parse("ImageJ=1.53c\nxorigin=5\n"), 3).offset == V());
}

TEST(TiffScale, PositionTagsStandWhereThereIsNoOrigin) {
    TiffScaleTags tags = Scale(20000, cm);
    tags.xPosition = 0.5; // cm: 5,000 microns
    tags.yPosition = 0.25;
    EXPECT_TRUE(FindTiffPlace(tags, Parse(""), 1).offset == V(5000, 2500, 0));
    EXPECT_TRUE(FindTiffPlace(tags, Parse("ImageJ=1.53c\nunit=cm\nyorigin=20000\n"), 1).offset == V(0, -10000, 0));
    // For a printer: the margin of a sheet of paper.
    tags.xResolution = tags.yResolution = 72;
    tags.unit = inch;
    EXPECT_TRUE(FindTiffPlace(tags, Parse(""), 1).offset == V());
}

TEST(TiffScale, ExactCopiesCountWhereTheyAgree) {
    TiffScaleTags tags = Scale(15.5039, 1);
    const std::string head = "ImageJ=1.11a\nimages=3\nslices=3\nunit=micrometers\nspacing=0.2\nxorigin=-12.4031008\n";
    const auto exact = FindTiffPlace(
        tags, Parse(head + "kep resolution=15.5038757 15.5038757 5.00000048\nkep offset=0.799999952 0 0\n"), 3);
    EXPECT_TRUE(exact.resolution.GetRes() == V(15.5038757F, 15.5038757F, 5.00000048F));
    EXPECT_TRUE(exact.offset == V(0.799999952F, 0, 0)); // 12.4031008 / 15.5038757 = 0.8000000
    // Another program wrote another spacing and left the rest: x and y still agree, z is the new one.
    const auto edited =
        FindTiffPlace(tags, Parse(head + "kep resolution=15.5038757 15.5038757 6\nkep offset=0.9 0 0\n"), 3);
    EXPECT_TRUE(edited.resolution.GetRes() == V(15.5038757F, 15.5038757F, 5));
    EXPECT_NEAR(edited.offset.x, 0.8F, 1e-6F);
}

TEST(TiffScale, AnExactCopySaysThatZIsUnknownInAFlatPicture) {
    EXPECT_TRUE(GetRes(Scale(2, 1), "ImageJ=1.11a\nunit=um\nkep resolution=2 2 0\n", 1) == V(2, 2, 0));
    EXPECT_TRUE(GetRes(Scale(2, 1), "ImageJ=1.11a\nunit=um\nkep resolution=2 2 5\n", 1) == V(2, 2, 2));
}

TEST(TiffDescriptions, ImageJNamesItsPages) {
    const TiffDescription stack = Parse("ImageJ=1.53f\nimages=34\nchannels=2\nslices=17\nhyperstack=true\n");
    EXPECT_EQ(stack.style, DescriptionStyle::ImageJ);
    EXPECT_EQ(stack.slices, 17U);
    EXPECT_EQ(stack.channels, 2U);
    EXPECT_EQ(stack.times, 1U);
    EXPECT_TRUE(stack.channelsTogether);
    EXPECT_EQ(Parse("ImageJ=1.53f\nimages=5\nframes=5\n").times, 5U);
    EXPECT_EQ(Parse("ImageJ=1.53f\r\nimages=10\r\n").slices, 10U);
    EXPECT_EQ(Parse("ImageJ=1.40g\nimages=5\nchannels=5\n").slices, 1U);
    EXPECT_EQ(Parse("ImageJ=1.53f\nimages=0\nslices=-3\nchannels=x\n").slices, 0U);
    EXPECT_EQ(Parse("images=10\n").slices, 0U); // not ImageJ's
}

TEST(TiffDescriptions, OwnLinesStayOutOfTheFramesDescription) {
    const TiffDescription own = Parse("ImageJ=1.11a\nimages=1\nkep resolution=1 1 1\nkep offset=0 0 0\n"
                                      "kep entry=stain=DAPI\n");
    EXPECT_THAT(own.entries, ElementsAre(Pair("stain", "DAPI")));
    // What another program made of it: its own words are kept.
    const TiffDescription other = Parse("ImageJ=1.53c\nkep resolution=1 1 1\nkep up=the good work\n");
    EXPECT_THAT(other.entries, ElementsAre(Pair("ImageDescription", "ImageJ=1.53c\nkep up=the good work\n")));
    EXPECT_THAT(Parse("").entries, IsEmpty());
}

TEST(TiffDescriptions, WordsBecomeUtf8) {
    EXPECT_EQ(ToUtf8("0.1 \xB5m"), "0.1 \xC2\xB5m");
    EXPECT_EQ(ToUtf8("0.1 \xC2\xB5m"), "0.1 \xC2\xB5m");
    EXPECT_EQ(ToUtf8("\xF0\x9F\x94\xAC"), "\xF0\x9F\x94\xAC");
    EXPECT_EQ(ToUtf8("\xC3"), "\xC3\x83"); // cut off: taken for one letter of Latin-1
    EXPECT_EQ(ToUtf8("\xC0\x80"), "\xC3\x80\xC2\x80");
    // Longer than it need be, half of a pair, beyond the last character.
    EXPECT_EQ(ToUtf8("\xE0\x80\x80"), "\xC3\xA0\xC2\x80\xC2\x80");
    EXPECT_EQ(ToUtf8("\xED\xA0\x80"), "\xC3\xAD\xC2\xA0\xC2\x80");
    EXPECT_EQ(ToUtf8("\xF4\x90\x80\x80"), "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80");
    EXPECT_THAT(Parse("kep entry=Gr\xF6\xDF"
                      "e=\xB5\n")
                    .entries,
                ElementsAre(Pair("Größe", "µ")));
}

/// OME-XML of one image with these attributes and children of its pixels.
std::string Ome(const std::string& attributes, const std::string& children = "") {
    return "<?xml version=\"1.0\"?><OME UUID=\"urn:uuid:own\"><Image ID=\"Image:0\"><Pixels " + attributes + ">" +
           children + "</Pixels></Image></OME>";
}

TEST(TiffOme, SizesCountWhereNothingSaysWhereThePlanesAre) {
    const auto d = Parse(Ome("DimensionOrder=\"XYCZT\" SizeZ=\"7\" SizeC=\"3\" SizeT=\"2\""));
    EXPECT_EQ(d.style, DescriptionStyle::Ome);
    EXPECT_EQ(d.slices, 7U);
    EXPECT_EQ(d.channels, 3U);
    EXPECT_EQ(d.times, 2U);
    EXPECT_TRUE(d.channelsTogether);
    EXPECT_FALSE(Parse(Ome("DimensionOrder=\"XYZCT\"")).channelsTogether);
}

TEST(TiffOme, ColourComponentsAreNoChannels) {
    const auto d = Parse(Ome("SizeC=\"3\"", "<Channel SamplesPerPixel=\"3\"/>"));
    EXPECT_EQ(d.channels, 1U);
}

TEST(TiffOme, PixelSizesInAllUnits) {
    const auto d = Parse(Ome("PhysicalSizeX=\"250\" PhysicalSizeXUnit=\"nm\" PhysicalSizeY=\"0.5\" "
                             "PhysicalSizeZ=\"0.002\" PhysicalSizeZUnit=\"mm\""));
    const auto place = FindTiffPlace(Scale(72, inch), d, 3);
    EXPECT_TRUE(place.resolution.GetRes() == V(4, 2, 0.5F));
    // A size in pixels is none; the tags stand in.
    const auto pixel = Parse(Ome("PhysicalSizeX=\"1\" PhysicalSizeXUnit=\"pixel\""));
    EXPECT_TRUE(FindTiffPlace(Scale(20000, cm), pixel, 1).resolution.GetRes() == V(2, 2, 2));
}

/// Two planes of a series of three files, with one time each.
std::string Series(const std::string& root) {
    const auto plane = [](int t, int z, const std::string& id, const std::string& name) {
        std::ostringstream xml;
        xml << "<TiffData FirstT='" << t << "' FirstZ='" << z << "' IFD='" << z << "' PlaneCount='1'>"
            << "<UUID FileName='" << name << "'>" << id << "</UUID></TiffData>";
        return xml.str();
    };
    std::string planes;
    for (int t = 0; t < 3; ++t)
        for (int z = 0; z < 2; ++z)
            planes += plane(t, z, t == 1 ? "urn:uuid:own" : "urn:uuid:other", "t" + std::to_string(t) + ".tif");
    return "<OME " + root + "><Image><Pixels DimensionOrder=\"XYZCT\" SizeZ=\"2\" SizeC=\"1\" SizeT=\"3\">" + planes +
           "</Pixels></Image></OME>";
}

TEST(TiffOme, AFileOfASeriesHoldsItsOwnPlanes) {
    const auto renamed = ParseTiffDescription(Series("UUID=\"urn:uuid:own\""), "renamed.tif");
    EXPECT_EQ(renamed.times, 1U);
    EXPECT_EQ(renamed.slices, 2U);
    EXPECT_EQ(renamed.images, 1U);
    const auto byName = ParseTiffDescription(Series(""), "t2.tif");
    EXPECT_EQ(byName.times, 1U);
    EXPECT_EQ(byName.slices, 2U);
    // Neither name nor identifier fits: all is taken to be meant.
    EXPECT_EQ(ParseTiffDescription(Series(""), "renamed.tif").times, 3U);
}

TEST(TiffOme, RunsOfPlanesFollowTheOrderOfDimensions) {
    const std::string sizes = "SizeZ=\"2\" SizeC=\"3\" SizeT=\"2\"";
    // Four planes from c = 1 on, c first: (c1 z0) (c2 z0) (c0 z1) (c1 z1): three channels, two slices, one time.
    const auto d = Parse(Ome("DimensionOrder=\"XYCZT\" " + sizes, "<TiffData FirstC=\"1\" PlaneCount=\"4\"/>"));
    EXPECT_EQ(d.channels, 3U);
    EXPECT_EQ(d.slices, 2U);
    EXPECT_EQ(d.times, 1U);
    // The same, z first: (z0 c1) (z1 c1) (z0 c2) (z1 c2).
    const auto z = Parse(Ome("DimensionOrder=\"XYZCT\" " + sizes, "<TiffData FirstC=\"1\" PlaneCount=\"4\"/>"));
    EXPECT_EQ(z.channels, 2U);
    EXPECT_EQ(z.slices, 2U);
    EXPECT_EQ(z.times, 1U);
    // An element without numbers stands for all planes.
    const auto all = Parse(Ome("DimensionOrder=\"XYZCT\" " + sizes, "<TiffData/>"));
    EXPECT_EQ(all.channels * all.slices * all.times, 12U);
}

TEST(TiffOme, ImagesOfThisFileAreCounted) {
    const std::string pixels = "<Image><Pixels SizeZ=\"2\"><TiffData><UUID>urn:uuid:";
    const std::string end = "</UUID></TiffData></Pixels></Image>";
    const auto d = Parse("<OME UUID=\"urn:uuid:own\">" + pixels + "other" + end + pixels + "own" + end + "</OME>");
    EXPECT_EQ(d.images, 1U);
    EXPECT_EQ(d.slices, 2U);
    EXPECT_EQ(Parse("<OME UUID=\"urn:uuid:own\">" + pixels + "own" + end + pixels + "own" + end + "</OME>").images, 2U);
}

TEST(TiffOme, NamespacesAndDamage) {
    const auto prefixed = Parse("<ome:OME xmlns:ome=\"x\"><ome:Image><ome:Pixels SizeZ=\"4\"/></ome:Image></ome:OME>");
    EXPECT_EQ(prefixed.style, DescriptionStyle::Ome);
    EXPECT_EQ(prefixed.slices, 4U);
    EXPECT_EQ(Parse("<OME><Image><Pixels SizeZ=\"4\"").style, DescriptionStyle::Free);
    EXPECT_EQ(Parse("<OME></OME>").style, DescriptionStyle::Free);
    // Numbers without end are counted no further than pages can go.
    const auto huge = Parse(Ome("SizeZ=\"18446744073709551615\" SizeT=\"99999999999999999999999\"",
                                "<TiffData PlaneCount=\"18446744073709551615\"/>"));
    EXPECT_EQ(huge.slices, 1000000U);
    EXPECT_EQ(huge.times, 1U);
}

TEST(TiffDescriptions, NumbersAreReadAlikeInEveryLocale) {
    const CommaLocale comma;
    const auto place = FindTiffPlace(Scale(2, 1), Parse("ImageJ=1.53c\nunit=um\nspacing=0.25\n"), 3);
    const auto ome = Parse(Ome("PhysicalSizeX=\"0.5\""));
    EXPECT_TRUE(comma.IsStillSet());
    EXPECT_TRUE(place.resolution.GetRes() == V(2, 2, 4));
    EXPECT_THAT(ome.pixelSize[0], Optional(0.5));
}

} // namespace
