// Voxels that are seen while they are read.

#include "core/kepcore/kep_framereader.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_voxelvisitor.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using kep::Image3d;
using kep::VoxelVisitor;

class Visitors : public testing::Test {
protected:
    /// Writes a frame whose voxels are their numbers, modulo a prime. @return its name
    template <typename T>
    std::string Write(kep::Vector3d<std::size_t> size, const std::string& file, bool packed = false) {
        Image3d<T> frame;
        frame.MakeRoom(size.x, size.y, size.z);
        for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i)
            frame.SetVoxel(i, static_cast<T>(i % 251));
        frame.SaveImage((folder / file).c_str(), kep::FF_BY_NAME, packed, nullptr);
        return folder / file;
    }
    template <typename T>
    static void Read(const std::string& name, Image3d<T>& frame,
                     const kep::VOI<kep::T_pair<int, std::size_t>>* voi = {}) {
        frame.ReadImage(name.c_str(), voi, false, -1, nullptr, nullptr);
    }
    /// Reads a file under a visitor, and expects that it sees all voxels in their order.
    template <typename T>
    void ExpectAllSeen(const std::string& name) {
        Image3d<T> frame;
        std::vector<T> seen;
        {
            const VoxelVisitor<T> visitor(
                [&](const T* first, std::size_t number) { seen.insert(seen.end(), first, first + number); });
            Read(name, frame);
        }
        ASSERT_EQ(seen.size(), frame.GetNumVoxels()) << name;
        EXPECT_TRUE(std::equal(seen.begin(), seen.end(), frame.begin())) << name;
        Image3d<T> unseen;
        Read(name, unseen);
        EXPECT_TRUE(std::equal(frame.begin(), frame.end(), unseen.begin(), unseen.end())) << name;
    }

    ScratchFolder folder;
};

TEST_F(Visitors, SeeAllVoxelsOfEveryFormat) {
    for (const char* file : {"a.tif", "a.ics"}) {
        for (const bool packed : {false, true}) {
            ExpectAllSeen<unsigned char>(Write<unsigned char>({13, 7, 5}, file, packed));
            ExpectAllSeen<unsigned short>(Write<unsigned short>({1000, 900, 12}, file, packed)); // several groups
        }
    }
}

TEST_F(Visitors, SeeVoxelsAsTheyAreInTheFrame) {
    const std::string name = Write<unsigned char>({1000, 1000, 11}, "a.tif");
    ExpectAllSeen<unsigned short>(name); // several groups, and a rest
    ExpectAllSeen<float>(name);
    ExpectAllSeen<int>(Write<unsigned short>({3, 2, 1}, "b.ics"));
}

TEST_F(Visitors, SeeEachFrameOfAReader) {
    const std::string name = Write<unsigned char>({4, 3, 2}, "a.tif");
    std::size_t seen = 0;
    const VoxelVisitor<unsigned char> visitor([&](const unsigned char*, std::size_t number) { seen += number; });
    kep::FrameReader reader(name.c_str());
    Image3d<unsigned char> frame;
    reader.ReadFrame(0, 0, frame);
    reader.ReadFrame(0, 0, frame);
    EXPECT_EQ(seen, 48U);
}

TEST_F(Visitors, OfOtherTypesSeeNothing) {
    const std::string name = Write<unsigned char>({4, 3, 2}, "a.tif");
    const VoxelVisitor<unsigned short> visitor([](const unsigned short*, std::size_t) { FAIL() << "another type"; });
    Image3d<unsigned char> frame;
    Read(name, frame);
    EXPECT_EQ(frame.GetNumVoxels(), 24U);
}

TEST_F(Visitors, SeeNoBoxes) {
    const std::string name = Write<unsigned char>({4, 3, 2}, "a.tif");
    const VoxelVisitor<unsigned char> visitor([](const unsigned char*, std::size_t) { FAIL() << "a box"; });
    const kep::VOI<kep::T_pair<int, std::size_t>> box(1, 1, 0, 2, 2, 2);
    Image3d<unsigned char> frame;
    Read(name, frame, &box);
    EXPECT_EQ(frame.GetNumVoxels(), 8U);
}

TEST_F(Visitors, SeeNothingOfOtherThreads) {
    const std::string name = Write<unsigned char>({4, 3, 2}, "a.tif");
    const VoxelVisitor<unsigned char> visitor([](const unsigned char*, std::size_t) { FAIL() << "another thread"; });
    Image3d<unsigned char> frame;
    std::thread([&] { Read(name, frame); }).join();
    EXPECT_EQ(frame.GetNumVoxels(), 24U);
}

TEST_F(Visitors, AllSeeTheSameUntilTheyGo) {
    const std::string name = Write<unsigned char>({4, 3, 2}, "a.tif");
    std::size_t outer = 0, inner = 0;
    Image3d<unsigned char> frame;
    {
        const VoxelVisitor<unsigned char> one([&](const unsigned char*, std::size_t number) { outer += number; });
        {
            const VoxelVisitor<unsigned char> two([&](const unsigned char*, std::size_t number) { inner += number; });
            Read(name, frame);
        }
        Read(name, frame);
    }
    Read(name, frame);
    EXPECT_EQ(outer, 48U);
    EXPECT_EQ(inner, 24U);
}

TEST_F(Visitors, CanEndTheReading) {
    const std::string name = Write<unsigned char>({4, 3, 2}, "a.tif");
    Image3d<unsigned char> frame;
    frame.MakeRoom(1, 1, 1);
    const VoxelVisitor<unsigned char> visitor(
        [](const unsigned char*, std::size_t) { throw std::runtime_error("enough"); });
    EXPECT_THROW(Read(name, frame), std::runtime_error);
    EXPECT_EQ(frame.GetNumVoxels(), 1U); // as it was
}

} // namespace
