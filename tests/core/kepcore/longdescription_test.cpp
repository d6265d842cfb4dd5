// What was read can be saved, also where a format can't hold all of its description.

#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <tiffio.h>
#include <vector>

namespace {

using Frame = kep::Image3d<unsigned char>;
using Description = std::map<std::string, std::string>;

constexpr std::size_t mebibyte = std::size_t{1} << 20;

/// Text of so many bytes in which no two places look alike.
std::string MakeText(std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; text.size() < bytes; ++i)
        text += std::to_string(i) + (i % 10 == 0 ? "\n" : " ");
    text.resize(bytes);
    return text;
}

class LongDescription : public testing::Test {
protected:
    LongDescription() {
        frame.MakeRoom(3, 2, 1);
        for (std::size_t i = 0; i < 6; ++i)
            frame.SetVoxel(i, static_cast<unsigned char>(10 * i));
    }

    /// Saves the frame and reads it back.
    Description Exchange(const std::string& file) {
        const std::string name = folder / file;
        notice = frame.SaveImage(name.c_str(), kep::FF_BY_NAME, false, nullptr);
        Frame read;
        read.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr);
        EXPECT_TRUE(std::equal(frame.begin(), frame.end(), read.begin(), read.end()));
        return read.GetDescription();
    }

    ScratchFolder folder;
    Frame frame;
    std::string notice; ///< of the last save
};

TEST_F(LongDescription, OfATiffFileIsSavedInBothFormats) {
    const std::string name = folder / "long.tif";
    const std::string text = MakeText(2'000'000);
    TIFF* const tiff = TIFFOpen(name.c_str(), "w");
    ASSERT_NE(tiff, nullptr);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 3);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 2);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 2);
    TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, text.c_str());
    ASSERT_EQ(TIFFWriteEncodedStrip(tiff, 0, frame.begin(), 6), 6);
    TIFFClose(tiff);

    frame.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr);
    const std::string known = frame.GetDescription().at("ImageDescription");
    ASSERT_EQ(known, text.substr(0, mebibyte)); // reading stops there

    EXPECT_TRUE(Exchange("again.tif") == (Description{{"ImageDescription", known}}));
    EXPECT_EQ(notice, "");
    const std::string kept = Exchange("again.ics")["ImageDescription"];
    EXPECT_TRUE(known.starts_with(kept));
    // Of the mebibyte of an ICS header, the frame takes less than a thousand bytes, and each line of the text has
    // 26 more: "history", the key and two tabs.
    const auto lines = static_cast<std::size_t>(std::count(kept.begin(), kept.end(), '\n')) + 1;
    EXPECT_GT(kept.size() + 26 * lines, mebibyte - 1000);
    EXPECT_EQ(notice, "The description does not fit into an ICS file: cut off: 'ImageDescription' (" +
                          std::to_string(kept.size()) + " of 1048576 bytes).");
    EXPECT_EQ(folder.List(), (std::vector<std::string>{"again.ics", "again.tif", "long.tif"}));
}

TEST_F(LongDescription, FillsATiffFileToTheLastByteThatIsRead) {
    // 15 values of the longest, and one that the rest of the 16 mebibytes is too short for.
    Description description;
    for (char key = 'a'; key < 'a' + 15; ++key)
        description[std::string(1, key)] = std::string(mebibyte, key);
    description["z"] = std::string(mebibyte, 'z');
    description["Software"] = std::string(mebibyte - 1, 's'); // a tag of its own takes it
    description["note"] = "kept";
    frame.SetDescription(description);
    const Description read = Exchange("a.tif");
    ASSERT_EQ(read.size(), description.size());
    for (const auto& [key, value] : description) {
        if (key != "z") {
            EXPECT_TRUE(read.at(key) == value) << key;
        }
    }
    // 15 lines of "kep entry=a=" and the value, and the line of the note, 20; those in front of them are these:
    const std::string front = "ImageJ=1.11a\nimages=1\nslices=1\nunit=pixel\nkep resolution=0 0 0\nkep offset=0 0 0\n";
    const std::size_t line = 13; // without the value
    const std::size_t rest = 16 * mebibyte - 1 - front.size() - 15 * (line + mebibyte) - 20 - line;
    EXPECT_TRUE(read.at("z") == std::string(rest, 'z'));
    EXPECT_EQ(notice, "The description does not fit into a TIFF file: cut off: 'z' (" + std::to_string(rest) +
                          " of 1048576 bytes).");
}

TEST_F(LongDescription, HasValuesOfAMebibyteInATiffFile) {
    frame.SetDescription({{"Artist", std::string(3 * mebibyte, 'a')}, {"other", std::string(mebibyte + 1, 'o')}});
    const Description read = Exchange("a.tif");
    EXPECT_TRUE(read.at("Artist") == std::string(mebibyte, 'a'));
    EXPECT_TRUE(read.at("other") == std::string(mebibyte, 'o'));
    EXPECT_EQ(notice, "The description does not fit into a TIFF file: cut off: 'other' (1048576 of 1048577 bytes) "
                      "and 'Artist' (1048576 of 3145728 bytes)."); // which has a line, and of the longer key
}

TEST_F(LongDescription, OfManyEntriesLosesTheLongestOnes) {
    Description description;
    for (int i = 0; i < 40'000; ++i)
        description["key " + std::to_string(100'000 + i)] = std::string(static_cast<std::size_t>(i) / 400, 'v');
    frame.SetDescription(description);
    EXPECT_TRUE(Exchange("a.tif") == description);
    EXPECT_EQ(notice, "");
    const Description read = Exchange("a.ics");
    EXPECT_GT(read.size(), 15'000U);
    EXPECT_LT(read.size(), description.size());
    EXPECT_TRUE(notice.starts_with("The description does not fit into an ICS file: ")) << notice;
    std::size_t whole = 0;
    for (const auto& [key, value] : read)
        whole += value == description.at(key) ? 1U : 0U;
    EXPECT_GE(whole + 1, read.size()); // at most one is cut
}

} // namespace
