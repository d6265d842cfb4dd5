// Reading while memory is out, and stays out: a program of its own, as its operator new is not the system's.

#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_imageinfo.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>
#include <numeric>

namespace {

constexpr long endless = std::numeric_limits<long>::max();

/// Pieces of memory that are still to be had, on any thread.
std::atomic<long> piecesLeft = endless;

void* TakePiece(std::size_t bytes) {
    if (piecesLeft.load() != endless && piecesLeft.fetch_sub(1) <= 0)
        return nullptr;
    return std::malloc(bytes == 0 ? 1 : bytes);
}

} // namespace

// Not to be seen through: the compiler would miss a free for each malloc.
[[gnu::noinline]] void* operator new(std::size_t bytes) {
    if (void* const piece = TakePiece(bytes))
        return piece;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new[](std::size_t bytes) {
    return ::operator new(bytes);
}
[[gnu::noinline]] void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return TakePiece(bytes);
}
[[gnu::noinline]] void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return TakePiece(bytes);
}
[[gnu::noinline]] void operator delete(void* piece) noexcept {
    std::free(piece);
}
[[gnu::noinline]] void operator delete[](void* piece) noexcept {
    std::free(piece);
}
[[gnu::noinline]] void operator delete(void* piece, std::size_t) noexcept {
    std::free(piece);
}
[[gnu::noinline]] void operator delete[](void* piece, std::size_t) noexcept {
    std::free(piece);
}

namespace {

using Frame = kep::Image3d<unsigned short>;

enum class Outcome { Done, Refused, OtherException };

/// Does some work with so many pieces of memory and no more.
Outcome Try(const std::function<void()>& work, long pieces, std::string& refusal) {
    Outcome outcome = Outcome::Done;
    piecesLeft = pieces;
    try {
        work();
        piecesLeft = endless;
    } catch (const kep::IOException& failure) {
        piecesLeft = endless;
        outcome = Outcome::Refused;
        refusal = failure.GetText();
    } catch (...) {
        piecesLeft = endless;
        outcome = Outcome::OtherException;
    }
    return outcome;
}

/// Does some work with no memory, with one piece, with two and so on until it goes well.
void TryWithMoreAndMore(const std::function<void()>& work, const std::string& name,
                        const std::function<void()>& check) {
    long pieces = 0;
    std::size_t named = 0;
    for (;; ++pieces) {
        ASSERT_LT(pieces, 10000);
        std::string refusal;
        const Outcome outcome = Try(work, pieces, refusal);
        if (outcome == Outcome::Done)
            break;
        ASSERT_EQ(outcome, Outcome::Refused) << "with " << pieces << " pieces of memory";
        if (refusal == "ReadImage(): Not enough memory for '" + name + "'.")
            ++named;
        else
            EXPECT_EQ(refusal, "Out of memory.") << "with " << pieces << " pieces of memory";
        check();
    }
    EXPECT_GT(pieces, 10);
    EXPECT_GT(named + 5, static_cast<std::size_t>(pieces)) << "the text that names no file is for the first few";
}

class MemoryOut : public ::testing::TestWithParam<const char*> {
protected:
    MemoryOut() {
        frame.MakeRoom(300, 200, 7); // 840,000 bytes: enough for two threads
        std::iota(frame.begin(), frame.end(), static_cast<unsigned short>(0));
        frame.SetDescription({{"author", "somebody with a name that is longer than fifteen letters"}});
    }
    Frame frame;
    ScratchFolder folder;
    std::string name = folder / "frame" + GetParam();
};

TEST_P(MemoryOut, EveryFailureToReadIsTheLibrarysException) {
    for (const bool compress : {false, true}) {
        frame.SaveImage(name.c_str(), kep::FF_BY_NAME, compress, nullptr);
        Frame read;
        read.MakeRoom(1, 1, 1);
        read.SetVoxel(0, 7);
        TryWithMoreAndMore([&] { read.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr); }, name,
                           [&] { EXPECT_TRUE(read.GetNumVoxels() == 1 && read.GetVoxel(0) == 7); });
        EXPECT_TRUE(std::equal(read.begin(), read.end(), frame.begin(), frame.end()));
        TryWithMoreAndMore([&] { static_cast<void>(kep::ReadImageInfo(name.c_str())); }, name, [] {});
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, MemoryOut, ::testing::Values(".tif", ".ics"),
                         [](const auto& format) { return std::string(format.param).substr(1); });

} // namespace
