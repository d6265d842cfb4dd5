#include "model/zel_filenames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using zel::ComesBefore;
using zel::FindSequence;
using Names = std::vector<std::string>;

TEST(FileNames, NumbersAreSortedAsNumbers) {
    Names names = {"t10.tif", "t2.tif", "t1.tif", "s3.tif", "t2a.tif", "t02.tif", "t", "t100.tif", "T5.tif"};
    zel::SortFileNames(names);
    EXPECT_THAT(names,
                ElementsAre("T5.tif", "s3.tif", "t", "t1.tif", "t2.tif", "t02.tif", "t2a.tif", "t10.tif", "t100.tif"));
}

TEST(FileNames, EveryNumberInANameCounts) {
    Names names = {"z2t10", "z10t1", "z2t9", "z2", "z2t"};
    zel::SortFileNames(names);
    EXPECT_THAT(names, ElementsAre("z2", "z2t", "z2t9", "z2t10", "z10t1"));
}

TEST(FileNames, TheOrderIsStrictForNumbersOfAnyLength) {
    const Names names = {"",
                         "a",
                         "a0",
                         "a00",
                         "a1",
                         "a01",
                         "a01b",
                         "a1b",
                         "a99999999999999999999999999999",
                         "b1",
                         "a100000000000000000000000000000",
                         "1",
                         "01",
                         "a0b01",
                         "a00b1",
                         "a1b1"};
    for (const std::string& a : names) {
        for (const std::string& b : names) {
            EXPECT_EQ(int{ComesBefore(a, b)} + int{ComesBefore(b, a)}, a == b ? 0 : 1) << a << " " << b;
            for (const std::string& c : names) {
                if (ComesBefore(a, b) && ComesBefore(b, c)) {
                    EXPECT_TRUE(ComesBefore(a, c)) << a << " " << b << " " << c;
                }
            }
        }
    }
    EXPECT_TRUE(ComesBefore("a99999999999999999999999999999", "a100000000000000000000000000000"));
}

TEST(FileSequence, HasTheFilesThatDifferByOneNumber) {
    const Names folder = {"t10.tif", "t2.tif", "t1.tif",  "u3.tif",  "t3.tiff", "t4.TIF",
                          "tx.tif",  "t.tif",  "t5b.tif", "t-6.tif", "at7.tif"};
    EXPECT_THAT(FindSequence("t2.tif", folder), ElementsAre("t1.tif", "t2.tif", "t10.tif"));
    EXPECT_THAT(FindSequence("u3.tif", folder), ElementsAre("u3.tif"));
    EXPECT_THAT(FindSequence("t.tif", folder), ElementsAre("t.tif"));
    EXPECT_THAT(FindSequence("missing9.tif", folder), ElementsAre("missing9.tif"));
    EXPECT_THAT(FindSequence("t3.tif", folder), ElementsAre("t1.tif", "t2.tif", "t3.tif", "t10.tif"));
}

TEST(FileSequence, NumbersAreWrittenAlike) {
    // 01, 02 ... 10, 100 are padded to two digits; 1 and 2 are not, and 001 is to three.
    const Names folder = {"a01.tif", "a02.tif", "a09.tif", "a10.tif", "a100.tif", "a1.tif", "a2.tif", "a001.tif"};
    EXPECT_THAT(FindSequence("a01.tif", folder), ElementsAre("a01.tif", "a02.tif", "a09.tif", "a10.tif", "a100.tif"));
    EXPECT_THAT(FindSequence("a10.tif", folder), ElementsAre("a01.tif", "a02.tif", "a09.tif", "a10.tif", "a100.tif"));
    EXPECT_THAT(FindSequence("a1.tif", folder), ElementsAre("a1.tif", "a2.tif", "a10.tif", "a100.tif"));
    EXPECT_THAT(FindSequence("a001.tif", folder), ElementsAre("a001.tif", "a100.tif"));
    EXPECT_THAT(FindSequence("b0.tif", {"b0.tif", "b1.tif", "b00.tif"}), ElementsAre("b0.tif", "b1.tif"));
}

TEST(FileSequence, OfSeveralNumbersTheOneCountsThatGivesMost) {
    const Names grid = {"c1_t1.tif", "c1_t2.tif", "c1_t3.tif", "c2_t1.tif", "c2_t2.tif", "c2_t3.tif"};
    EXPECT_THAT(FindSequence("c2_t2.tif", grid), ElementsAre("c2_t1.tif", "c2_t2.tif", "c2_t3.tif"));
    const Names tall = {"1 of 3.tif", "2 of 3.tif", "3 of 3.tif"};
    EXPECT_THAT(FindSequence("2 of 3.tif", tall), ElementsAre("1 of 3.tif", "2 of 3.tif", "3 of 3.tif"));
    // Two along each: the last number.
    EXPECT_THAT(FindSequence("x1y1.ics", {"x1y1.ics", "x2y1.ics", "x1y2.ics", "x2y2.ics"}),
                ElementsAre("x1y1.ics", "x1y2.ics"));
}

TEST(FileSequence, NumbersInTheEndingAreNone) {
    EXPECT_THAT(FindSequence("a.tf2", {"a.tf2", "a.tf8"}), ElementsAre("a.tf2"));
    EXPECT_THAT(FindSequence("m_T01.ome.tif", {"m_T00.ome.tif", "m_T01.ome.tif", "m_T02.ome.tiff"}),
                ElementsAre("m_T00.ome.tif", "m_T01.ome.tif"));
    EXPECT_THAT(FindSequence("scan7", {"scan7", "scan11", "scan"}), ElementsAre("scan7", "scan11"));
    EXPECT_THAT(FindSequence(".7", {".7", ".8"}), ElementsAre(".7"));
}

} // namespace
