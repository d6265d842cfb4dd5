#include "model/zel_histogram.h"
#include "tests/support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/string.h>

#include <cstddef>
#include <limits>
#include <locale>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using zel::Histogram;

template <typename T>
std::vector<std::size_t> Counters(const Histogram<T>& histogram) {
    return {histogram.begin(), histogram.end()};
}

template <typename T>
Histogram<T> Make(T min, T max, const std::vector<std::size_t>& counters) {
    Histogram<T> histogram;
    histogram.Init(min, max, counters.size());
    for (std::size_t i = 0; i < counters.size(); ++i)
        histogram[i] = counters[i];
    return histogram;
}

class HistogramFile : public testing::Test {
protected:
    template <typename T>
    std::string Saved(const Histogram<T>& histogram) const {
        EXPECT_TRUE(histogram.Save(name));
        return ReadBytes(file);
    }
    template <typename T>
    bool Loads(Histogram<T>& histogram, const std::string& bytes) const {
        WriteBytes(file, bytes);
        return histogram.Load(name);
    }
    /// The file is refused before anything changes.
    template <typename T>
    bool Refuses(const std::string& bytes) const {
        auto histogram = Make<T>(1, 3, {4, 5, 6});
        const bool loaded = Loads(histogram, bytes);
        return !loaded && Counters(histogram) == std::vector<std::size_t>{4, 5, 6} && histogram.GetLeftCenter() == 1 &&
               histogram.GetRightCenter() == 3;
    }

    ScratchFolder folder;
    std::string file = folder / "histogram.txt";
    wxString name = wxString::FromUTF8(file);
};

// --- writing, byte for byte ---

TEST_F(HistogramFile, HoldsTheStretchThatIsNotZero) {
    EXPECT_EQ(Saved(Make<int>(-4, 5, {0, 0, 0, 7, 0, 12, 0, 0, 0, 0})), "int\n10 3 5 \n-4 5\n7 0 12 ");
    EXPECT_EQ(Saved(Make<int>(0, 3, {1, 2, 3, 4})), "int\n4 0 3 \n0 3\n1 2 3 4 ");
    EXPECT_EQ(Saved(Make<int>(0, 3, {0, 0, 9, 0})), "int\n4 2 2 \n0 3\n9 ");
}

TEST_F(HistogramFile, OfZerosHoldsTheLastBin) {
    EXPECT_EQ(Saved(Make<int>(0, 3, {0, 0, 0, 0})), "int\n4 3 3 \n0 3\n0 ");
    EXPECT_EQ(Saved(Make<int>(5, 5, {0})), "int\n1 0 0 \n5 5\n0 ");
    EXPECT_EQ(Saved(Make<int>(5, 5, {3})), "int\n1 0 0 \n5 5\n3 ");
}

TEST_F(HistogramFile, NamesTheTypeAndWritesCentersAsNumbers) {
    EXPECT_EQ(Saved(Make<unsigned char>(48, 255, {1, 2})), "unsigned char\n2 0 1 \n48 255\n1 2 ");
    EXPECT_EQ(Saved(Make<unsigned short>(7, 65535, {1, 2})), "unsigned short\n2 0 1 \n7 65535\n1 2 ");
    EXPECT_EQ(Saved(Make<float>(0.1F, 1234567.0F, {1, 2})), "float\n2 0 1 \n0.1 1.23457e+06\n1 2 ");
    EXPECT_EQ(Saved(Make<float>(-1.0F / 3.0F, 2.5F, {1, 2})), "float\n2 0 1 \n-0.333333 2.5\n1 2 ");
}

TEST_F(HistogramFile, HoldsCountersOfAnySize) {
    EXPECT_EQ(Saved(Make<int>(0, 1, {std::numeric_limits<std::size_t>::max(), 1})),
              "int\n2 0 1 \n0 1\n18446744073709551615 1 ");
}

TEST_F(HistogramFile, IsWrittenTheSameInEveryLocale) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return ','; }
        char do_decimal_point() const override { return ';'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    const std::string saved = Saved(Make<float>(0.5F, 65536.0F, {123456, 2}));
    Histogram<float> loaded;
    const bool isLoaded = loaded.Load(name);
    std::locale::global(before);
    EXPECT_EQ(saved, "float\n2 0 1 \n0.5 65536\n123456 2 ");
    EXPECT_TRUE(isLoaded);
    EXPECT_EQ(loaded.GetRightCenter(), 65536);
    EXPECT_THAT(Counters(loaded), ElementsAre(123456, 2));
}

TEST_F(HistogramFile, IsNotMadeWithoutBins) {
    EXPECT_FALSE(Histogram<int>().Save(name));
    EXPECT_TRUE(folder.List().empty());
}

TEST_F(HistogramFile, ReplacesALongerOne) {
    WriteBytes(file, std::string(1000, 'x'));
    EXPECT_EQ(Saved(Make<int>(5, 5, {3})), "int\n1 0 0 \n5 5\n3 ");
}

TEST_F(HistogramFile, ThatCannotBeWrittenIsTold) {
    const auto histogram = Make<int>(5, 5, {3});
    EXPECT_FALSE(histogram.Save(name + "/no/such/folder"));
    EXPECT_FALSE(histogram.Save(wxString::FromUTF8(folder.GetPath()))); // a folder
    EXPECT_FALSE(histogram.Save("/dev/full"));                          // opens, but takes nothing
}

// --- reading ---

TEST_F(HistogramFile, ComesBackAsItWas) {
    const auto saved = Make<int>(-4, 5, {0, 0, 0, 7, 0, 12, 0, 0, 0, 0});
    ASSERT_TRUE(saved.Save(name));
    auto loaded = Make<int>(0, 1, {3, 4});
    ASSERT_TRUE(loaded.Load(name));
    EXPECT_TRUE(loaded == saved);
    EXPECT_EQ(Counters(loaded), Counters(saved));
    EXPECT_EQ(loaded.GetBinCenter(7), 3);
}

TEST_F(HistogramFile, ComesBackForEveryType) {
    Histogram<unsigned char> byte;
    EXPECT_TRUE(Loads(byte, "unsigned char\n2 0 1 \n48 255\n1 2 "));
    EXPECT_EQ(byte.GetLeftCenter(), 48);
    EXPECT_EQ(byte.GetRightCenter(), 255);
    EXPECT_THAT(Counters(byte), ElementsAre(1, 2));
    Histogram<unsigned short> word;
    EXPECT_TRUE(Loads(word, "unsigned short\n3 1 1 \n7 65535\n5 "));
    EXPECT_EQ(word.GetRightCenter(), 65535);
    EXPECT_THAT(Counters(word), ElementsAre(0, 5, 0));
    Histogram<float> real;
    EXPECT_TRUE(Loads(real, "float\n2 0 1 \n-0.333333 1.5e+06\n1 2 "));
    EXPECT_EQ(real.GetLeftCenter(), -0.333333F);
    EXPECT_EQ(real.GetRightCenter(), 1.5e6F);
}

TEST_F(HistogramFile, FromElsewhereMayHaveOtherLineBreaks) {
    Histogram<int> histogram;
    EXPECT_TRUE(Loads(histogram, "int\r\n4 1 2 \r\n-1 2\r\n10 20 "));
    EXPECT_THAT(Counters(histogram), ElementsAre(0, 10, 20, 0));
    EXPECT_TRUE(Loads(histogram, "int\n4 1 2 \n-1 2\n1\n0 2\r\n0"));
    EXPECT_THAT(Counters(histogram), ElementsAre(0, 10, 20, 0));
    EXPECT_EQ(histogram.GetLeftCenter(), -1);
}

TEST_F(HistogramFile, NarrowsTheCentersOfBytes) {
    Histogram<unsigned char> histogram;
    EXPECT_TRUE(Loads(histogram, "unsigned char\n2 0 0 \n0 300\n1 ")); // 300 - 256
    EXPECT_EQ(histogram.GetRightCenter(), 44);
}

TEST_F(HistogramFile, OfAnotherTypeIsRefused) {
    ASSERT_TRUE(Make<float>(0, 1, {1, 2}).Save(name));
    EXPECT_TRUE(Refuses<int>(ReadBytes(file)));
    EXPECT_TRUE(Refuses<int>("integer\n2 0 1 \n0 1\n1 2 "));
    EXPECT_TRUE(Refuses<int>(" int\n2 0 1 \n0 1\n1 2 "));
    EXPECT_TRUE(Refuses<int>("int \n2 0 1 \n0 1\n1 2 "));
    EXPECT_TRUE(Refuses<int>("int\r\r\n2 0 1 \n0 1\n1 2 "));
    EXPECT_TRUE(Refuses<int>(std::string(5000, 'i')));
    EXPECT_TRUE(Refuses<int>(""));
    EXPECT_TRUE(Refuses<unsigned short>("unsigned char\n2 0 1 \n0 1\n1 2 "));
}

TEST_F(HistogramFile, WithoutASoundLayoutIsRefused) {
    EXPECT_TRUE(Refuses<int>("int"));
    EXPECT_TRUE(Refuses<int>("int\n"));
    EXPECT_TRUE(Refuses<int>("int\n2 0"));
    EXPECT_TRUE(Refuses<int>("int\n2 0 x \n0 1\n1 2 "));
    EXPECT_TRUE(Refuses<int>("int\n2 0 1 \n0"));
    EXPECT_TRUE(Refuses<int>("int\n2 0 1 \n0 y\n1 2 "));
    EXPECT_TRUE(Refuses<int>("int\n-2 0 1 \n0 1\n1 2 "));
    EXPECT_TRUE(Refuses<int>("int\n2 -1 1 \n0 1\n1 2 "));
    EXPECT_TRUE(Refuses<int>("int\n2 0 -1 \n0 1\n1 2 "));
    EXPECT_TRUE(Refuses<int>("int\n0 0 0 \n0 1\n1 "));
    EXPECT_TRUE(Refuses<int>("int\n2 1 0 \n0 1\n1 "));
    EXPECT_TRUE(Refuses<int>("int\n2 0 2 \n0 1\n1 2 3 "));
    EXPECT_TRUE(Refuses<int>("int\n2 0 1 \n0 3000000000\n1 2 "));
    EXPECT_TRUE(Refuses<unsigned short>("unsigned short\n2 0 1 \n-5 9\n1 2 "));
    EXPECT_TRUE(Refuses<unsigned short>("unsigned short\n2 0 1 \n5 70000\n1 2 "));
    EXPECT_TRUE(Refuses<unsigned char>("unsigned char\n2 0 1 \n-5 9\n1 2 "));
    EXPECT_TRUE(Refuses<float>("float\n2 0 1 \nnan inf\n1 2 "));
}

TEST_F(HistogramFile, ThatAsksForMoreThanThereIsIsRefused) {
    EXPECT_TRUE(Refuses<int>("int\n18446744073709551615 0 1 \n0 1\n1 2 "));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which ends the process where memory lacks
    EXPECT_TRUE(Refuses<int>("int\n1152921504606846975 0 1 \n0 1\n1 2 "));
#endif
    EXPECT_TRUE(Refuses<int>("int\n99999999999999999999999 0 1 \n0 1\n1 2 "));
}

TEST_F(HistogramFile, ThatIsNotThereIsRefused) {
    auto histogram = Make<int>(0, 1, {3, 4});
    EXPECT_FALSE(histogram.Load(name));
    EXPECT_FALSE(histogram.Load(wxString::FromUTF8(folder.GetPath())));
    EXPECT_FALSE(histogram.Load(""));
    EXPECT_THAT(Counters(histogram), ElementsAre(3, 4));
}

TEST_F(HistogramFile, WithAWrongCounterKeepsWhatWasReadBefore) {
    for (const std::string wrong :
         {"1 2x 3 ", "1  3 ", "1 -2 3 ", "1 2.5 3 ", "1 2\t3 ", "1 00000000000000000002 3 "}) {
        auto histogram = Make<int>(7, 9, {4, 5, 6, 7});
        EXPECT_FALSE(Loads(histogram, "int\n5 1 3 \n0 4\n" + wrong)) << wrong;
        EXPECT_THAT(Counters(histogram), ElementsAre(0, 1, 0, 0, 0)) << wrong;
        EXPECT_EQ(histogram.GetRightCenter(), 4) << wrong;
    }
}

TEST_F(HistogramFile, ThatEndsEarlyKeepsWhatWasReadBefore) {
    Histogram<int> histogram;
    EXPECT_FALSE(Loads(histogram, "int\n5 1 3 \n0 4\n1 2 "));
    EXPECT_THAT(Counters(histogram), ElementsAre(0, 1, 2, 0, 0));
    EXPECT_FALSE(Loads(histogram, "int\n5 1 3 \n0 4"));
    EXPECT_THAT(Counters(histogram), ElementsAre(0, 0, 0, 0, 0));
}

TEST_F(HistogramFile, HasCountersOfAtMostNineteenDigits) {
    Histogram<int> histogram;
    EXPECT_TRUE(Loads(histogram, "int\n1 0 0 \n0 0\n9999999999999999999 "));
    EXPECT_EQ(histogram[0], 9999999999999999999U);
    EXPECT_FALSE(Loads(histogram, "int\n1 0 0 \n0 0\n10000000000000000000 "));
    EXPECT_EQ(histogram[0], 0U);
}

} // namespace
