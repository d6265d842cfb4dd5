// ICS files with several channels and time points, their axes in any order, packed and not.

#include "tests/core/kepcore/ics_packing.h"
#include "tests/core/kepcore/ics_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace ics_test {
namespace {

using ::testing::HasSubstr;
using ::testing::Optional;

class IcsFrames : public ::testing::Test {
protected:
    std::unique_ptr<kep::detail::FrameSet> Open(const std::string& bytes) const {
        WriteBytes(folder / "a.ics", bytes);
        return kep::detail::OpenIcsFrames(std::make_unique<kep::detail::InputFile>(folder / "a.ics"));
    }

    ScratchFolder folder;
};

std::string ReadAll(kep::detail::FrameSet& frames, std::size_t channel, std::size_t time, std::size_t step) {
    const auto source = frames.Open(channel, time);
    const FrameHeader& header = source->GetHeader();
    std::string voxels(CountBytes(header), '\xCD');
    for (std::size_t z = 0; z < header.size.z; z += step)
        source->ReadSlices(std::min(step, header.size.z - z),
                           reinterpret_cast<std::byte*>(voxels.data()) + z * header.GetSliceBytes());
    return voxels;
}

struct Axis {
    const char* name;
    std::size_t size;
};

/// The header of a file of 16-bit voxels.
HeaderText MakeHeader(const std::vector<Axis>& axes, const char* packing) {
    std::string order = "bits";
    std::string sizes = "16";
    for (const Axis& axis : axes) {
        order.append("\t").append(axis.name);
        sizes.append("\t").append(std::to_string(axis.size));
    }
    HeaderText header;
    header.SetAxes(order, sizes);
    header.Set("representation\tbyte_order", "2\t1"); // the machine's is 1 2
    return header.Set("representation\tcompression", packing);
}

TEST_F(IcsFrames, AxesInAnyOrder) {
    std::vector<Axis> axes = {{"ch", 2}, {"t", 3}, {"x", 4}, {"y", 2}, {"z", 3}};
    const auto byName = [](const Axis& a, const Axis& b) { return std::string(a.name) < b.name; };
    std::string stored(2 * 2 * 3 * 4 * 2 * 3, '\0'); // sample k is k
    for (std::size_t k = 0; k < stored.size() / 2; ++k)
        stored[2 * k + 1] = static_cast<char>(k);
    const std::string packed = Gzip(stored);
    do {
        std::array<std::size_t, 5> steps{}; // of ch, t, x, y, z
        std::size_t step = 1;
        std::string name;
        for (const Axis& axis : axes) {
            steps[std::string("ctxyz").find(axis.name[0])] = step;
            step *= axis.size;
            name += axis.name;
        }
        for (const bool isPacked : {false, true}) {
            const auto frames =
                Open(MakeHeader(axes, isPacked ? "gzip" : "uncompressed").Text() + (isPacked ? packed : stored));
            ASSERT_EQ(frames->GetAxes().channels, 2U);
            ASSERT_EQ(frames->GetAxes().times, 3U);
            ASSERT_EQ(frames->GetHeader().size, (kep::Vector3d<std::size_t>(4, 2, 3)));
            for (const std::size_t t : {0U, 2U, 1U}) { // once backwards
                for (const std::size_t c : {0U, 1U}) {
                    std::string expected;
                    for (std::size_t i = 0; i < 24; ++i) {
                        const std::size_t k =
                            c * steps[0] + t * steps[1] + i % 4 * steps[2] + i / 4 % 2 * steps[3] + i / 8 * steps[4];
                        expected += {static_cast<char>(k), '\0'};
                    }
                    ASSERT_EQ(ReadAll(*frames, c, t, 1 + t), expected) << name << " c " << c << " t " << t;
                }
            }
        }
    } while (std::next_permutation(axes.begin(), axes.end(), byName));
}

TEST_F(IcsFrames, SeveralAxesOfChannelsCountTogether) {
    // c fastest, then ch: channel c + 2 ch, one voxel each.
    HeaderText header;
    header.SetAxes("bits\tc\tch\tx", "8\t2\t3\t1");
    const auto frames = Open(header.Text() + std::string{0, 1, 2, 3, 4, 5});
    ASSERT_EQ(frames->GetAxes().channels, 6U);
    for (std::size_t c = 0; c < 6; ++c)
        EXPECT_EQ(ReadAll(*frames, c, 0, 1), std::string(1, static_cast<char>(c)));
}

TEST_F(IcsFrames, ThreeChannelsAreNoColourHere) {
    HeaderText header;
    header.SetAxes("bits\tch\tx", "8\t3\t2");
    const auto frames = Open(header.Text() + std::string{0, 1, 2, 3, 4, 5});
    EXPECT_EQ(frames->GetAxes().channels, 3U);
    EXPECT_EQ(frames->GetHeader().components, 1);
    EXPECT_EQ(ReadAll(*frames, 1, 0, 1), (std::string{1, 4}));
}

TEST_F(IcsFrames, TheScaleOfTimesIsTheInterval) {
    HeaderText header;
    header.SetAxes("bits\tx\tt", "8\t1\t2");
    header.Set("parameter\tscale", "1\t1\t250").Set("parameter\tunits", "bits\tmicrometers\tmilliseconds");
    EXPECT_THAT(Open(header.Text() + "ab")->GetAxes().frameInterval, Optional(0.25));
    header.Set("parameter\tunits", "bits\tmicrometers\tmicrometers");
    EXPECT_EQ(Open(header.Text() + "ab")->GetAxes().frameInterval, std::nullopt);
}

TEST_F(IcsFrames, PackedDataAreCheckedToTheirEnd) {
    HeaderText header;
    header.SetAxes("bits\tx\tt", "8\t1000\t9").Set("representation\tcompression", "gzip");
    std::string bytes = header.Text() + Gzip(RandomBytes(9000, 1));
    EXPECT_EQ(FailureOf([&] { ReadAll(*Open(bytes), 0, 0, 1); }), "");
    bytes[bytes.size() - 8] = static_cast<char>(bytes[bytes.size() - 8] + 1); // the checksum
    EXPECT_THAT(FailureOf([&] { ReadAll(*Open(bytes), 0, 0, 1); }), HasSubstr("checksum"));
    bytes.resize(bytes.size() - 2000);
    EXPECT_THAT(FailureOf([&] { ReadAll(*Open(bytes), 0, 0, 1); }), HasSubstr("end before the last voxel"));
}

TEST_F(IcsFrames, DamagedDataAreRefusedAgainWheneverTheyAreAskedFor) {
    HeaderText header;
    header.SetAxes("bits\tx\ty\tt", "8\t8\t4\t3").Set("representation\tcompression", "gzip");
    const std::string start("\x1f\x8b\x08\0\0\0\0\0\0\3", 10);
    const std::string invalid = "\xf4\xf4\xf4\x84\x96\x42\x02\xbf\x3c\x81\xb3\x5a\x45\x68\xe4\x63\xdb\x90\xff\x50";
    const auto frames = Open(header.Text() + start + invalid);
    for (const std::size_t time : {0U, 0U, 0U, 1U, 2U, 0U, 2U})
        EXPECT_THAT(FailureOf([&] { ReadAll(*frames, 0, time, 1); }), HasSubstr("invalid block"));
}

TEST_F(IcsFrames, NumbersThatTheFileCannotHoldAreRefused) {
    HeaderText header;
    header.SetAxes("bits\tx\ty\tt", "8\t3\t2\t3");
    EXPECT_THAT(FailureOf([&] { Open(header.Text() + "twelve bytes"); }), HasSubstr("18 bytes of voxels"));
    for (const char* sizes : {"8\t2147483647\t2147483647\t2147483647", "8\t1\t1\t2147483647"}) {
        header.SetAxes("bits\tx\tch\tt", sizes);
        EXPECT_THAT(FailureOf([&] { Open(header.Text() + "twelve bytes"); }), HasSubstr("is damaged"));
    }
}

} // namespace
} // namespace ics_test
