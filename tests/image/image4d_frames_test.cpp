#include "image/sequence/zel_framelist.h"
#include "image/zel_image4d.h"
#include "tests/support/failing_memory.h"
#include "tests/support/text_of.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

using kep::Resolution;
using kep::Vector3d;
using mor::Image4d;
using Frame = kep::Image3d<int>;

constexpr const char* wrongTime = "InsertFrame(): Incorrect value of the time parameter.";
constexpr const char* wrongGeometry = "InsertFrame(): Inserted image is not consistent with the sequence!";
constexpr const char* wrongCounts = "InsertFrame(): Image4d metadata is not consistent.";

std::unique_ptr<Frame> MakeFrame(int value, std::size_t x = 2, std::size_t y = 2, std::size_t z = 1) {
    auto frame = std::make_unique<Frame>();
    frame->MakeRoom(x, y, z);
    frame->Fill(value);
    return frame;
}

/// A sequence of frames that each hold one value and are named by it. In place, as a container is not moved.
struct Sequence {
    explicit Sequence(const std::vector<int>& values) {
        image.MakeRoom(2, 2, 1, 0);
        for (const int value : values)
            image.InsertFrame(*MakeFrame(value), std::to_string(value), -1);
    }
    /// What the frames hold, in order; each frame's name must say the same.
    std::vector<int> GetValues() const {
        std::vector<int> values;
        for (std::size_t t = 0; t < image.GetNumFrames(); ++t) {
            values.push_back(image.GetVoxel(3, t));
            EXPECT_EQ(image.GetImageName(t), std::to_string(values.back()));
        }
        EXPECT_EQ(image.TestConsistency(), 0);
        return values;
    }
    Image4d<int> image;
};

// --- InsertFrame ---

TEST(InsertFrame, PutsAFrameAtItsPlace) {
    Sequence s({10, 20, 30});
    s.image.InsertFrame(*MakeFrame(5), "5", 0);
    EXPECT_EQ(s.GetValues(), (std::vector<int>{5, 10, 20, 30}));
    s.image.InsertFrame(*MakeFrame(25), "25", 3);
    EXPECT_EQ(s.GetValues(), (std::vector<int>{5, 10, 20, 25, 30}));
    s.image.InsertFrame(*MakeFrame(40), "40", -1);
    EXPECT_EQ(s.GetValues(), (std::vector<int>{5, 10, 20, 25, 30, 40}));
}

TEST(InsertFrame, OwnsThePointerAndCopiesTheReference) {
    Sequence s({1});
    auto frame = MakeFrame(2);
    Frame* const pointer = frame.release();
    s.image.InsertFrame(pointer, "2", -1);
    EXPECT_EQ(s.image.GetImage(1), pointer);
    const auto other = MakeFrame(3);
    s.image.InsertFrame(*other, "3", -1);
    EXPECT_NE(s.image.GetImage(2), other.get());
    other->Fill(9);
    EXPECT_EQ(s.GetValues(), (std::vector<int>{1, 2, 3}));
}

TEST(InsertFrame, RefusesOtherTimes) {
    Sequence s({10, 20});
    auto frame = MakeFrame(5);
    for (const int t : {2, 3, -2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(TextOf([&] { s.image.InsertFrame(frame.get(), "5", t); }), wrongTime) << t;
    EXPECT_EQ(TextOf([&] { s.image.InsertFrame(*frame, "5", 2); }), wrongTime);
    EXPECT_EQ(s.GetValues(), (std::vector<int>{10, 20}));
}

TEST(InsertFrame, TakesOnlyTheEndOfAnEmptyContainer) {
    Sequence s({});
    EXPECT_EQ(TextOf([&] { s.image.InsertFrame(*MakeFrame(5), "5", 0); }), wrongTime);
    EXPECT_EQ(s.image.GetNumFrames(), 0U);
    s.image.InsertFrame(*MakeFrame(5), "5", -1);
    EXPECT_EQ(s.GetValues(), (std::vector<int>{5}));
}

TEST(InsertFrame, RefusesANullPointer) {
    Sequence s({10});
    Frame* const none = nullptr;
    EXPECT_EQ(TextOf([&] { s.image.InsertFrame(none, "", -1); }), "InsertFrame(): NULL image pointer given.");
}

TEST(InsertFrame, ComparesSizeOffsetAndResolutionExactly) {
    Sequence s({10});
    for (const auto& frame : {MakeFrame(1, 3, 2, 1), MakeFrame(1, 2, 3, 1), MakeFrame(1, 2, 2, 2)})
        EXPECT_EQ(TextOf([&] { s.image.InsertFrame(frame.get(), "1", -1); }), wrongGeometry);
    const float tiny = std::numeric_limits<float>::denorm_min();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const auto& offset : std::vector<Vector3d<float>>{{tiny, 0, 0}, {0, tiny, 0}, {0, 0, tiny}, {nan, 0, 0}}) {
        auto frame = MakeFrame(1);
        frame->SetOffset(offset);
        EXPECT_EQ(TextOf([&] { s.image.InsertFrame(frame.get(), "1", -1); }), wrongGeometry);
    }
    for (const auto& resolution : std::vector<Resolution>{{tiny, 0, 0}, {0, tiny, 0}, {0, 0, tiny}}) {
        auto frame = MakeFrame(1);
        frame->SetResolution(resolution);
        EXPECT_EQ(TextOf([&] { s.image.InsertFrame(*frame, "1", -1); }), wrongGeometry);
    }
    EXPECT_EQ(s.GetValues(), (std::vector<int>{10}));
}

TEST(InsertFrame, RefusesVoxelsInANeverFilledContainer) {
    Image4d<int> image;
    EXPECT_EQ(TextOf([&] { image.InsertFrame(*MakeFrame(1), "1", -1); }), wrongGeometry);
    image.InsertFrame(Frame(), "nothing", -1); // size (0, 0, 0) is that of the container
    EXPECT_EQ(image.GetNumFrames(), 1U);
    EXPECT_EQ(image.GetExtremes(), mor::ExtremaValues<int>());
}

TEST(InsertFrame, OfNoVoxelsAsTheFirstFrameSetsTheEmptyExtremes) {
    Sequence s({10, 20});
    s.image.DestroyData(); // the extremes stay 10 and 20
    s.image.InsertFrame(Frame(), "nothing", -1);
    EXPECT_EQ(s.image.GetExtremes(), mor::ExtremaValues<int>());
}

TEST(InsertFrame, TestsInOrder) {
    Sequence s({10});
    Frame* const none = nullptr;
    const auto other = MakeFrame(1, 3, 3, 3);
    EXPECT_EQ(TextOf([&] { s.image.InsertFrame(none, "", 7); }), "InsertFrame(): NULL image pointer given.");
    EXPECT_EQ(TextOf([&] { s.image.InsertFrame(other.get(), "", 7); }), wrongTime);
    s.image.GetVoxelData().push_back(MakeFrame(2).release());
    EXPECT_EQ(TextOf([&] { s.image.InsertFrame(none, "", 7); }), wrongCounts);
    EXPECT_EQ(TextOf([&] { s.image.RemoveFrame(7); }), wrongCounts); // it names the other operation
}

TEST(InsertFrame, LeavesTheFrameToTheCallerWhenItThrows) {
    Sequence s({10});
    const auto frame = MakeFrame(1, 3, 3, 3); // deleted twice if the container took it
    EXPECT_THROW(s.image.InsertFrame(frame.get(), "1", -1), kep::InternalException);
    EXPECT_EQ(frame->GetVoxel(26), 1);
}

TEST(InsertFrame, LeavesTheFrameToTheCallerWhicheverRequestForMemoryFails) {
    bool failed = true;
    for (std::size_t number = 0; failed; ++number) {
        Sequence s({10});
        auto frame = MakeFrame(20);
        const wxString name("20");
        bool inserted = true;
        {
            const FailingMemory memory(number);
            try {
                s.image.InsertFrame(frame.get(), name, -1);
            } catch (const std::bad_alloc&) {
                inserted = false;
            }
            failed = memory.HasFailed();
        }
        EXPECT_EQ(s.image.GetNumFrames(), inserted ? 2U : 1U) << number;
        EXPECT_EQ(s.image.TestConsistency(), 0) << number;
        if (s.image.GetVoxelData().back() == frame.get())
            frame.release(); // it is the sequence's
    }
}

TEST(InsertFrame, TakesANameOfTheListItself) {
    Sequence s({1, 2, 3});
    s.image.InsertFrame(*MakeFrame(3), s.image.GetImageName(2), 1);
    EXPECT_EQ(s.GetValues(), (std::vector<int>{1, 3, 2, 3}));
}

TEST(InsertFrame, KeepsTheExtremesCurrent) {
    Sequence s({});
    s.image.InsertFrame(*MakeFrame(-5), "-5", -1);
    EXPECT_EQ(s.image.GetExtremes(), (mor::ExtremaValues<int>{-5, -5})); // set
    s.image.InsertFrame(*MakeFrame(-7), "-7", 0);
    EXPECT_EQ(s.image.GetExtremes(), (mor::ExtremaValues<int>{-7, -5})); // merged
    s.image.InsertFrame(*MakeFrame(9), "9", -1);
    EXPECT_EQ(s.image.GetExtremes(), (mor::ExtremaValues<int>{-7, 9}));
}

TEST(InsertFrame, MergesIntoWhatTheCacheHolds) {
    Sequence s({10});
    s.image.SetVoxel(0, 0, 1000); // not in the cache
    s.image.InsertFrame(*MakeFrame(20), "20", -1);
    EXPECT_EQ(s.image.GetCachedMaxValue(), 20);
}

TEST(InsertFrame, OfAnEmptyFileNameIsRefused) {
    Sequence s({10});
    EXPECT_EQ(TextOf([&] { s.image.InsertFrame(wxString(), -1); }), "InsertFrame(): Empty image name given!");
}

// --- RemoveFrame ---

TEST(RemoveFrame, TakesOneOut) {
    Sequence s({10, 20, 30});
    s.image.RemoveFrame(1);
    EXPECT_EQ(s.GetValues(), (std::vector<int>{10, 30}));
    s.image.RemoveFrame(0);
    EXPECT_EQ(s.GetValues(), (std::vector<int>{30}));
}

TEST(RemoveFrame, ScansTheOthersAgain) {
    Sequence s({10, 20, 30});
    s.image.SetVoxel(0, 1, 25);
    s.image.RemoveFrame(2);
    EXPECT_EQ(s.image.GetExtremes(), (mor::ExtremaValues<int>{10, 25}));
}

TEST(RemoveFrame, OfTheOnlyFrameKeepsTheSize) {
    Sequence s({10});
    s.image.RemoveFrame(0);
    EXPECT_EQ(s.image.GetNumFrames(), 0U);
    EXPECT_TRUE(s.image.IsEmpty());
    EXPECT_EQ(s.image.GetSize(), Vector3d<std::size_t>(2, 2, 1));
    EXPECT_EQ(s.image.GetExtremes(), mor::ExtremaValues<int>());
    s.image.InsertFrame(*MakeFrame(4), "4", -1); // the geometry is still there
    EXPECT_EQ(s.GetValues(), (std::vector<int>{4}));
}

TEST(RemoveFrame, RefusesOtherTimes) {
    Sequence s({10, 20});
    for (const int t : {2, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(TextOf([&] { s.image.RemoveFrame(t); }), wrongTime) << t;
    EXPECT_EQ(s.GetValues(), (std::vector<int>{10, 20}));
    Sequence none({});
    EXPECT_EQ(TextOf([&] { none.image.RemoveFrame(0); }), wrongTime);
    EXPECT_EQ(TextOf([&] { none.image.RemoveFrame(-1); }), wrongTime);
}

// --- file names of a sequence ---

TEST(FrameFileName, PadsTheNumberWithZeros) {
    using mor::detail::MakeFrameFileName;
    EXPECT_EQ(MakeFrameFileName("a", 3, ".tif", 9), "a009.tif");
    EXPECT_EQ(MakeFrameFileName("a", 3, ".tif", 10), "a010.tif");
    EXPECT_EQ(MakeFrameFileName("a", 3, ".tif", 1234), "a1234.tif");
    EXPECT_EQ(MakeFrameFileName("a", 0, ".tif", 7), "a7.tif");
    EXPECT_EQ(MakeFrameFileName("a", 1, ".tif", 7), "a7.tif");
    EXPECT_EQ(MakeFrameFileName("", 2, "", 5), "05");
}

TEST(FrameFileName, IsUtf8AndTakesPercentSignsAsTheyAre) {
    using mor::detail::MakeFrameFileName;
    EXPECT_EQ(MakeFrameFileName("50%d_", 2, "%s.ics", 5), "50%d_05%s.ics");
    EXPECT_EQ(MakeFrameFileName("B\xC3\xA4r", 2, ".tif", 5), wxString(L"B\u00E4r05.tif"));
}

TEST(FrameFileName, ThatIsNotUtf8IsRefused) {
    using mor::detail::MakeFrameFileName;
    const std::string text = "SaveSequence(): The file name is not valid UTF-8!";
    EXPECT_EQ(TextOf([] { MakeFrameFileName("B\xE4r", 2, ".tif", 5); }), text);
    EXPECT_EQ(TextOf([] { MakeFrameFileName("b", 2, "\xFF.tif", 5); }), text);
}

} // namespace
