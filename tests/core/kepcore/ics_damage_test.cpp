// Damaged and hostile files end in an IOException, or in what is truly there.

#include "tests/core/kepcore/ics_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>

namespace ics_test {
namespace {

using ::testing::AnyOf;
using ::testing::Eq;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class IcsDamage : public ::testing::Test {
protected:
    std::string FailureOfText(const std::string& bytes) const {
        WriteBytes(folder / "a.ics", bytes);
        return FailureOf([&] { Read(folder / "a.ics"); });
    }
    std::string Damaged(const std::string& what) const {
        return "ReadImage(): The file '" + folder / "a.ics" + "' is damaged: " + what;
    }
    std::string NotSupported(const std::string& type) const {
        return "ReadImage(): The voxel type of '" + folder / "a.ics" + "' is not supported: " + type + ".";
    }

    ScratchFolder folder;
    const std::string voxels = std::string(12, 'v'); // of the usual header, 3 x 2 x 2
};

TEST_F(IcsDamage, HeadersThatPromiseNonsense) {
    struct Case {
        std::string key;
        std::string values;
        std::string what;
    };
    const std::string number = " is not a number from ";
    const std::vector<Case> cases = {
        {"layout\tparameters", "1", "line 4 of its header: '1'" + number + "2 to 11"},
        {"layout\tparameters", "12", "line 4 of its header: '12'" + number + "2 to 11"},
        {"layout\tparameters", "-4", "line 4 of its header: '-4'" + number + "2 to 11"},
        {"layout\tparameters", "4 ", ""}, // blanks don't matter
        {"layout\tparameters", "4\t4", "line 4 of its header: one value was expected, not 2"},
        {"layout\tparameters", "", "line 4 of its header: one value was expected, not 0"},
        {"layout\tparameters", "5", "its header promises 5 parameters, but orders 4 and gives the sizes of 4"},
        {"layout\torder", "bits\tx\ty", "its header promises 4 parameters, but orders 3 and gives the sizes of 4"},
        {"layout\torder", "x\ty\tz\tt", "its header gives a sample 0 bits"},
        {"layout\torder", "bits\tbits\ty\tz", "its header names the bits twice"},
        {"layout\torder", "bits\tx\tx\tz", "its header names the axis x twice"},
        {"layout\torder", "bits\tx\tT\tt", "its header names the axis t twice"},
        {"layout\tsizes", "8\t3\t2", "its header promises 4 parameters, but orders 4 and gives the sizes of 3"},
        {"layout\tsizes", "8\t3\t2\t0", "line 6 of its header: '0'" + number + "1 to 2147483647"},
        {"layout\tsizes", "8\t3\t2\t-2", "line 6 of its header: '-2'" + number + "1 to 2147483647"},
        {"layout\tsizes", "8\t3\t2\t2.0", "line 6 of its header: '2.0'" + number + "1 to 2147483647"},
        {"layout\tsizes", "8\t3\t2\t2147483648", "line 6 of its header: '2147483648'" + number + "1 to 2147483647"},
        {"layout\tsizes", "8\t3\t2\t99999999999999999999",
         "line 6 of its header: '99999999999999999999'" + number + "1 to 2147483647"},
        {"layout\tsizes", "8\t3\t\t2", "line 6 of its header: ''" + number + "1 to 2147483647"},
        {"layout\tsizes", "7\t3\t2\t2", "its header gives a sample 7 bits"},
        {"layout\tsizes", "8\t2147483647\t2147483647\t2147483647", "its header promises too many voxels"},
        {"layout\tsizes", "8\t2147483647\t512\t2", "its header promises too many voxels"}, // 2 TB
        {"layout\tsizes", "8\t3\t2\t3", "its header promises 18 bytes of voxels, which 12 bytes cannot hold"},
        {"layout\tsizes", "8\t1048576\t1048576\t1",
         "its header promises 1099511627776 bytes of voxels, which 12 bytes cannot hold"},
        {"representation\tformat", "float", "line 7 of its header: 'float' is not known"},
        {"representation\tsign", "minus", "line 8 of its header: 'minus' is not known"},
        {"representation\tcompression", "zip", "line 9 of its header: 'zip' is not known"},
        {"representation\tbyte_order", "1\t2", "the byte order in its header does not name each of 1 bytes once"},
        {"representation\tbyte_order", "2", "the byte order in its header does not name each of 1 bytes once"},
        {"representation\tbyte_order", "0", "line 10 of its header: '0'" + number + "1 to 16"},
        {"representation\tbyte_order", "", ""}, // then it is the machine's
        {"source\toffset", "-1", "line 11 of its header: '-1'" + number + "0 to 9223372036854775807"},
        {"source\tfile", "", "line 11 of its header: one value was expected, not 0"},
        {"layout", "", "line 11 of its header: 'layout' says nothing"},
        {"ics_version", "3.0", "line 11 of its header: version '3.0' of the format is not known"},
        {"representation\tformat", std::string(500, 'f'),
         "line 7 of its header: '" + std::string(60, 'f') + "...' is not known"},
        {"representation\tformat", "a\x01\xFFz",
         "line 7 of its header: 'a?"
         "?z' is not known"},
        {"layout\torder", std::string(100000, '\t') + "x",
         "its header promises 4 parameters, but orders 0 and gives the sizes of 4"},
    };
    for (const Case& damage : cases) {
        HeaderText header;
        header.Set(damage.key, damage.values);
        EXPECT_EQ(damage.what.empty() ? "" : Damaged(damage.what), FailureOfText(header.Text() + voxels))
            << damage.key << " " << damage.values.substr(0, 100);
    }
}

TEST_F(IcsDamage, AHeaderIsNoVoxels) {
    // Data in the header's own file, by its name and by another one of the same file. From the end of the header on
    // they are what they are.
    std::filesystem::create_hard_link((WriteBytes(folder / "a.ics", ""), folder / "a.ics"), folder / "b.ics");
    for (const char* name : {"a.ics", "b.ics"}) {
        HeaderText header;
        header.Set("source\tfile", name).Set("source\toffset", "100");
        const std::string length = std::to_string(header.Text().size());
        std::ofstream(folder / "a.ics") << header.Text() << voxels;
        EXPECT_EQ(FailureOf([&] { Read(folder / "a.ics"); }), Damaged("its voxels are said to lie in its header"));
        header.Set("source\toffset", length);
        std::ofstream(folder / "a.ics") << header.Text() << voxels;
        EXPECT_EQ(Read(folder / "a.ics").voxels, voxels);
    }
    // A header of version 1 whose data file is itself.
    const std::string text = HeaderText().SetVersion(1).Text();
    std::ofstream(folder / "a.ics") << text << voxels;
    std::filesystem::create_hard_link(folder / "a.ics", folder / "a.ids");
    EXPECT_EQ(FailureOf([&] { Read(folder / "a.ics"); }), Damaged("its voxels are said to lie in its header"));
}

TEST_F(IcsDamage, HeadersThatLackALine) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"layout\tparameters", "its header promises 0 parameters, but orders 4 and gives the sizes of 4"},
        {"layout\torder", "its header promises 4 parameters, but orders 0 and gives the sizes of 4"},
        {"layout\tsizes", "its header promises 4 parameters, but orders 4 and gives the sizes of 0"},
        {"representation\tformat", "its header names no format of the samples"},
        {"representation\tsign", "its header does not say whether the samples have a sign"},
        {"representation\tcompression", ""},
        {"representation\tbyte_order", ""},
    };
    for (const auto& [key, what] : cases) {
        HeaderText header;
        header.Drop(key);
        EXPECT_EQ(what.empty() ? "" : Damaged(what), FailureOfText(header.Text() + voxels)) << key;
    }
    std::string text = HeaderText().Text();
    text.resize(text.size() - 4); // without "end" and its line's end
    EXPECT_EQ(Damaged("its header has no end"), FailureOfText(text));
    EXPECT_EQ(Damaged("its header does not begin with an ics_version"), FailureOfText("\t\nfilename\tx\nend\n"));
    EXPECT_EQ(Damaged("its header does not begin with an ics_version"), FailureOfText(""));
}

TEST_F(IcsDamage, VoxelTypesThatNobodyHas) {
    HeaderText header;
    header.SetAxes("bits\tx", "128\t1").Drop("representation\tbyte_order");
    EXPECT_EQ(NotSupported("128-bit integer"), FailureOfText(header.Text() + voxels));
    header.SetAxes("bits\tx", "16\t1").Set("representation\tformat", "real");
    EXPECT_EQ(NotSupported("16-bit float"), FailureOfText(header.Text() + voxels));
    header.SetAxes("bits\tx", "32\t1").Set("representation\tformat", "complex");
    EXPECT_EQ(NotSupported("32-bit complex"), FailureOfText(header.Text() + voxels));
    header.SetAxes("bits\tx\tprobe", "64\t1\t3");
    EXPECT_EQ(NotSupported("colour of complex numbers"), FailureOfText(header.Text() + voxels));
}

TEST_F(IcsDamage, AHeaderWithoutEndIsNotReadForever) {
    const std::string text = HeaderText().Text();
    std::string endless = text.substr(0, text.size() - 4);
    while (endless.size() < (std::size_t{2} << 20U))
        endless += "history\tkey\tvalue\n";
    EXPECT_EQ(Damaged("its header is longer than 1048576 bytes"), FailureOfText(endless));
    const std::string oneLine = text.substr(0, text.size() - 4) + "history\t" + std::string(std::size_t{2} << 20U, 'x');
    EXPECT_EQ(Damaged("its header is longer than 1048576 bytes"), FailureOfText(oneLine));
}

TEST_F(IcsDamage, VersionOneHeadersCutInALineThatCounts) {
    WriteBytes(folder / "a.ids", voxels);
    HeaderText header;
    header.SetVersion(1).Set("parameter\tscale", "1\t0.25\t0.25\t0.125").Set("parameter\tunits", "um\tum\tum\tum");
    header.Set("history\tnote", "whatever");
    const std::string text = header.Text();
    EXPECT_EQ("", FailureOfText(text));
    EXPECT_EQ("", FailureOfText(text.substr(0, text.size() - 3))); // a note may be cut
    const std::size_t scale = text.find("0.125") + 3;              // 0.1 would be a size as well
    EXPECT_EQ(Damaged("line 11 of its header: it breaks off"), FailureOfText(text.substr(0, scale)));
}

TEST_F(IcsDamage, GzipDataMustEndWithTheVoxelsAndHaveTheirChecksum) {
    Frame frame = MakeFrame({NumberKind::Unsigned, 1}, 1, {70, 60, 5}, 9);
    frame.header.description = {};
    for (std::size_t i = 0; i < frame.voxels.size(); i += 3)
        frame.voxels[i] = 'x';
    Write(folder / "good.ics", frame, true);
    const std::string good = ReadBytes(folder / "good.ics");
    const std::size_t data = good.find("end\n") + 4;
    EXPECT_EQ("", FailureOfText(good));
    EXPECT_EQ("", FailureOfText(good + "what follows the stream is not read"));
    const std::string cut = Damaged("its packed data end before the last voxel");
    for (std::size_t size = good.size() - 1; size > data + 100; size -= 97)
        EXPECT_EQ(cut, FailureOfText(good.substr(0, size))) << size;
    for (std::size_t i = 1; i <= 8; ++i) { // four bytes of checksum, four of length
        std::string bad = good;
        bad[bad.size() - i] = static_cast<char>(bad[bad.size() - i] ^ 1);
        EXPECT_EQ(
            Damaged(i <= 4 ? "the length of its packed data is wrong" : "the checksum of its packed data is wrong"),
            FailureOfText(bad))
            << i;
    }
    std::string more = good;
    more.replace(more.find("\t70\t60\t5\n"), 9, "\t70\t60\t4\n");
    EXPECT_EQ(Damaged("its packed data go on behind the last voxel"), FailureOfText(more));
    more = good;
    more.replace(more.find("\t70\t60\t5\n"), 9, "\t70\t60\t6\n");
    EXPECT_EQ(cut, FailureOfText(more));
    std::string other = good.substr(0, data) + std::string(30000, 'p');
    EXPECT_EQ(Damaged("incorrect header check"), FailureOfText(other));
    other = good;
    other.replace(other.find("gzip"), 4, "compress");
    EXPECT_EQ(Damaged("its packed data are not those of compress"), FailureOfText(other));
    more = good;
    more.replace(more.find("\t70\t60\t5\n"), 9,
                 "\t2147483\t500\t900\n"); // 966,367,350,000 bytes, below the limit of all
    EXPECT_THAT(FailureOfText(more), StartsWith(Damaged("its header promises 966367350000 bytes of voxels, which ")));
}

TEST_F(IcsDamage, WhatIsNoPlainFileIsNotOpened) {
    ASSERT_EQ(0, ::mkfifo((folder / "a.ids").c_str(), 0600));
    EXPECT_EQ(Damaged("the file 'a.ids' with its voxels cannot be opened"),
              FailureOfText(HeaderText().SetVersion(1).Text()));
}

/// Reads whatever it is. Fails on anything but a good frame or the library's own failure.
void ReadOrRefuse(const std::string& fileName, int& good, int& refused) {
    try {
        const Frame frame = Read(fileName);
        EXPECT_EQ(CountBytes(frame.header), frame.voxels.size());
        ++good;
    } catch (const kep::IOException& failure) {
        EXPECT_THAT(failure.GetText(), StartsWith("ReadImage(): "));
        EXPECT_THAT(failure.GetText(), HasSubstr("a.i"));
        EXPECT_LT(failure.GetText().size(), 500U);
        ++refused;
    }
}

/// Valid files to be damaged: their headers and data, as pairs.
std::vector<std::pair<std::string, std::string>> ValidFiles(const ScratchFolder& folder) {
    std::vector<std::pair<std::string, std::string>> files;
    const auto add = [&](Frame frame, bool compress) {
        Write(folder / "v.ics", frame, compress);
        const std::string bytes = ReadBytes(folder / "v.ics");
        const std::size_t data = bytes.find("end\n") + 4;
        files.emplace_back(bytes.substr(0, data), bytes.substr(data));
    };
    add(MakeFrame({NumberKind::Unsigned, 1}, 1, {9, 8, 7}, 1), false);
    add(MakeFrame({NumberKind::Unsigned, 2}, 3, {9, 8, 3}, 2), true);
    add(MakeFrame({NumberKind::ComplexFloat, 8}, 1, {5, 4, 3}, 3), true);
    add(MakeFrame({NumberKind::Signed, 8}, 1, {4, 4, 4}, 4), false);
    files.emplace_back(HeaderText().Set("source\tfile", "a.ids").Set("source\toffset", "1").Text(), "");
    files.emplace_back(HeaderText().SetVersion(1).Set("representation\tcompression", "compress").Text(), "");
    return files;
}

TEST_F(IcsDamage, CutsAtEveryPlace) {
    WriteBytes(folder / "a.ids", voxels + "v");
    int good = 0;
    int refused = 0;
    for (const auto& [header, data] : ValidFiles(folder)) {
        const std::string whole = header + data;
        for (std::size_t size = 0; size < whole.size(); size += size < header.size() ? 1 : 7) {
            WriteBytes(folder / "a.ics", whole.substr(0, size));
            ReadOrRefuse(folder / "a.ics", good, refused);
        }
    }
    EXPECT_GT(refused, 1000);
    // Only files whose voxels lie elsewhere can lose a part of their header and be good.
    EXPECT_LT(good, 200);
}

TEST_F(IcsDamage, ThousandsOfChangesAtRandom) {
    WriteBytes(folder / "a.ids", voxels + "v");
    const std::vector<std::string> words = {"",    "0",   "1",          "-1",   "3",        "8",       "16",   "64",
                                            "128", "1e9", "2147483647", "gzip", "compress", "complex", "real", "bits",
                                            "x",   "t",   "probe",      "end",  "\n",       "\t",      "\r",   "nan",
                                            "2.0", "1.0", "inf",        "..",   "\xFF",     "signed"};
    std::mt19937 random(20240615);
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    int good = 0;
    int refused = 0;
    for (const auto& [header, data] : ValidFiles(folder)) {
        for (int variant = 0; variant < 1500; ++variant) {
            std::string text = header;
            std::string bytes = data;
            for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
                const std::size_t at = below(text.size());
                switch (below(6)) {
                case 0: // another byte
                    text[at] = static_cast<char>(random() & 0xFFU);
                    break;
                case 1: // a stretch lost
                    text.erase(at, 1 + below(20));
                    break;
                case 2: // a stretch twice
                    text.insert(at, text.substr(below(text.size()), 1 + below(60)));
                    break;
                case 3: { // another word
                    const std::size_t start = text.find('\t', at);
                    if (start != std::string::npos)
                        text.replace(start + 1, text.find_first_of("\t\n", start + 1) - start - 1,
                                     words[below(words.size())]);
                    break;
                }
                case 4: { // another digit
                    const std::size_t digit = text.find_first_of("0123456789", at);
                    if (digit != std::string::npos)
                        text[digit] = static_cast<char>('0' + below(10));
                    break;
                }
                default: // the data
                    if (!bytes.empty())
                        bytes[below(bytes.size())] = static_cast<char>(random() & 0xFFU);
                }
                if (text.empty())
                    text.assign(1, ' ');
            }
            WriteBytes(folder / "a.ics", text + bytes);
            ReadOrRefuse(folder / "a.ics", good, refused);
        }
    }
    EXPECT_EQ(9000, good + refused);
    EXPECT_GT(good, 1000); // changes of the description, of scales, of plain voxels
    EXPECT_GT(refused, 2000);
    rusage usage{};
    ASSERT_EQ(0, ::getrusage(RUSAGE_SELF, &usage));
    EXPECT_LT(usage.ru_maxrss, 1000000); // kilobytes: no promise was believed
}

} // namespace
} // namespace ics_test
