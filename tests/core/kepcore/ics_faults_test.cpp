// Frames of an ICS file that the system fails to read the first time.

#include "tests/core/kepcore/ics_packing.h"
#include "tests/core/kepcore/ics_support.h"
#include "tests/support/failing_calls.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace ics_test {
namespace {

constexpr std::size_t frameBytes = 200'000;
constexpr std::size_t frameCount = 6;

struct Packing {
    const char* name;
    std::string (*pack)(const std::string& bytes);
};

const Packing packings[] = {
    {"uncompressed", [](const std::string& bytes) { return bytes; }}, {"gzip", &Gzip}, {"compress", &Compress}};

class IcsFramesAgain : public testing::TestWithParam<Packing> {
protected:
    IcsFramesAgain() {
        HeaderText header;
        header.SetAxes("bits\tx\tt", "8\t" + std::to_string(frameBytes) + "\t" + std::to_string(frameCount));
        header.Set("representation\tcompression", GetParam().name);
        WriteBytes(name, header.Text() + GetParam().pack(voxels));
    }

    static std::string Read(kep::detail::FrameSet& frames, std::size_t time) {
        std::string frame(frameBytes, '\xCD');
        frames.Open(0, time)->ReadSlices(1, reinterpret_cast<std::byte*>(frame.data()));
        return frame;
    }
    std::string GetVoxels(std::size_t time) const { return voxels.substr(time * frameBytes, frameBytes); }

    ScratchFolder folder;
    std::string name = folder / "a.ics";
    std::string voxels = RandomBytes(frameBytes * frameCount, 7);
};

TEST_P(IcsFramesAgain, AreRightOrRefusedWhicheverCallFails) {
    bool failed = true;
    std::size_t refused = 0;
    for (std::size_t number = 0; failed; ++number) {
        const auto frames = kep::detail::OpenIcsFrames(std::make_unique<kep::detail::InputFile>(name));
        const FailingCall fault(number, EIO);
        for (const std::size_t time : {1U, 1U, 2U, 4U, 3U, 5U, 0U}) {
            std::string frame;
            if (!FailureOf([&] { frame = Read(*frames, time); }).empty())
                ++refused;
            else
                ASSERT_TRUE(frame == GetVoxels(time)) << "time " << time << ", call " << number;
        }
        failed = fault.HasFailed();
    }
    EXPECT_GT(refused, 5U);
}

INSTANTIATE_TEST_SUITE_P(Packings, IcsFramesAgain, testing::ValuesIn(packings),
                         [](const auto& packing) { return std::string(packing.param.name); });

} // namespace
} // namespace ics_test
