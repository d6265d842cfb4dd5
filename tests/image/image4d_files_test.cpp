#include "image/zel_image4d.h"
#include "tests/image/sequence_folder.h"
#include "tests/support/frames.h"
#include "tests/support/text_of.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstddef>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

namespace {

using kep::Resolution;
using kep::Vector3d;
using mor::Image4d;
using testing::ElementsAre;
using Size = Vector3d<std::size_t>;

constexpr const char* noNames = "ReadSequence(): array Names cannot be empty!";
constexpr const char* otherGeometry = "ReadSequence(): The frame metadata differs from the sequence metadata!";

class SequenceFiles : public SequenceFolder {
protected:
    /// A file of 3 x 2 x 2 voxels with the values first, first + 1, ... first + 11.
    template <typename T>
    void Write(const std::string& file, T first, const Vector3d<float>& offset = {1, 2, 3},
               const Resolution& resolution = {4, 5, 6}, const Size& size = {3, 2, 2}) const {
        kep::Image3d<T> frame(&offset, &resolution);
        frame.MakeRoom(size.x, size.y, size.z);
        for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i)
            frame.SetVoxel(i, static_cast<T>(first + static_cast<T>(i)));
        frame.SaveImage((folder / file).c_str(), kep::FF_BY_NAME, true, nullptr);
    }
    void WriteBinary(const std::string& file) const {
        FrameOf<bool>({false, true}).SaveImage((folder / file).c_str(), kep::FF_BY_NAME, true, nullptr);
    }
};

// --- ReadSequence ---

TEST_F(SequenceFiles, AreReadOneFileAFrame) {
    Write<unsigned short>("a.tif", 100);
    Write<unsigned short>("b.ics", 50);
    Write<unsigned short>("c.tif", 1000);
    Image4d<unsigned short> image(nullptr, nullptr, 0.5F);
    const wxArrayString names = Names({"a.tif", "b.ics", "c.tif"});
    image.ReadSequence(names, false);
    EXPECT_EQ(image.TestConsistency(), 0);
    EXPECT_EQ(image.GetNumFrames(), 3U);
    EXPECT_EQ(image.GetSize(), Size(3, 2, 2));
    EXPECT_EQ(image.GetOffset(), Vector3d<float>(1, 2, 3));
    EXPECT_EQ(image.GetResolution(), Resolution(4, 5, 6));
    EXPECT_EQ(image.GetTimeStep(), 0.5F); // not the files' business
    EXPECT_EQ(image.GetImageNames(), names);
    EXPECT_EQ(image.GetVoxel(11, 0), 111);
    EXPECT_EQ(image.GetVoxel(2, 1, 1, 2), 1011);
    EXPECT_EQ(image.GetCachedMinValue(), 50);
    EXPECT_EQ(image.GetCachedMaxValue(), 1011);
    EXPECT_THAT(log.texts, ElementsAre("I_Reading: " + folder / "a.tif", "I_Reading: " + folder / "b.ics",
                                       "I_Reading: " + folder / "c.tif"));
}

TEST_F(SequenceFiles, ReplaceWhatTheContainerHeld) {
    Write<int>("a.tif", -20);
    Image4d<int> image;
    image.MakeRoom(7, 7, 7, 4);
    image.GetVoxelData(0) = 1000;
    image.UpdateMinMaxValues();
    image.ReadSequence(Names({"a.tif"}), false);
    EXPECT_EQ(image.GetNumFrames(), 1U);
    EXPECT_EQ(image.GetSize(), Size(3, 2, 2));
    EXPECT_EQ(image.GetExtremes(), (mor::ExtremaValues<int>{-20, -9}));
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST_F(SequenceFiles, CanBeReadAgainByTheContainersOwnNames) {
    Write<int>("a.tif", 1);
    Write<int>("b.tif", 2);
    Image4d<int> image;
    image.ReadSequence(Names({"a.tif", "b.tif"}), false);
    Write<int>("b.tif", 30);
    image.ReadSequence(image.GetImageNames(), false);
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetVoxel(0, 1), 30);
    image.ReadSequence_First(image.GetImageNames(), false);
    EXPECT_EQ(image.GetNumFrames(), 1U);
    EXPECT_EQ(image.GetImageName(0), Name("a.tif"));
}

TEST_F(SequenceFiles, WithoutNamesAreRefusedAndTheOldContentsStay) {
    Image4d<int> image;
    image.MakeRoom(2, 2, 2, 2);
    const wxArrayString none;
    EXPECT_EQ(TextOf([&] { image.ReadSequence(none, false); }), noNames);
    EXPECT_EQ(TextOf([&] { image.ReadSequence_First(none, false); }), noNames);
    EXPECT_EQ(TextOf([&] { image.ReadSequence_Next(none, false); }), noNames);
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetSize(), Size(2, 2, 2));
    EXPECT_TRUE(log.texts.empty());
}

TEST_F(SequenceFiles, AreReadStepByStep) {
    Write<unsigned char>("a.tif", 10);
    Write<unsigned char>("b.tif", 20);
    const wxArrayString names = Names({"a.tif", "b.tif"});
    Image4d<unsigned char> image;
    image.ReadSequence_First(names, false);
    EXPECT_EQ(image.GetNumFrames(), 1U);
    EXPECT_EQ(image.GetCachedMaxValue(), 21);
    image.ReadSequence_Next(names, false);
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetImageName(1), names[1]);
    EXPECT_EQ(image.GetCachedMinValue(), 10);
    EXPECT_EQ(image.GetCachedMaxValue(), 31);
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST_F(SequenceFiles, MustAgreeInGeometryExactly) {
    Write<int>("first.tif", 1);
    const float next = std::nextafter(4.0F, 5.0F);
    Write<int>("offset.tif", 1, {1, 2, std::nextafter(3.0F, 4.0F)});
    Write<int>("resolution.tif", 1, {1, 2, 3}, {next, 5, 6});
    Write<int>("size.tif", 1, {1, 2, 3}, {4, 5, 6}, {3, 2, 1});
    for (const std::string second : {"offset.tif", "resolution.tif", "size.tif"}) {
        Image4d<int> image;
        EXPECT_EQ(TextOf([&] { image.ReadSequence(Names({"first.tif", second}), false); }), otherGeometry) << second;
        EXPECT_EQ(image.GetNumFrames(), 1U);
        EXPECT_EQ(image.GetVoxel(11, 0), 12);
        EXPECT_EQ(image.TestConsistency(), 0);
    }
}

TEST_F(SequenceFiles, ThatCannotBeReadLeaveTheWholeFrames) {
    Write<int>("a.tif", 1);
    WriteBytes(folder / "broken.tif", "no image");
    for (const std::string bad : {"missing.tif", "broken.tif"}) {
        Image4d<int> image;
        EXPECT_THROW(image.ReadSequence(Names({"a.tif", bad}), false), kep::IOException);
        EXPECT_EQ(image.GetNumFrames(), 1U);
        EXPECT_EQ(image.TestConsistency(), 0);
        // As the first file: the old contents went before.
        EXPECT_THROW(image.ReadSequence(Names({bad, "a.tif"}), false), kep::IOException);
        EXPECT_EQ(image.GetNumFrames(), 0U);
        EXPECT_EQ(image.TestConsistency(), 0);
        EXPECT_TRUE(image.IsEmpty());
    }
}

TEST_F(SequenceFiles, MayHaveAnyName) {
    for (const std::string file : {"100%s%d.tif", "B\xC3\xA4r \xE2\x82\xAC.tif"}) {
        Write<int>(file, 5);
        Image4d<int> image;
        image.ReadSequence(Names({file}), false);
        EXPECT_EQ(image.GetVoxel(0, 0), 5);
        EXPECT_EQ(log.texts.back(), "I_Reading: " + folder / file);
    }
}

TEST_F(SequenceFiles, OfFiniteFloatsNeedNoUserInterface) {
    Write<float>("a.tif", -3.5F);
    Image4d<float> image;
    image.ReadSequence(Names({"a.tif"}), false);
    EXPECT_EQ(image.GetExtremes(), (mor::ExtremaValues<float>{-3.5F, 7.5F}));
    Image4d<std::complex<double>> complex;
    complex.ReadSequence(Names({"a.tif"}), false);
    EXPECT_EQ(complex.GetExtremes().max, std::complex<double>(7.5, 0));
}

TEST_F(SequenceFiles, OfDoublesKeepInvalidValues) {
    kep::Image3d<double> frame;
    frame.MakeRoom(3, 1, 1);
    frame.SetVoxel(1, std::numeric_limits<double>::quiet_NaN());
    frame.SetVoxel(2, std::numeric_limits<double>::infinity());
    Save(frame, folder / "a.tif");
    Image4d<double> image;
    image.ReadSequence(Names({"a.tif"}), false);
    EXPECT_TRUE(std::isnan(image.GetVoxel(1, 0)));
    EXPECT_TRUE(std::isinf(image.GetVoxel(2, 0)));
    EXPECT_EQ(log.texts.size(), 1U); // no warning
}

// --- two-valued files ---

template <typename T>
class BinaryFilesOfType : public SequenceFiles {};
using ContainerTypes = testing::Types<unsigned char, unsigned short, int, unsigned long long, float, double,
                                      kep::RGB_generic<unsigned char>, kep::RGB_generic<unsigned short>,
                                      std::complex<float>, std::complex<double>>;
TYPED_TEST_SUITE(BinaryFilesOfType, ContainerTypes);

TYPED_TEST(BinaryFilesOfType, GiveVoxelsOf255And0) {
    this->WriteBinary("a.tif");
    this->WriteBinary("b.ics");
    Image4d<TypeParam> image;
    image.ReadSequence(this->Names({"a.tif", "b.ics"}), true);
    ASSERT_EQ(image.GetNumFrames(), 2U);
    TypeParam set = TypeParam();
    if constexpr (requires { set.red; })
        set = {255, 255, 255};
    else
        set = 255;
    for (std::size_t t = 0; t < 2; ++t) {
        EXPECT_EQ(image.GetVoxel(0, t), TypeParam());
        EXPECT_EQ(image.GetVoxel(1, t), set);
    }
    EXPECT_EQ(image.GetCachedMinValue(), TypeParam());
    EXPECT_EQ(image.GetCachedMaxValue(), set);
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST_F(SequenceFiles, OfManyValuesCanBeReadAsTwoValued) {
    Write<int>("a.tif", -1, {1, 2, 3}, {4, 5, 6});
    Image4d<unsigned char> image;
    image.ReadSequence(Names({"a.tif"}), true);
    EXPECT_EQ(image.GetVoxel(0, 0), 255); // -1
    EXPECT_EQ(image.GetVoxel(1, 0), 0);
    EXPECT_EQ(image.GetVoxel(2, 0), 255);
    EXPECT_EQ(image.GetOffset(), Vector3d<float>(1, 2, 3));
    EXPECT_EQ(image.GetResolution(), Resolution(4, 5, 6));
}

TEST_F(SequenceFiles, ReadAsTwoValuedTakeInvalidFloatsInSilence) {
    kep::Image3d<float> frame;
    frame.MakeRoom(2, 1, 1);
    frame.SetVoxel(0, std::numeric_limits<float>::quiet_NaN());
    Save(frame, folder / "a.tif");
    Image4d<float> image;
    image.ReadSequence(Names({"a.tif"}), true); // no box: it would need a display
    EXPECT_EQ(image.GetVoxel(0, 0), 255);
    EXPECT_EQ(image.GetVoxel(1, 0), 0);
}

// --- InsertFrame from a file ---

TEST_F(SequenceFiles, AreInsertedUnderTheirName) {
    Write<int>("a.tif", 1);
    Write<int>("b.ics", -40);
    Image4d<int> image;
    image.ReadSequence(Names({"a.tif"}), false);
    image.InsertFrame(Name("b.ics"), 0);
    EXPECT_EQ(image.GetNumFrames(), 2U);
    EXPECT_EQ(image.GetVoxel(0, 0), -40);
    EXPECT_EQ(image.GetVoxel(0, 1), 1);
    EXPECT_EQ(image.GetImageName(0), Name("b.ics"));
    EXPECT_EQ(image.GetImageName(1), Name("a.tif"));
    EXPECT_EQ(image.GetExtremes(), (mor::ExtremaValues<int>{-40, 12}));
    EXPECT_EQ(log.texts.size(), 1U); // inserting says nothing
}

TEST_F(SequenceFiles, InsertedMustFit) {
    Write<int>("a.tif", 1);
    Write<int>("b.tif", 1, {1, 2, 3.5F});
    Image4d<int> image;
    image.ReadSequence(Names({"a.tif"}), false);
    EXPECT_EQ(TextOf([&] { image.InsertFrame(Name("b.tif"), -1); }),
              "InsertFrame(): Inserted image is not consistent with the sequence!");
    EXPECT_THROW(image.InsertFrame(Name("missing.tif"), -1), kep::IOException);
    EXPECT_EQ(image.GetNumFrames(), 1U);
    EXPECT_EQ(image.TestConsistency(), 0);
}

TEST_F(SequenceFiles, InsertedKeepInvalidFloats) {
    kep::Image3d<float> frame;
    frame.MakeRoom(2, 1, 1);
    frame.SetVoxel(0, 7);
    frame.SetVoxel(1, std::numeric_limits<float>::quiet_NaN());
    Save(frame, folder / "nan.tif");
    Image4d<float> image;
    image.MakeRoom(2, 1, 1, 0);
    image.InsertFrame(Name("nan.tif"), -1); // no box: it would need a display
    EXPECT_TRUE(std::isnan(image.GetVoxel(1, 0)));
    EXPECT_EQ(image.GetExtremes(), (mor::ExtremaValues<float>{7, 7}));
}

// --- SaveSequence ---

TEST_F(SequenceFiles, AreNamedByTheNumbersOfTheFrames) {
    Image4d<unsigned short> image;
    image.MakeRoom(2, 2, 1, 11);
    for (std::size_t t = 0; t < 11; ++t)
        image.GetVoxelData(t) = static_cast<unsigned short>(100 + t);
    image.SaveSequence((folder / "a").c_str(), 3, ".tif", 9, 10);
    EXPECT_THAT(folder.List(), ElementsAre("a009.tif", "a010.tif"));
    EXPECT_THAT(log.texts, ElementsAre("Saving: " + folder / "a009.tif", "Saving: " + folder / "a010.tif"));
    Image4d<unsigned short> back;
    back.ReadSequence(Names({"a009.tif", "a010.tif"}), false);
    EXPECT_EQ(back.GetVoxel(0, 0), 109);
    EXPECT_EQ(back.GetVoxel(3, 1), 110);
}

TEST_F(SequenceFiles, AreWrittenUnderNamesInUtf8) {
    Image4d<unsigned char> image;
    image.MakeRoom(1, 1, 1, 1);
    image.SaveSequence((folder / "50%d B\xC3\xA4r ").c_str(), 2, ".ics", 0, 0);
    EXPECT_THAT(folder.List(), ElementsAre("50%d B\xC3\xA4r 00.ics"));
    EXPECT_THAT(log.texts, ElementsAre("Saving: " + folder / "50%d B\xC3\xA4r 00.ics"));
}

TEST_F(SequenceFiles, AreNotWrittenInTheWrongOrder) {
    Image4d<unsigned char> image;
    image.MakeRoom(1, 1, 1, 3);
    image[1]->SetOffset({1, 1, 1}); // the order is tested first
    EXPECT_EQ(TextOf([&] { image.SaveSequence((folder / "a").c_str(), 3, ".tif", 2, 1); }),
              "SaveSequence(): StopIndex cannot be smaller than StartIndex!");
    EXPECT_EQ(TextOf([&] { image.SaveSequence((folder / "a").c_str(), 3, ".tif", 0, 2); }),
              "SaveSequence(): The image is not consistent!");
    EXPECT_TRUE(folder.List().empty());
    EXPECT_TRUE(log.texts.empty());
}

TEST_F(SequenceFiles, ThatLackAPartOfTheirDescriptionAreWarnedOf) {
    Image4d<unsigned char> image;
    image.MakeRoom(1, 1, 1, 2);
    image[1]->SetDescription({{"long", std::string(2'000'000, 'x')}});
    zel::test::LogCatcher warnings;
    image.SaveSequence((folder / "a").c_str(), 1, ".ics", 0, 1);
    ASSERT_EQ(warnings.GetEntries().size(), 3U);
    EXPECT_EQ(warnings.GetEntries()[0].text, "Saving: " + folder / "a0.ics");
    EXPECT_EQ(warnings.GetEntries()[1].text, "Saving: " + folder / "a1.ics");
    EXPECT_EQ(warnings.GetEntries()[2].level, wxLogLevel(wxLOG_Warning));
    EXPECT_THAT(
        warnings.GetEntries()[2].text,
        testing::StartsWith(folder / "a1.ics" + ": The description does not fit into an ICS file: cut off: 'long' ("));
}

TEST_F(SequenceFiles, ThatCannotBeWrittenAreTheCoresFailure) {
    Image4d<unsigned char> image;
    image.MakeRoom(1, 1, 1, 1);
    EXPECT_THROW(image.SaveSequence((folder / "missing/a").c_str(), 3, ".tif", 0, 0), kep::IOException);
    EXPECT_THROW(image.SaveSequence((folder / "a").c_str(), 3, ".jpg", 0, 0), kep::IOException);
    EXPECT_TRUE(folder.List().empty());
}

template <typename T>
class FilesOfType : public SequenceFiles {};
TYPED_TEST_SUITE(FilesOfType, ContainerTypes);

TYPED_TEST(FilesOfType, ComeBackAsTheyWereSaved) {
    const Vector3d<float> offset(0.1F, -33.3F, 1234.567F);
    const Resolution resolution(11.3F, 0.7F, 1.0F / 3.0F);
    for (const std::string suffix : {".tif", ".ics"}) {
        Image4d<TypeParam> image(&offset, &resolution);
        image.MakeRoom(5, 3, 2, 2);
        for (std::size_t t = 0; t < 2; ++t) {
            for (std::size_t i = 0; i < 30; ++i) {
                const auto n = static_cast<unsigned char>(100 * t + 3 * i);
                if constexpr (requires(TypeParam v) { v.red; })
                    image.SetVoxel(i, t, {n, static_cast<unsigned char>(n + 1), static_cast<unsigned char>(n + 2)});
                else if constexpr (requires(TypeParam v) { v.real(); })
                    image.SetVoxel(i, t, TypeParam(n, -1));
                else
                    image.SetVoxel(i, t, n);
            }
        }
        image.UpdateMinMaxValues();
        image.SaveSequence((this->folder / "f").c_str(), 1, suffix.c_str(), 0, 1);
        Image4d<TypeParam> back;
        back.ReadSequence(this->Names({"f0" + suffix, "f1" + suffix}), false);
        EXPECT_EQ(back.GetOffset(), offset);
        EXPECT_EQ(back.GetResolution(), resolution);
        EXPECT_EQ(back.GetSize(), Size(5, 3, 2));
        for (std::size_t t = 0; t < 2; ++t) {
            for (std::size_t i = 0; i < 30; ++i)
                EXPECT_EQ(back.GetVoxel(i, t), image.GetVoxel(i, t)) << suffix << " " << i << " " << t;
        }
        EXPECT_EQ(back.GetExtremes(), image.GetExtremes());
        EXPECT_EQ(back.TestConsistency(), 0);
    }
}

// --- real sequences ---

class RealSequence : public testing::Test {
protected:
    /// The files of one folder, in the order of their names.
    static wxArrayString NamesIn(const std::string& series) {
        const std::filesystem::path path = std::filesystem::path(ZEL_TEST_DATA) / "sequence" / series;
        wxArrayString names;
        if (std::filesystem::is_directory(path)) {
            for (const auto& entry : std::filesystem::directory_iterator(path))
                names.Add(wxString::FromUTF8(entry.path().string()));
        }
        names.Sort();
        return names;
    }
    CollectedLog log;
};

template <typename T>
double SumOf(const Image4d<T>& image, std::size_t t) {
    double sum = 0;
    for (const T voxel : *image[t])
        sum += static_cast<double>(voxel);
    return sum;
}

TEST_F(RealSequence, OfDividingCellsIsRead) {
    const wxArrayString names = NamesIn("mitosis");
    if (names.empty())
        GTEST_SKIP() << "no test images in " ZEL_TEST_DATA;
    Image4d<unsigned short> image;
    image.ReadSequence(names, false);
    EXPECT_EQ(image.TestConsistency(), 0);
    EXPECT_EQ(image.GetNumFrames(), 10U);
    EXPECT_EQ(image.GetSize(), Size(171, 196, 5));
    EXPECT_EQ(image.GetCachedMinValue(), 1605);  // of frame 9
    EXPECT_EQ(image.GetCachedMaxValue(), 21807); // of frame 2
    EXPECT_EQ(SumOf(image, 0), 534188910.0);
    EXPECT_EQ(SumOf(image, 9), 511379502.0);
    const Vector3d<float> resolution = image.GetResolution().GetRes();
    EXPECT_NEAR(resolution.x, 11.29944, 1e-4); // 1 / 0.0885
    EXPECT_NEAR(resolution.y, 11.29944, 1e-4);
    EXPECT_EQ(resolution.z, 1.0F);
}

TEST_F(RealSequence, OfDoublesIsReadAsFloats) {
    const wxArrayString names = NamesIn("spimagine-t");
    if (names.empty())
        GTEST_SKIP() << "no test images in " ZEL_TEST_DATA;
    Image4d<float> image;
    image.ReadSequence(names, false);
    EXPECT_EQ(image.TestConsistency(), 0);
    EXPECT_EQ(image.GetNumFrames(), 4U);
    EXPECT_EQ(image.GetSize(), Size(20, 20, 20));
    EXPECT_EQ(image.GetCachedMinValue(), 0.0F);
    EXPECT_EQ(image.GetCachedMaxValue(), 100.0F);
    EXPECT_FALSE(image.GetResolution().IsDefined());
    EXPECT_NEAR(SumOf(image, 2), 400000.0, 0.1);
    EXPECT_NEAR(SumOf(image, 3), 666677.77824, 0.1);
    Image4d<double> exact;
    exact.ReadSequence(names, false);
    EXPECT_EQ(exact.GetVoxel(0, 0), 0.0);
    EXPECT_NEAR(SumOf(exact, 0), 133322.22175924, 1e-6);
}

} // namespace
