#include "model/zel_sequencename.h"

#include "core/kepcore/kep_exceptions.h"

#include <gtest/gtest.h>

#include <limits>

using zel::MakeSequenceName;

namespace {

TEST(SequenceName, TheNumberHasAsManyDigitsAsTheRun) {
    EXPECT_EQ(MakeSequenceName("imageXXX.tif", 7), "image007.tif");
    EXPECT_EQ(MakeSequenceName("imageXXX.tif", 0), "image000.tif");
    EXPECT_EQ(MakeSequenceName("imageXXX.tif", 123), "image123.tif");
    EXPECT_EQ(MakeSequenceName("X.ics", 4), "4.ics");
    EXPECT_EQ(MakeSequenceName("tXXXXXXXXXXXX.tif", std::numeric_limits<int>::max()), "t002147483647.tif");
}

TEST(SequenceName, OfALongerNumberTheLowerDigitsAreTaken) {
    EXPECT_EQ(MakeSequenceName("imageXXX.tif", 1234), "image234.tif");
    EXPECT_EQ(MakeSequenceName("imageX.tif", 10), "image0.tif");
}

TEST(SequenceName, OnlyTheFirstRunIsReplaced) {
    EXPECT_EQ(MakeSequenceName("aXXbXXX.tif", 5), "a05bXXX.tif");
    EXPECT_EQ(MakeSequenceName("XX_X", 12), "12_X");
    EXPECT_EQ(MakeSequenceName("axX.tif", 3), "ax3.tif") << "a small x is none";
}

TEST(SequenceName, OtherBytesStay) {
    EXPECT_EQ(MakeSequenceName("\xC3\xA9tape %d XX.tif", 9), "\xC3\xA9tape %d 09.tif");
}

TEST(SequenceName, ARunAtTheEndHasNoSuffix) {
    for (const char* const nameTemplate : {"imageXXX", "X", "", "image.tif"})
        try {
            MakeSequenceName(nameTemplate, 1);
            ADD_FAILURE() << nameTemplate;
        } catch (const kep::InternalException& e) {
            EXPECT_EQ(e.GetText(), "Missing suffix in the template name.");
        }
}

} // namespace
