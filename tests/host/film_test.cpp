#include "host/film.h"
#include "host/message.h"
#include "image/kep.h"
#include "tests/support/save_faults.h"
#include "tests/support/scratch_folder.h"

#include <wx/gifdecod.h>
#include <wx/imaggif.h>
#include <wx/wfstream.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace zelviewer {
namespace {

using zel::Colour;

zel::Sheet SheetOf(std::size_t width, std::size_t height, const auto& colourAt) {
    zel::Sheet sheet;
    sheet.MakeRoom(width, height, 1);
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x)
            sheet.SetVoxel(x, y, 0, colourAt(static_cast<int>(x), static_cast<int>(y)));
    return sheet;
}

unsigned char Byte(int value) {
    return static_cast<unsigned char>(value);
}

class FilmTest : public testing::Test {
protected:
    int CountPictures() const {
        wxFileInputStream file(name);
        return wxGIFHandler().GetImageCount(file);
    }
    wxImage Read(int picture) const {
        wxFileInputStream file(name);
        wxImage image;
        EXPECT_TRUE(wxGIFHandler().LoadFile(&image, file, true, picture));
        return image;
    }
    long DelayOf(std::size_t picture) const {
        wxFileInputStream file(name);
        wxGIFDecoder decoder;
        EXPECT_EQ(decoder.LoadGIF(file), wxGIF_OK);
        return decoder.GetDelay(static_cast<unsigned>(picture));
    }
    static void ExpectSame(const wxImage& image, const zel::Sheet& sheet) {
        ASSERT_EQ(image.GetWidth(), static_cast<int>(sheet.GetSizeX()));
        ASSERT_EQ(image.GetHeight(), static_cast<int>(sheet.GetSizeY()));
        const unsigned char* at = image.GetData();
        for (const Colour& colour : sheet) {
            ASSERT_EQ(Colour(at[0], at[1], at[2]), colour) << (at - image.GetData()) / 3;
            at += 3;
        }
    }

    ScratchFolder folder;
    const std::string name = folder / "film.gif";
};

TEST_F(FilmTest, GrayPicturesAreKeptToTheLastLevel) {
    const zel::Sheet up =
        SheetOf(16, 16, [](int x, int y) { return Colour(Byte(16 * y + x), Byte(16 * y + x), Byte(16 * y + x)); });
    const zel::Sheet down = SheetOf(16, 16, [](int x, int y) {
        return Colour(Byte(255 - 16 * y - x), Byte(255 - 16 * y - x), Byte(255 - 16 * y - x));
    });
    Film film;
    film.Add(up);
    film.Add(down);
    film.Save(name, 10);
    ASSERT_EQ(CountPictures(), 2);
    ExpectSame(Read(0), up);
    ExpectSame(Read(1), down);
}

TEST_F(FilmTest, EachPictureHasItsOwnColours) {
    const zel::Sheet reds = SheetOf(13, 7, [](int x, int y) { return Colour(Byte(19 * x), 0, Byte(y)); });
    const zel::Sheet greens = SheetOf(13, 7, [](int x, int y) { return Colour(3, Byte(255 - 19 * x), Byte(y)); });
    const zel::Sheet plain = SheetOf(13, 7, [](int, int) { return Colour(1, 2, 3); });
    Film film;
    for (const zel::Sheet* const sheet : {&reds, &greens, &plain})
        film.Add(*sheet);
    film.Save(name, 10);
    ASSERT_EQ(CountPictures(), 3);
    ExpectSame(Read(0), reds);
    ExpectSame(Read(1), greens);
    ExpectSame(Read(2), plain);
}

TEST_F(FilmTest, ManyColoursComeNearToWhatTheyWere) {
    const zel::Sheet sheet = SheetOf(128, 128, [](int x, int y) { return Colour(Byte(2 * x), Byte(2 * y), 128); });
    Film film;
    film.Add(sheet);
    film.Save(name, 10);
    const wxImage image = Read(0);
    double difference = 0;
    for (int y = 0; y < 128; ++y)
        for (int x = 0; x < 128; ++x)
            difference += std::abs(image.GetRed(x, y) - 2 * x) + std::abs(image.GetGreen(x, y) - 2 * y) +
                          std::abs(image.GetBlue(x, y) - 128);
    EXPECT_LT(difference / (128 * 128 * 3), 8.0); // levels
}

TEST_F(FilmTest, RunsAsFastAsItIsTold) {
    for (const auto& [picturesASecond, milliseconds] : {std::pair(1, 1000), {10, 100}, {50, 20}}) {
        Film film;
        for (int i = 0; i < 2; ++i)
            film.Add(SheetOf(2, 2, [](int, int) { return Colour(9, 9, 9); }));
        film.Save(name, picturesASecond);
        EXPECT_EQ(DelayOf(0), milliseconds);
        EXPECT_EQ(DelayOf(1), milliseconds);
    }
}

TEST_F(FilmTest, ASideThatTheFormatCannotTellIsRefused) {
    Film film;
    film.Add(SheetOf(65535, 1, [](int, int) { return Colour(); }));
    EXPECT_THROW(film.Add(SheetOf(65536, 1, [](int, int) { return Colour(); })), Failure);
    EXPECT_THROW(film.Add(SheetOf(1, 65536, [](int, int) { return Colour(); })), Failure);
}

TEST_F(FilmTest, IsTheOldOneOrWholeWhicheverCallFails) {
    Film film;
    film.Add(SheetOf(20, 20, [](int x, int y) { return Colour(Byte(x), Byte(y), 0); }));
    ExpectOldOrWholeAtEveryFault(name, [&] {
        try {
            film.Save(name, 10);
        } catch (const kep::IOException&) {
            return false;
        }
        return true;
    });
}

} // namespace
} // namespace zelviewer
