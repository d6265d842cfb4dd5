#include "host/cellcolony.h"
#include "host/synthetic.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace zelviewer {
namespace {

using Frame = kep::Image3d<unsigned short>;

/// Voxels of each label, without the background.
std::map<unsigned short, std::size_t> CountLabels(const Frame& labels) {
    std::map<unsigned short, std::size_t> counts;
    for (const unsigned short label : labels)
        if (label != 0)
            ++counts[label];
    return counts;
}

/// Size of the largest piece of a label, whose voxels touch by their faces.
std::size_t LargestPiece(const Frame& labels, unsigned short label) {
    std::vector<bool> seen(labels.GetNumVoxels());
    std::size_t largest = 0;
    for (std::size_t start = 0; start < seen.size(); ++start) {
        if (seen[start] || labels.GetVoxel(start) != label)
            continue;
        std::vector<std::size_t> open{start};
        seen[start] = true;
        std::size_t size = 0;
        while (!open.empty()) {
            const std::size_t i = open.back();
            open.pop_back();
            ++size;
            const kep::Vector3d<std::size_t> p = labels.GetPos(i);
            const auto visit = [&](bool inside, std::size_t next) {
                if (inside && !seen[next] && labels.GetVoxel(next) == label) {
                    seen[next] = true;
                    open.push_back(next);
                }
            };
            const std::size_t row = labels.GetSizeX(), slice = row * labels.GetSizeY();
            visit(p.x > 0, i - 1);
            visit(p.x + 1 < labels.GetSizeX(), i + 1);
            visit(p.y > 0, i - row);
            visit(p.y + 1 < labels.GetSizeY(), i + row);
            visit(p.z > 0, i - slice);
            visit(p.z + 1 < labels.GetSizeZ(), i + slice);
        }
        largest = std::max(largest, size);
    }
    return largest;
}

TEST(Synthetic, FramesHaveTheSizeAndVoxelSizeThatWasAskedFor) {
    SyntheticSettings settings;
    settings.size = {61, 53, 17};
    settings.voxelSize = {0.5F, 0.5F, 1.0F};
    settings.frames = 3;
    const std::vector<SyntheticFrame> frames = MakeSyntheticCells(settings);
    ASSERT_EQ(frames.size(), 3U);
    for (const SyntheticFrame& frame : frames)
        for (const Frame* part : {frame.intensity.get(), frame.labels.get()}) {
            EXPECT_EQ(part->GetSize(), settings.size);
            EXPECT_EQ(part->GetResolution(), kep::Resolution(2, 2, 1));
        }
}

TEST(Synthetic, TheSameSeedGivesTheSameVoxelsAndAnotherDoesNot) {
    SyntheticSettings settings;
    settings.size = {80, 60, 20};
    settings.frames = 3;
    const auto differ = [](const Frame& a, const Frame& b) { return !std::equal(a.begin(), a.end(), b.begin()); };
    const std::vector<SyntheticFrame> first = MakeSyntheticCells(settings), second = MakeSyntheticCells(settings);
    for (std::size_t t = 0; t < 3; ++t) {
        EXPECT_FALSE(differ(*first[t].intensity, *second[t].intensity));
        EXPECT_FALSE(differ(*first[t].labels, *second[t].labels));
    }
    ++settings.seed;
    const std::vector<SyntheticFrame> other = MakeSyntheticCells(settings);
    EXPECT_TRUE(differ(*first[0].intensity, *other[0].intensity));
    EXPECT_TRUE(differ(*first[0].labels, *other[0].labels));
}

TEST(Synthetic, ThreadsThatShareAFrameGiveTheSameVoxels) {
    SyntheticSettings settings;
    settings.size = {80, 60, 20};
    settings.frames = 2;
    const SyntheticFilm film(settings);
    const SyntheticFrame alone = film.Paint(1);
    for (const std::size_t threads : {2U, 3U, 7U, 20U, 31U}) {
        const SyntheticFrame shared = film.Paint(1, threads);
        EXPECT_TRUE(std::equal(alone.intensity->begin(), alone.intensity->end(), shared.intensity->begin())) << threads;
        EXPECT_TRUE(std::equal(alone.labels->begin(), alone.labels->end(), shared.labels->begin())) << threads;
    }
}

class SyntheticDefault : public testing::Test {
protected:
    static void SetUpTestSuite() { frames = new std::vector<SyntheticFrame>(MakeSyntheticCells()); }
    static void TearDownTestSuite() { delete frames; }
    static std::vector<SyntheticFrame>* frames;
};
std::vector<SyntheticFrame>* SyntheticDefault::frames = nullptr;

TEST_F(SyntheticDefault, ADozenCellsBecomeOneAndAHalf) {
    std::size_t before = 0;
    for (const SyntheticFrame& frame : *frames) {
        const std::size_t cells = CountLabels(*frame.labels).size();
        EXPECT_GE(cells, before);
        before = cells;
    }
    EXPECT_EQ(CountLabels(*frames->front().labels).size(), 12U);
    EXPECT_EQ(CountLabels(*frames->back().labels).size(), 18U);
}

TEST_F(SyntheticDefault, EveryCellIsOnePieceOfTheSizeOfACell) {
    // A ball of 5.8 to 7.2 microns holds 34000 to 65000 voxels of 0.024 cubic microns; a daughter half as many, and
    // neighbours press into each other.
    for (const SyntheticFrame* frame : {&frames->front(), &(*frames)[4], &frames->back()})
        for (const auto& [label, count] : CountLabels(*frame->labels)) {
            EXPECT_GT(count, 12'000U) << label;
            EXPECT_LT(count, 70'000U) << label;
            EXPECT_GE(LargestPiece(*frame->labels, label), count * 98 / 100) << label;
        }
}

TEST_F(SyntheticDefault, DaughtersGetNewLabelsWhereTheirMotherWas) {
    std::set<unsigned short> known;
    for (const auto& [label, count] : CountLabels(*frames->front().labels))
        known.insert(label);
    for (std::size_t t = 1; t < frames->size(); ++t) {
        const auto now = CountLabels(*(*frames)[t].labels);
        const auto before = CountLabels(*(*frames)[t - 1].labels);
        std::size_t gone = 0, fresh = 0;
        for (const auto& [label, count] : before)
            gone += now.count(label) == 0;
        for (const auto& [label, count] : now)
            fresh += known.insert(label).second;
        EXPECT_EQ(fresh, 2 * gone) << "frame " << t;
    }
}

TEST_F(SyntheticDefault, CellsAreBrighterThanTheBackgroundWhichLooksLikeACamera) {
    const SyntheticFrame& frame = frames->front();
    double inside = 0, outside = 0, square = 0;
    std::size_t insideCount = 0, outsideCount = 0;
    for (std::size_t i = 0; i < frame.labels->GetNumVoxels(); ++i) {
        const double value = frame.intensity->GetVoxel(i);
        EXPECT_LE(value, 4095);
        if (frame.labels->GetVoxel(i) != 0) {
            inside += value;
            ++insideCount;
        } else if (value < 200) { // beside the soft edges
            outside += value;
            square += value * value;
            ++outsideCount;
        }
    }
    inside /= static_cast<double>(insideCount);
    outside /= static_cast<double>(outsideCount);
    const double deviation = std::sqrt(square / static_cast<double>(outsideCount) - outside * outside);
    EXPECT_GT(inside, 3 * outside);
    // 100 counts without light; 5.5 to 9 photons of 3 counts each; noise sqrt(9 * 9 + 16) = 9.8 at most, and the
    // outermost light of cells.
    EXPECT_GT(outside, 110);
    EXPECT_LT(outside, 135);
    EXPECT_GT(deviation, 8);
    EXPECT_LT(deviation, 18);
}

TEST(CellColony, CellsStayInTheirBox) {
    CellColony colony({64, 56, 19}, 12, 10, 2);
    for (int t = 0; t < 30; ++t, colony.Advance())
        for (const Cell& cell : colony.GetCells()) {
            EXPECT_TRUE(cell.centre.x > 3 && cell.centre.x < 61) << cell.label;
            EXPECT_TRUE(cell.centre.y > 3 && cell.centre.y < 53) << cell.label;
            EXPECT_TRUE(cell.centre.z > 3 && cell.centre.z < 16) << cell.label;
        }
}

TEST(CellColony, DaughtersMoveApart) {
    CellColony colony({200, 200, 60}, 2, 10, 5); // room enough for each
    while (colony.GetCells().size() == 2)
        colony.Advance();
    const auto distance = [&] {
        const Vec& a = colony.GetCells()[0].centre;
        const Vec& b = colony.GetCells()[2].centre;
        return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
    };
    const double atFirst = distance();
    colony.Advance();
    colony.Advance();
    EXPECT_GT(distance(), atFirst);
    EXPECT_GT(distance(), colony.GetCells()[0].radius + colony.GetCells()[2].radius);
}

TEST(CellColony, AStretchedCellKeepsItsVolume) {
    Cell cell;
    cell.mitosis = 0.7;
    // Half axes a, b, b: a b b = r r r.
    EXPECT_NEAR(cell.HalfLength() * cell.HalfWidth() * cell.HalfWidth(), 125.0, 1e-9);
}

} // namespace
} // namespace zelviewer
