// Headers and data as other programs write them: axes, bytes, files and packing in any arrangement.

#include "tests/core/kepcore/ics_packing.h"
#include "tests/core/kepcore/ics_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace ics_test {
namespace {

const std::string counting = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}; // voxels of the usual header, 3 x 2 x 2

class IcsLayout : public ::testing::Test {
protected:
    Frame ReadText(const std::string& bytes) const {
        WriteBytes(folder / "a.ics", bytes);
        return Read(folder / "a.ics");
    }
    std::string FailureOfText(const std::string& bytes) const {
        WriteBytes(folder / "a.ics", bytes);
        return FailureOf([&] { Read(folder / "a.ics"); });
    }
    std::string Damaged(const std::string& what) const {
        return "ReadImage(): The file '" + folder / "a.ics" + "' is damaged: " + what;
    }

    ScratchFolder folder;
};

TEST_F(IcsLayout, ThePlainHeader) {
    const Frame frame = ReadText(HeaderText().Text() + counting);
    EXPECT_EQ((kep::Vector3d<std::size_t>(3, 2, 2)), frame.header.size);
    EXPECT_EQ(counting, frame.voxels);
    EXPECT_EQ(kep::Resolution(), frame.header.resolution);
    EXPECT_TRUE(frame.header.description.empty());
}

/// An axis of a test file: its name and its size.
struct TestAxis {
    char name;
    std::size_t size;
};

/// Writes samples so that each names its own coordinates, in the order of the axes, and reads them.
void CheckOrder(const ScratchFolder& folder, const std::vector<TestAxis>& axes, bool compress, std::size_t bitsAt) {
    std::string order;
    std::string sizes;
    std::size_t count = 1;
    for (std::size_t i = 0; i <= axes.size(); ++i) {
        if (i == bitsAt) {
            order += "\tbits";
            sizes += "\t16";
        }
        if (i < axes.size()) {
            order.append("\t").append(axes[i].name == 'c' ? "probe" : std::string(1, axes[i].name));
            sizes.append("\t").append(std::to_string(axes[i].size));
            count *= axes[i].size;
        }
    }
    SCOPED_TRACE(order + (compress ? " packed" : ""));
    std::size_t nx = 1, ny = 1, nz = 1, nc = 1;
    std::vector<std::uint16_t> samples;
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t rest = i;
        std::size_t name = 0;
        for (const TestAxis& axis : axes) {
            const std::size_t at = rest % axis.size;
            rest /= axis.size;
            name += at * (axis.name == 'c' ? 1U : axis.name == 'x' ? 10U : axis.name == 'y' ? 100U : 1000U);
            (axis.name == 'c' ? nc : axis.name == 'x' ? nx : axis.name == 'y' ? ny : nz) = axis.size;
        }
        samples.push_back(static_cast<std::uint16_t>(name));
    }
    const std::string bytes(reinterpret_cast<const char*>(samples.data()), 2 * samples.size());
    HeaderText header;
    header.SetAxes(order.substr(1), sizes.substr(1)).Set("representation\tbyte_order", "1\t2");
    header.Set("representation\tcompression", compress ? "gzip" : "uncompressed");
    WriteBytes(folder / "o.ics", header.Text() + (compress ? Gzip(bytes) : bytes));
    const Frame frame = Read(folder / "o.ics");
    ASSERT_EQ((kep::Vector3d<std::size_t>(nx, ny, nz)), frame.header.size);
    ASSERT_EQ(nc, static_cast<std::size_t>(frame.header.components));
    std::size_t i = 0;
    for (std::size_t z = 0; z < nz; ++z)
        for (std::size_t y = 0; y < ny; ++y)
            for (std::size_t x = 0; x < nx; ++x)
                for (std::size_t c = 0; c < nc; ++c, ++i) {
                    std::uint16_t sample = 0;
                    std::memcpy(&sample, frame.voxels.data() + 2 * i, 2);
                    ASSERT_EQ(c + 10 * x + 100 * y + 1000 * z, sample) << x << " " << y << " " << z << " " << c;
                }
}

TEST_F(IcsLayout, VoxelsLandWhereTheyBelongWhateverTheOrderOfTheAxes) {
    std::vector<TestAxis> axes = {{'c', 3}, {'x', 5}, {'y', 4}, {'z', 6}};
    const auto byName = [](const TestAxis& a, const TestAxis& b) { return a.name < b.name; };
    std::sort(axes.begin(), axes.end(), byName);
    std::size_t bitsAt = 0;
    do {
        for (const bool compress : {false, true})
            CheckOrder(folder, axes, compress, bitsAt++ % 5);
    } while (std::next_permutation(axes.begin(), axes.end(), byName));

    axes = {{'x', 5}, {'y', 4}, {'z', 6}};
    do {
        for (const bool compress : {false, true})
            CheckOrder(folder, axes, compress, bitsAt++ % 4);
    } while (std::next_permutation(axes.begin(), axes.end(), byName));

    axes = {{'c', 3}, {'x', 5}, {'y', 4}, {'z', 1}};
    do {
        CheckOrder(folder, axes, false, 0);
    } while (std::next_permutation(axes.begin(), axes.end(), byName));
    CheckOrder(folder, {{'x', 5}}, false, 0);
    CheckOrder(folder, {{'z', 5}, {'x', 3}}, false, 1);
}

TEST_F(IcsLayout, AxesOfOneAreIgnoredAndThreeOfAnyNameAreColour) {
    HeaderText header;
    header.SetAxes("bits\tx\ty\tz\tt\tp", "8\t3\t2\t2\t1\t1");
    EXPECT_EQ(counting, ReadText(header.Text() + counting).voxels);
    for (const char* name : {"probe", "ch", "c", "rgb", "CH"}) {
        header.SetAxes(std::string("bits\t") + name + "\tx\ty", "8\t3\t2\t2");
        const Frame frame = ReadText(header.Text() + counting);
        EXPECT_EQ(3, frame.header.components);
        EXPECT_FALSE(frame.header.componentsAreChannels);
        EXPECT_EQ((kep::Vector3d<std::size_t>(2, 2, 1)), frame.header.size);
        EXPECT_EQ(counting, frame.voxels);
    }
}

TEST_F(IcsLayout, TimePointsAndChannelsAreRefused) {
    const std::string start = "ReadImage(): '" + folder / "a.ics" + "' holds ";
    HeaderText header;
    header.SetAxes("bits\tx\ty\tt", "8\t3\t2\t2");
    EXPECT_EQ(start + "2 time points; one file must hold one frame.", FailureOfText(header.Text() + counting));
    header.SetAxes("bits\tx\ty\tt", "8\t2\t2\t3"); // three of them are no colour either
    EXPECT_EQ(start + "3 time points; one file must hold one frame.", FailureOfText(header.Text() + counting));
    header.SetAxes("bits\tx\ty\tch", "8\t3\t2\t2");
    EXPECT_EQ(start + "2 channels; one frame holds one.", FailureOfText(header.Text() + counting));
    header.SetAxes("bits\tx\tt\tch", "8\t2\t3\t2");
    EXPECT_EQ(start + "2 channels and 3 time points; one frame holds one of each.",
              FailureOfText(header.Text() + counting));
    header.SetAxes("bits\tx\tc\tch", "8\t2\t3\t2");
    EXPECT_EQ(start + "6 channels; one frame holds one.", FailureOfText(header.Text() + counting));
}

TEST_F(IcsLayout, BytesInAnyOrder) {
    // One voxel whose bytes, least significant first, are 1 2 3 4 5 6 7 8; byte i of the file has the significance
    // that the header gives it.
    const std::vector<std::string> orders = {"1\t2\t3\t4\t5\t6\t7\t8", "8\t7\t6\t5\t4\t3\t2\t1",
                                             "2\t1\t4\t3\t6\t5\t8\t7", "7\t8\t5\t6\t3\t4\t1\t2",
                                             "3\t1\t2\t8\t7\t4\t6\t5"};
    for (const std::string& order : orders) {
        std::string bytes;
        for (const char c : order)
            if (c != '\t')
                bytes += static_cast<char>(c - '0');
        HeaderText header;
        header.SetAxes("bits\tx\ty", "64\t2\t1").Set("representation\tbyte_order", order);
        const Frame frame = ReadText(header.Text() + bytes + bytes);
        std::array<std::uint64_t, 2> voxels{};
        ASSERT_EQ(sizeof voxels, frame.voxels.size());
        std::memcpy(voxels.data(), frame.voxels.data(), sizeof voxels);
        EXPECT_EQ(0x0807060504030201U, voxels[0]) << order;
        EXPECT_EQ(0x0807060504030201U, voxels[1]) << order;
    }
    for (const std::string order : {"1\t2", "2\t1"}) {
        HeaderText header;
        header.SetAxes("bits\tx", "16\t1").Set("representation\tbyte_order", order);
        std::uint16_t voxel = 0;
        std::memcpy(&voxel, ReadText(header.Text() + "\x03\x05").voxels.data(), 2);
        EXPECT_EQ(order == "1\t2" ? 0x0503 : 0x0305, voxel);
    }
}

TEST_F(IcsLayout, BigEndianFloatsAndComplexNumbers) {
    // 1.5F is 3F C0 00 00, -2.0F is C0 00 00 00.
    const std::string bytes("\x3F\xC0\0\0\xC0\0\0\0", 8);
    HeaderText header;
    header.SetAxes("bits\tx\ty", "32\t2\t1").Set("representation\tbyte_order", "4\t3\t2\t1");
    header.Set("representation\tformat", "real").Drop("representation\tsign");
    Frame frame = ReadText(header.Text() + bytes);
    std::array<float, 2> numbers{};
    std::memcpy(numbers.data(), frame.voxels.data(), 8);
    EXPECT_EQ((std::array<float, 2>{1.5F, -2.0F}), numbers);

    header.SetAxes("bits\tx\ty", "64\t1\t1").Set("representation\tbyte_order", "4\t3\t2\t1\t8\t7\t6\t5");
    header.Set("representation\tformat", "complex");
    frame = ReadText(header.Text() + bytes);
    EXPECT_EQ((SampleType{NumberKind::ComplexFloat, 4}), frame.header.sample);
    std::memcpy(numbers.data(), frame.voxels.data(), 8);
    EXPECT_EQ((std::array<float, 2>{1.5F, -2.0F}), numbers);
}

TEST_F(IcsLayout, LinesEndAsTheFirstOneSays) {
    std::string text = HeaderText().Set("history\tnote", "a b").Text();
    const auto replace = [&](char separator, const std::string& with) {
        std::string changed;
        for (const char c : text)
            changed += c == separator ? with : std::string(1, c);
        return changed;
    };
    for (const std::string& changed :
         {replace('\n', "\r\n"), replace('\n', "\r"), replace('\n', ";"), replace('\t', "|")}) {
        const Frame frame = ReadText(changed + counting);
        EXPECT_EQ(counting, frame.voxels);
        EXPECT_EQ("a b", frame.header.description.at("note"));
    }
    std::string custom = replace('\n', ";");
    custom.insert(2, 1, '\n');
    EXPECT_EQ(counting, ReadText(custom + counting).voxels);
}

TEST_F(IcsLayout, OtherCategoriesMayHoldAnything) {
    HeaderText header;
    header.Set("sensor\ts_params", "PinholeRadius\t1\tx\xFF\x01")
        .Set("view\tview", "D3D\tdump\t" + std::string(5000, 'v'));
    header.Set("sensor", "").Set("layout\tcoordinates", "video").Set("layout\tsignificant_bits", "none");
    header.Set("parameter\tlabels", "x").Set("unknown", "\t\t\t");
    EXPECT_EQ(counting, ReadText(header.Text() + counting).voxels);
}

TEST_F(IcsLayout, UnitsInAllSpellings) {
    const std::vector<std::pair<std::string, float>> units = {
        {"micrometers", 4.0F},
        {"Micrometer", 4.0F},
        {"microns", 4.0F},
        {"micron", 4.0F},
        {"um", 4.0F},
        {"UM", 4.0F},
        {"\xC2\xB5m", 4.0F},
        {"\xCE\xBCm", 4.0F},
        {"\xB5m", 4.0F},
        {"nm", 4000.0F},
        {"nanometer", 4000.0F},
        {"nanometers", 4000.0F},
        {"mm", 0.004F},
        {"millimeters", 0.004F},
        {"cm", 0.0004F},
        {"m", 4e-6F},
        {"meter", 4e-6F},
        {"meters", 4e-6F},
        {"inch", static_cast<float>(1 / (0.25 * 25400))}, // an inch has 25400 microns
        {"undefined", 0.0F},
        {"pixel", 0.0F},
        {"", 0.0F},
        {"furlong", 0.0F},
    };
    for (const auto& [unit, resolution] : units) {
        HeaderText header;
        header.Set("parameter\tscale", "1\t0.25\t0.25\t0.25").Set("parameter\torigin", "0\t2\t4\t8");
        header.Set("parameter\tunits", "relative\t" + unit + "\t" + unit + "\t" + unit);
        const Frame frame = ReadText(header.Text() + counting);
        EXPECT_EQ(kep::Resolution(resolution, resolution, resolution), frame.header.resolution) << unit;
        // The offset is in the same unit: 2 units are 8 voxels of 0.25.
        const float offset = resolution == 0.0F ? 0.0F : 8.0F / resolution;
        EXPECT_FLOAT_EQ(offset, frame.header.offset.x) << unit;
        EXPECT_FLOAT_EQ(4 * offset, frame.header.offset.z) << unit;
    }
}

TEST_F(IcsLayout, ParametersFollowTheirAxis) {
    HeaderText header;
    header.SetAxes("z\tbits\tprobe\ty\tx", "2\t8\t3\t1\t2");
    header.Set("parameter\tscale", "0.5\t99\t88\t0.25\t0.125").Set("parameter\torigin", "3\t99\t88\t2\t1");
    header.Set("parameter\tunits", "um\tum\tum\tum\tum");
    const Frame frame = ReadText(header.Text() + counting);
    EXPECT_EQ(kep::Resolution(8, 4, 2), frame.header.resolution);
    EXPECT_EQ(kep::Vector3d<float>(1, 2, 3), frame.header.offset);
}

TEST_F(IcsLayout, ScalesThatAreNoneAreUndefined) {
    for (const char* scale : {"0", "-1", "nan", "inf", "x", "0,25", "1e-999", "1e999", "1e-300", ""}) {
        HeaderText header;
        header.Set("parameter\tscale", std::string("1\t") + scale + "\t0.5\t0.5");
        header.Set("parameter\tunits", "relative\tum\tum\tum");
        EXPECT_EQ(kep::Resolution(0, 2, 2), ReadText(header.Text() + counting).header.resolution) << scale;
    }
    HeaderText header;
    header.Set("parameter\tscale", "1\t+0.5\t5e-1\t0.50").Set("parameter\tunits", "relative\tum\tum\tum");
    EXPECT_EQ(kep::Resolution(2, 2, 2), ReadText(header.Text() + counting).header.resolution);
    header.Set("parameter\tunits", "relative\tum\tum"); // z says nothing
    EXPECT_EQ(kep::Resolution(2, 2, 0), ReadText(header.Text() + counting).header.resolution);
}

TEST_F(IcsLayout, OneSliceWithoutZTakesTheResolutionOfX) {
    HeaderText header;
    header.SetAxes("bits\tx\ty", "8\t4\t3");
    header.Set("parameter\tscale", "1\t0.5\t0.25").Set("parameter\tunits", "relative\tum\tum");
    EXPECT_EQ(kep::Resolution(2, 4, 2), ReadText(header.Text() + counting).header.resolution);
    header.SetAxes("bits\tx\ty\tz", "8\t4\t3\t1").Set("parameter\tscale", "1\t0.5\t0.25\t0.125");
    EXPECT_EQ(kep::Resolution(2, 4, 2), ReadText(header.Text() + counting).header.resolution);
    header.Set("parameter\tunits", "relative\tum\tum\tum");
    EXPECT_EQ(kep::Resolution(2, 4, 8), ReadText(header.Text() + counting).header.resolution);
}

TEST_F(IcsLayout, HistoryBecomesTheDescription) {
    HeaderText header;
    std::string text = header.Text();
    text.insert(text.find("end\n"),
                "history\ta line\nhistory\tkey\tvalue\twith tab\nhistory\tkey\t\nhistory\tkey\tagain\n"
                "history\nhistory\tb line\n");
    const std::map<std::string, std::string> expected = {{"history", "a line\n\nb line"},
                                                         {"key", "value\twith tab\n\nagain"}};
    EXPECT_EQ(expected, ReadText(text + counting).header.description);
}

TEST_F(IcsLayout, VersionOneFindsItsDataWhateverTheirSuffix) {
    struct File {
        const char* header;
        const char* data;
        char kind;
    };
    const std::vector<File> files = {
        {"a.ics", "a.ids", 'p'},     {"b.ICS", "b.IDS", 'p'},    {"c.ics", "c.Ids", 'p'},
        {"d.ics", "d.ids.gz", 'g'},  {"e.ics", "e.IDS.GZ", 'g'}, {"f.ics", "f.ids.Z", 'c'},
        {"g.Ics", "g.ids.z", 'c'},   {"h.ics", "h.IDS.Z", 'c'},  {"no suffix", "no suffix.ids", 'p'},
        {"a.b.ics", "a.b.ids", 'p'},
    };
    for (const File& file : files) {
        for (const char* said : {"uncompressed", "gzip", "compress"}) {
            SCOPED_TRACE(std::string(file.header) + " " + said);
            const ScratchFolder own;
            WriteBytes(own / file.header, HeaderText().SetVersion(1).Set("representation\tcompression", said).Text());
            WriteBytes(own / file.data, file.kind == 'p'   ? counting
                                        : file.kind == 'g' ? Gzip(counting)
                                                           : Compress(counting));
            const Frame frame = Read(own / file.header);
            EXPECT_EQ(counting, frame.voxels);
            EXPECT_EQ(file.kind == 'p' ? "none" : file.kind == 'g' ? "gzip" : "compress", frame.header.compression);
            EXPECT_EQ(std::filesystem::file_size(own / file.header) + std::filesystem::file_size(own / file.data),
                      frame.header.fileSize);
        }
    }
}

TEST_F(IcsLayout, PackedDataUnderThePlainSuffixAreUnpackedIfTheHeaderSaysSo) {
    HeaderText header;
    header.SetVersion(1).Set("representation\tcompression", "gzip");
    WriteBytes(folder / "a.ids", Gzip(counting));
    EXPECT_EQ(counting, ReadText(header.Text()).voxels);
    WriteBytes(folder / "a.ids", Compress(counting));
    header.Set("representation\tcompression", "compress");
    EXPECT_EQ(counting, ReadText(header.Text()).voxels);
    header.Set("representation\tcompression", "uncompressed"); // then they are the voxels
    const std::string packed = Gzip(counting);
    ASSERT_GE(packed.size(), counting.size());
    WriteBytes(folder / "a.ids", packed);
    EXPECT_EQ(packed.substr(0, counting.size()), ReadText(header.Text()).voxels);
}

TEST_F(IcsLayout, VersionOneTakesThePlainDataFirst) {
    WriteBytes(folder / "a.ids", counting);
    WriteBytes(folder / "a.ids.gz", Gzip(std::string(12, 'g')));
    WriteBytes(folder / "a.ids.Z", Compress(std::string(12, 'c')));
    const std::string text = HeaderText().SetVersion(1).Text();
    EXPECT_EQ(counting, ReadText(text).voxels);
    std::filesystem::remove(folder / "a.ids");
    EXPECT_EQ(std::string(12, 'g'), ReadText(text).voxels);
    std::filesystem::remove(folder / "a.ids.gz");
    EXPECT_EQ(std::string(12, 'c'), ReadText(text).voxels);
    std::filesystem::remove(folder / "a.ids.Z");
    EXPECT_EQ(Damaged("the .ids file with its voxels is missing"), FailureOfText(text));
}

TEST_F(IcsLayout, CompressDataOfManyCodes) {
    // Long enough for codes of all lengths, and for the table to be thrown away and begun anew.
    std::mt19937 random(7);
    std::string voxels(640 * 480 * 2, '\0');
    for (std::size_t i = 0; i < voxels.size(); ++i)
        voxels[i] = static_cast<char>(i < voxels.size() / 2 ? random() % 5 : random() % 256);
    HeaderText header;
    header.SetAxes("bits\tx\ty\tz", "8\t640\t480\t2").Set("representation\tcompression", "compress");
    const Frame frame = ReadText(header.Text() + Compress(voxels));
    EXPECT_TRUE(voxels == frame.voxels);
    EXPECT_EQ("compress", frame.header.compression);
}

TEST_F(IcsLayout, GzipInSeveralMembers) {
    HeaderText header;
    header.Set("representation\tcompression", "gzip");
    EXPECT_EQ(counting,
              ReadText(header.Text() + Gzip(counting.substr(0, 5)) + Gzip("") + Gzip(counting.substr(5))).voxels);
}

TEST_F(IcsLayout, SourceFiles) {
    HeaderText header;
    header.Set("source\tfile", "raw file.bin").Set("source\toffset", "3");
    WriteBytes(folder / "raw file.bin", "abc" + counting);
    EXPECT_EQ(counting, ReadText(header.Text()).voxels);
    header.Set("source\toffset", "4");
    EXPECT_THAT(FailureOfText(header.Text()), ::testing::HasSubstr("raw file.bin' is damaged: "));
    header.Set("source\toffset", "9223372036854775807");
    EXPECT_THAT(FailureOfText(header.Text()), ::testing::HasSubstr("raw file.bin' is damaged: "));
    header.Set("source\toffset", "3").Set("representation\tcompression", "gzip");
    std::string raw = "abc";
    raw.append(Gzip(counting)).append("more");
    WriteBytes(folder / "raw file.bin", raw);
    EXPECT_EQ(counting, ReadText(header.Text()).voxels);
    for (const std::string name : {"/dev/zero", "../raw file.bin", "sub/raw.bin", "/etc/passwd"}) {
        header.Set("source\tfile", name);
        EXPECT_EQ(Damaged("its voxels are said to lie in another folder"), FailureOfText(header.Text()));
    }
    for (const std::string name : {"none.bin", "..", "."}) {
        header.Set("source\tfile", name);
        EXPECT_EQ(Damaged("the file '" + name + "' with its voxels cannot be opened"), FailureOfText(header.Text()));
    }
}

} // namespace
} // namespace ics_test
