// Saving and reading while the system fails, is interrupted, or has no memory.

#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "tests/support/failing_calls.h"
#include "tests/support/failing_memory.h"
#include "tests/support/save_faults.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace {

using Frame = kep::Image3d<unsigned short>;

Frame MakeFrame() {
    Frame frame;
    frame.MakeRoom(300, 200, 4);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i)
        frame.SetVoxel(i, static_cast<unsigned short>(i * 40503U >> 3U));
    frame.SetDescription({{"note", "kept"}});
    return frame;
}

/// @return whether the file was saved
bool Tells(const std::function<void()>& save) {
    try {
        save();
    } catch (const kep::IOException&) {
        return false;
    }
    return true;
}

TEST(SavedFile, IsTheOldOneOrWholeWhicheverCallFails) {
    const ScratchFolder folder;
    const std::string name = folder / "a";
    ExpectOldOrWholeAtEveryFault(name, [&] {
        return Tells([&] {
            kep::AtomicFile file(name);
            file.Write("new", 3);
            file.Commit();
        });
    });
}

struct Way {
    const char* name;
    bool compress;
};
class SavedImage : public testing::TestWithParam<Way> {
protected:
    void Save() const { frame.SaveImage(name.c_str(), kep::FF_BY_NAME, GetParam().compress, nullptr); }

    ScratchFolder folder;
    std::string name = folder / GetParam().name;
    Frame frame = MakeFrame();
};

TEST_P(SavedImage, IsTheOldOneOrWholeWhicheverCallFails) {
    ExpectOldOrWholeAtEveryFault(name, [this] { return Tells([this] { Save(); }); });
}

TEST_P(SavedImage, DoesNotMindInterruptedCalls) {
    Save();
    const std::string whole = ReadBytes(name);
    std::size_t interrupted = 0;
    {
        const InterruptedCalls calls;
        EXPECT_NO_THROW(Save());
        interrupted = calls.GetCount();
    }
    EXPECT_GT(interrupted, 5U);
    EXPECT_TRUE(ReadBytes(name) == whole);
}

TEST_P(SavedImage, IsReadWithInterruptedCalls) {
    Save();
    Frame read;
    std::size_t interrupted = 0;
    {
        const InterruptedCalls calls;
        EXPECT_NO_THROW(read.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr));
        interrupted = calls.GetCount();
    }
    EXPECT_GT(interrupted, 2U);
    ASSERT_EQ(read.GetSize(), frame.GetSize());
    EXPECT_TRUE(std::equal(frame.begin(), frame.end(), read.begin()));
}

INSTANTIATE_TEST_SUITE_P(Formats, SavedImage,
                         testing::Values(Way{"packed.tif", true}, Way{"plain.tif", false}, Way{"packed.ics", true},
                                         Way{"plain.ics", false}));

TEST(SavedFile, IsNewExactlyIfCommitSaysSoWhenMemoryIsOut) {
    const ScratchFolder folder;
    const std::string name = folder / "a name of more characters than fit into a string object.ics";
    bool failed = true;
    for (std::size_t number = 0; failed; ++number) {
        WriteBytes(name, "old");
        bool committed = true;
        {
            kep::AtomicFile file(name);
            file.Write("new", 3);
            const FailingMemory memory(number);
            try {
                file.Commit();
            } catch (const std::bad_alloc&) {
                committed = false;
            }
            failed = memory.HasFailed();
        }
        ASSERT_EQ(ReadBytes(name), committed ? "new" : "old") << "request " << number;
        ASSERT_EQ(folder.List().size(), 1U) << "request " << number;
    }
}

} // namespace
