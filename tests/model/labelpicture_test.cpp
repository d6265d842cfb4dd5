#include "model/zel_labelpicture.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

using namespace zel;

namespace {

using Colour = kep::RGB_generic<unsigned char>;
using Labels = std::vector<LabelPixel>;

/// The rule of marking as it is told, step by step.
void MarkLiterally(Labels& labels, std::size_t w, std::size_t h) {
    const auto mark = [&](std::size_t at) {
        if (labels[at] != 0)
            labels[at] |= boundaryBit;
    };
    for (std::size_t x = 0; x < w; ++x)
        mark(x);
    for (std::size_t y = 1; y < h; ++y) {
        mark(y * w);
        for (std::size_t x = 1; x < w; ++x) {
            const std::size_t at = y * w + x;
            if (labels[at] != (labels[at - w] & 0x7FFF)) {
                mark(at);
                mark(at - w);
            }
            if (labels[at] != (labels[at - 1] & 0x7FFF)) { // read again: it may be marked by now
                mark(at);
                mark(at - 1);
            }
        }
        mark(y * w + w - 1);
    }
    for (std::size_t x = 1; x + 1 < w; ++x)
        mark((h - 1) * w + x);
}

/// A picture in letters: '.' and '0' for background, a digit for a label; marked pixels come out as '#'.
std::vector<std::string> Marked(const std::vector<std::string>& rows) {
    const std::size_t w = rows.empty() ? 0 : rows[0].size();
    Labels labels;
    for (const std::string& row : rows)
        for (const char c : row)
            labels.push_back(c == '.' ? LabelPixel{0} : static_cast<LabelPixel>(c - '0'));
    MarkBoundaries(labels.data(), w, rows.size());
    std::vector<std::string> marked = rows;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        char& c = marked[i / w][i % w];
        if ((labels[i] & boundaryBit) != 0)
            c = '#';
        EXPECT_EQ(LabelOf(labels[i]), rows[i / w][i % w] == '.' ? 0 : rows[i / w][i % w] - '0') << "keeps its label";
    }
    return marked;
}

using Rows = std::vector<std::string>;

Colour Numbered(LabelPixel label) {
    return {static_cast<unsigned char>(label), static_cast<unsigned char>(10 * label), 200};
}

std::vector<Colour> Cut(const Labels& labels, float t, Colour under) {
    std::vector<Colour> picture(labels.size(), under);
    BlendCut(labels.data(), labels.size(), t, Numbered, picture.data());
    return picture;
}

Colour Projected(LabelPixel a, LabelPixel b, float t, Colour under) {
    BlendProjection(&a, &b, 1, t, Numbered, &under);
    return under;
}

unsigned char MixedLiterally(unsigned char old, unsigned char colour, float t) {
    const volatile float kept = static_cast<float>(old) * t; // volatile: each product is rounded by itself
    const volatile float added = static_cast<float>(colour) * (1.0F - t);
    return static_cast<unsigned char>(static_cast<int>(kept + added));
}

Colour MixedLiterally(const Colour& old, const Colour& colour, float t) {
    return {MixedLiterally(old.red, colour.red, t), MixedLiterally(old.green, colour.green, t),
            MixedLiterally(old.blue, colour.blue, t)};
}

} // namespace

TEST(MarkBoundaries, OfOneVoxelInAnotherLabel) {
    EXPECT_EQ(Marked({"1111111", //
                      "1111111", //
                      "1111111", //
                      "1112111", //
                      "1111111", //
                      "1111111", //
                      "1111111"}),
              (Rows{"#######", //
                    "#11111#", //
                    "#11#11#", //
                    "#1###1#", //
                    "#1##11#", // (3,4) differs from above and takes (2,4) along
                    "#11111#", //
                    "#######"}));
}

TEST(MarkBoundaries, WidenHorizontalStretchesByOneVoxelToTheLeft) {
    // (4,3), (5,3) and (6,3) differ from above and take their left neighbours along: so (3,3) is marked, which has its
    // own label on all sides.
    EXPECT_EQ(Marked({"2222111", //
                      "2222111", //
                      "2222111", //
                      "2222222", //
                      "2222222", //
                      "2222222"}),
              (Rows{"#######", //
                    "#22##1#", //
                    "#22####", //
                    "#22####", //
                    "#22222#", //
                    "#######"}));
}

TEST(MarkBoundaries, LeaveBackgroundAlone) {
    EXPECT_EQ(Marked({".....", //
                      ".....", //
                      "..5..", //
                      ".....", //
                      "....."}),
              (Rows{".....", ".....", "..#..", ".....", "....."}));
    EXPECT_EQ(Marked({".......", //
                      ".33333.", //
                      ".33333.", //
                      ".33333.", //
                      ".33333.", //
                      "......."}),
              (Rows{".......", //
                    ".#####.", //
                    ".#333#.", //
                    ".#333#.", //
                    ".#####.", //
                    "......."}));
}

TEST(MarkBoundaries, OfThinPicturesAreEverywhere) {
    EXPECT_EQ(Marked({"11.112"}), (Rows{"##.###"}));
    EXPECT_EQ(Marked({"1", ".", "1", "1"}), (Rows{"#", ".", "#", "#"}));
    EXPECT_EQ(Marked({"11", "11", "11"}), (Rows{"##", "##", "##"}));
    EXPECT_EQ(Marked({"1"}), (Rows{"#"}));
    Labels labels{7};
    MarkBoundaries(labels.data(), 0, 5);
    MarkBoundaries(labels.data(), 5, 0);
    EXPECT_EQ(labels[0], 7) << "no room, nothing done";
}

TEST(MarkBoundaries, FollowTheRuleOnPicturesOfAnySize) {
    std::mt19937 random(7);
    for (const auto& [w, h] : {std::pair<std::size_t, std::size_t>{1, 9},
                               {9, 1},
                               {2, 2},
                               {3, 3},
                               {17, 5},
                               {257, 4},
                               {258, 3},
                               {259, 3},
                               {600, 7},
                               {64, 64}})
        for (const unsigned kinds : {2U, 3U, 9U})
            for (const unsigned patch : {1U, 4U}) {
                Labels labels(w * h);
                for (std::size_t i = 0; i < labels.size(); ++i)
                    labels[i] =
                        i % patch != 0 && i % w != 0 ? labels[i - 1] : static_cast<LabelPixel>(random() % kinds);
                Labels literal = labels;
                MarkLiterally(literal, w, h);
                MarkBoundaries(labels.data(), w, h);
                ASSERT_EQ(labels, literal) << w << " by " << h << ", " << kinds << " labels in patches of " << patch;
            }
}

TEST(MarkBoundaries, FollowTheRuleForLabelsOf16BitsToo) {
    std::mt19937 random(11);
    constexpr LabelPixel some[] = {0, 1, 0x8000, 0x8001, 0xFFFF, 0x7FFF};
    for (int round = 0; round < 50; ++round) {
        Labels labels(31 * 13);
        for (LabelPixel& label : labels)
            label = some[random() % 6];
        Labels literal = labels;
        MarkLiterally(literal, 31, 13);
        MarkBoundaries(labels.data(), 31, 13);
        ASSERT_EQ(labels, literal);
    }
}

TEST(BlendCut, MixesTheInsideAndPaintsTheBoundary) {
    constexpr LabelPixel inside = 3, boundary = 3 | boundaryBit;
    // 0.25 of the picture and 0.75 of (3, 30, 200): 25 + 2.25, 10 + 22.5, 0 + 150.
    EXPECT_EQ(Cut({0, inside, boundary}, 0.25F, {100, 40, 0}),
              (std::vector<Colour>{{100, 40, 0}, {27, 32, 150}, {3, 30, 200}}));
    EXPECT_EQ(Cut({0, inside, boundary}, 0.0F, {100, 40, 0}),
              (std::vector<Colour>{{100, 40, 0}, {3, 30, 200}, {3, 30, 200}}));
    EXPECT_EQ(Cut({0, inside, boundary}, 1.0F, {100, 40, 0}),
              (std::vector<Colour>{{100, 40, 0}, {100, 40, 0}, {3, 30, 200}}));
}

TEST(BlendCut, LeavesABoundaryOfBackgroundAlone) {
    for (const float t : {0.0F, 0.5F, 1.0F})
        EXPECT_EQ(Cut({boundaryBit}, t, {9, 8, 7}), (std::vector<Colour>{{9, 8, 7}})) << t;
}

TEST(BlendCut, TakesWhatLiesOutsideForTheNearerEnd) {
    constexpr Colour under{100, 40, 0}, label{3, 30, 200};
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float t : {-0.5F, -infinity, std::numeric_limits<float>::quiet_NaN()})
        EXPECT_EQ(Cut({3}, t, under)[0], label) << t;
    for (const float t : {1.5F, infinity})
        EXPECT_EQ(Cut({3}, t, under)[0], under) << t;
}

TEST(BlendProjection, PaintsOutlinesAndMixesLabelsOverThem) {
    constexpr Colour under{100, 40, 0};
    EXPECT_EQ(Projected(0, 5, 0.5F, under), under) << "layer 0 decides whether a pixel is painted";
    // Half of (5, 50, 200) and half of (3, 30, 200), not of the picture: 4, 40, 200.
    EXPECT_EQ(Projected(3, 5, 0.5F, under), Colour(4, 40, 200));
    EXPECT_EQ(Projected(3, 0, 0.5F, under), Colour(51, 35, 100)) << "half of the picture: 50 + 1.5, 20 + 15";
    EXPECT_EQ(Projected(3, 5, 0.0F, under), Colour(3, 30, 200));
    EXPECT_EQ(Projected(3, 0, 0.0F, under), Colour(3, 30, 200));
    EXPECT_EQ(Projected(3, 5, 1.0F, under), Colour(5, 50, 200)) << "outlines alone";
    EXPECT_EQ(Projected(3, 0, 1.0F, under), under);
}

TEST(BlendProjection, ClearsTheBoundaryBitOfOutlinesAlone) {
    const auto labelIsMarked = [](LabelPixel label) {
        return (label & boundaryBit) != 0 ? Colour(255, 0, 0) : Colour(0, 0, 255);
    };
    const auto paint = [&](LabelPixel a, LabelPixel b, float t) {
        Colour pixel{1, 2, 3};
        BlendProjection(&a, &b, 1, t, labelIsMarked, &pixel);
        return pixel;
    };
    EXPECT_EQ(paint(4 | boundaryBit, 0, 0.0F), Colour(255, 0, 0)) << "as it is";
    EXPECT_EQ(paint(4, 4 | boundaryBit, 1.0F), Colour(0, 0, 255)) << "cleared";
    EXPECT_EQ(paint(4, boundaryBit, 1.0F), Colour(1, 2, 3)) << "a boundary of background is none";
    EXPECT_EQ(paint(boundaryBit, 0, 0.0F), Colour(255, 0, 0)) << "not 0, so it is painted";
}

TEST(Blend, GoesDownTheLadderOfTransparencyAsWritten) {
    // All pixel values against all colours that matter, at each step of the menu; in runs, as whole blocks are mixed
    // by another way than their rests.
    std::vector<float> ladder;
    for (float t = 0.0F; t < 1.0F; t = IncreaseTransparency(t))
        ladder.push_back(t);
    ASSERT_EQ(ladder.size(), 20U);
    for (const float t : ladder)
        for (const LabelPixel label : Labels{1, 13, 25, 255}) {
            const Colour colour = Numbered(label);
            Labels labels(256, label);
            std::vector<Colour> picture(256);
            for (std::size_t i = 0; i < 256; ++i)
                picture[i] = {static_cast<unsigned char>(i), static_cast<unsigned char>(255 - i),
                              static_cast<unsigned char>(i / 2)};
            const std::vector<Colour> old = picture;
            BlendCut(labels.data(), 256, t, Numbered, picture.data());
            for (std::size_t i = 0; i < 256; ++i)
                ASSERT_EQ(picture[i], MixedLiterally(old[i], colour, t)) << t << ", " << i;
        }
}

TEST(Blend, FollowsTheRuleInRunsOfAnyLength) {
    std::mt19937 random(3);
    for (const float t : {0.0F, 0.05F, 0.65F, 1.0F})
        for (const std::size_t count : {0U, 1U, 15U, 16U, 17U, 500U, 4099U}) {
            Labels a, b;
            while (a.size() < count) {
                const auto label = static_cast<LabelPixel>((random() % 4) | (random() % 2 != 0 ? boundaryBit : 0));
                a.insert(a.end(), std::min<std::size_t>(1 + random() % 70, count - a.size()), label);
            }
            while (b.size() < count)
                b.insert(b.end(), std::min<std::size_t>(1 + random() % 40, count - b.size()),
                         static_cast<LabelPixel>(random() % 3));
            std::vector<Colour> old(count);
            for (Colour& pixel : old)
                pixel = {static_cast<unsigned char>(random()), static_cast<unsigned char>(random()), 77};
            auto cut = old, projected = old;
            BlendCut(a.data(), count, t, Numbered, cut.data());
            BlendProjection(a.data(), b.data(), count, t, Numbered, projected.data());
            for (std::size_t i = 0; i < count; ++i) {
                const LabelPixel label = LabelOf(a[i]);
                const bool isBoundary = label != a[i];
                Colour pixel = old[i];
                if (label != 0 && (isBoundary || t == 0.0F))
                    pixel = Numbered(label);
                else if (label != 0 && t < 1.0F)
                    pixel = MixedLiterally(pixel, Numbered(label), t);
                ASSERT_EQ(cut[i], pixel) << t << ", " << i << " of " << count;
                pixel = old[i];
                if (a[i] != 0) {
                    if (b[i] != 0)
                        pixel = Numbered(b[i]);
                    if (t == 0.0F)
                        pixel = Numbered(a[i]);
                    else if (t < 1.0F)
                        pixel = MixedLiterally(pixel, Numbered(a[i]), t);
                }
                ASSERT_EQ(projected[i], pixel) << t << ", " << i << " of " << count;
            }
        }
}

TEST(Blend, AsksOnceForEachLabelOfAPicture) {
    Labels labels;
    for (int row = 0; row < 50; ++row)
        for (LabelPixel label = 1; label <= 100; ++label)
            labels.insert(labels.end(), {label, static_cast<LabelPixel>(label | boundaryBit), 0});
    std::vector<int> asked(101);
    const auto count = [&](LabelPixel label) {
        ++asked[label];
        return Colour{};
    };
    std::vector<Colour> picture(labels.size());
    BlendCut(labels.data(), labels.size(), 0.5F, count, picture.data());
    asked[0] = 1; // for no background
    EXPECT_EQ(asked, std::vector<int>(101, 1));
}

TEST(Transparency, TwentyPressesReachEitherEnd) {
    float t = 0.0F;
    for (int press = 1; press < 20; ++press) {
        t = IncreaseTransparency(t);
        EXPECT_NEAR(t, 0.05F * static_cast<float>(press), 1e-6F);
        EXPECT_LT(t, 1.0F);
    }
    EXPECT_EQ(IncreaseTransparency(t), 1.0F);
    EXPECT_EQ(IncreaseTransparency(1.0F), 1.0F);
    t = 1.0F;
    for (int press = 1; press < 20; ++press) {
        t = DecreaseTransparency(t);
        EXPECT_GT(t, 0.0F);
    }
    EXPECT_EQ(DecreaseTransparency(t), 0.0F);
    EXPECT_EQ(DecreaseTransparency(0.0F), 0.0F);
    EXPECT_EQ(IncreaseTransparency(0.1F), 0.1F + 0.05F);
}
