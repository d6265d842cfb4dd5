#include "model/zel_labelpicture.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace zel {

namespace {

using Colour = kep::RGB_generic<unsigned char>;

constexpr LabelPixel Marked(LabelPixel pixel) {
    return pixel != 0 ? static_cast<LabelPixel>(pixel | boundaryBit) : pixel;
}

/// Marks what lies between the first and the last pixel of a row; those two and the outer rows are marked anyhow.
///
/// Each pixel is marked for up to four reasons: it differs from the one above, or from the left one; the right one
/// differs from it, or was marked for the one above; the one below differs from it. All of them are told from pixels
/// that are not marked yet, but for those above and at the left, whose bit does not count: so a few pixels ahead are
/// copied, and whole vectors are marked at once.
/// @param above  the row above, marked
/// @param below  the row below, not marked yet
void MarkInside(LabelPixel* row, const LabelPixel* above, const LabelPixel* below, std::size_t width) {
    constexpr std::size_t block = 256;
    LabelPixel old[block + 2]; // a block of the row as it was, with a neighbour on either side
    LabelPixel marked[block];
    old[0] = row[0];
    for (std::size_t begin = 1; begin + 1 < width; begin += block) {
        const std::size_t count = std::min(block, width - 1 - begin);
        std::copy_n(row + begin, count + 1, old + 1);
        for (std::size_t i = 0; i < count; ++i) {
            const LabelPixel pixel = old[i + 1], right = old[i + 2];
            const LabelPixel up = LabelOf(above[begin + i]), upRight = LabelOf(above[begin + i + 1]);
            const LabelPixel label = LabelOf(pixel);
            const bool differs =
                ((pixel ^ up) | (pixel ^ LabelOf(old[i])) | (right ^ label) | (below[begin + i] ^ label)) != 0;
            const bool takenAlong = bool(right) & (right != upRight);
            const bool isMarked = bool(pixel) & (differs | takenAlong);
            marked[i] = static_cast<LabelPixel>(pixel | (isMarked ? boundaryBit : 0));
        }
        std::copy_n(marked, count, row + begin);
        old[0] = old[count];
    }
}

/// A block of pixels of which all that is painted is made.
constexpr std::size_t blockPixels = 16;
constexpr std::size_t blockBytes = 3 * blockPixels;
static_assert(sizeof(Colour) == 3);

/// Calls act(pixels, count) for each block, of which the last may be smaller.
template <typename Act>
void InBlocks(Colour* pixels, std::size_t count, const Act& act) {
    for (; count > blockPixels; count -= blockPixels, pixels += blockPixels)
        act(pixels, blockPixels);
    act(pixels, count);
}

void Fill(Colour* pixels, std::size_t count, const Colour& colour) {
    if (count < blockPixels) {
        std::fill_n(pixels, count, colour);
        return;
    }
    std::array<Colour, blockPixels> block;
    block.fill(colour);
    InBlocks(pixels, count, [&](Colour* to, std::size_t n) { std::memcpy(to, block.data(), 3 * n); });
}

/// One multiplication each, and no sum in one step with it, so that all machines give the same colours.
unsigned char Mix(unsigned char old, float kept, float added) {
    return static_cast<unsigned char>(static_cast<int>(static_cast<float>(old) * kept + added));
}

void MixWith(Colour* pixels, std::size_t count, const Colour& colour, float kept) {
    const float share = 1.0F - kept;
    std::array<float, blockBytes> added;
    for (std::size_t i = 0; i < blockBytes; i += 3) {
        added[i] = static_cast<float>(colour.red) * share;
        added[i + 1] = static_cast<float>(colour.green) * share;
        added[i + 2] = static_cast<float>(colour.blue) * share;
    }
    InBlocks(pixels, count, [&](Colour* to, std::size_t n) {
        std::array<unsigned char, blockBytes> bytes{};
        std::memcpy(bytes.data(), to, 3 * n);
        for (std::size_t i = 0; i < blockBytes; ++i)
            bytes[i] = Mix(bytes[i], kept, added[i]);
        std::memcpy(to, bytes.data(), 3 * n);
    });
}

/// Mixes as the transparency says; its ends leave the picture or the colour alone.
void Blend(Colour* pixels, std::size_t count, const Colour& colour, float transparency) {
    if (!(transparency > 0.0F)) // NaN too
        Fill(pixels, count, colour);
    else if (transparency < 1.0F)
        MixWith(pixels, count, colour, transparency);
}

/// Where the pixels that equal the first one end.
std::size_t EndOfRun(const LabelPixel* labels, std::size_t at, std::size_t end) {
    const LabelPixel label = labels[at];
    const std::uint64_t four = label * std::uint64_t{0x0001'0001'0001'0001};
    for (++at; at + 4 <= end; at += 4) {
        std::uint64_t next;
        std::memcpy(&next, labels + at, sizeof next);
        if (next != four)
            break;
    }
    while (at < end && labels[at] == label)
        ++at;
    return at;
}

/// Remembers colours: a label comes again in each row, and asking for its colour may be dear.
class KnownColours {
public:
    explicit KnownColours(const ColourOfLabel& ask) : m_ask(ask) {}

    const Colour& operator()(LabelPixel label) {
        Entry& entry = m_entries[label % m_entries.size()];
        if (!entry.known || entry.label != label)
            entry = {m_ask(label), label, true};
        return entry.colour;
    }

private:
    struct Entry {
        Colour colour;
        LabelPixel label = 0;
        bool known = false;
    };
    const ColourOfLabel& m_ask;
    std::array<Entry, 1024> m_entries;
};

} // namespace

void MarkBoundaries(LabelPixel* labels, std::size_t width, std::size_t height) {
    if (width == 0 || height == 0)
        return;
    const auto markAll = [](LabelPixel* from, std::size_t count) { std::transform(from, from + count, from, Marked); };
    markAll(labels, width);
    for (std::size_t y = 1; y < height; ++y) {
        LabelPixel* const row = labels + y * width;
        if (y + 1 < height) {
            MarkInside(row, row - width, row + width, width);
            row[0] = Marked(row[0]);
            row[width - 1] = Marked(row[width - 1]);
        } else {
            markAll(row, width);
        }
    }
}

void BlendCut(const LabelPixel* labels, std::size_t count, float transparency, const ColourOfLabel& colourOf,
              Colour* picture) {
    KnownColours colours(colourOf);
    for (std::size_t begin = 0; begin < count;) {
        const std::size_t end = EndOfRun(labels, begin, count);
        const LabelPixel pixel = labels[begin];
        const LabelPixel label = LabelOf(pixel);
        const bool isBoundary = pixel != label;
        if (label != 0 && (isBoundary || !(transparency >= 1.0F)))
            Blend(picture + begin, end - begin, colours(label), isBoundary ? 0.0F : transparency);
        begin = end;
    }
}

void BlendProjection(const LabelPixel* labels, const LabelPixel* outlines, std::size_t count, float transparency,
                     const ColourOfLabel& colourOf, Colour* picture) {
    KnownColours colours(colourOf);
    for (std::size_t begin = 0; begin < count;) {
        const std::size_t end = EndOfRun(outlines, begin, EndOfRun(labels, begin, count));
        if (const LabelPixel label = labels[begin]; label != 0) {
            if (const LabelPixel outline = LabelOf(outlines[begin]); outline != 0 && transparency > 0.0F)
                Fill(picture + begin, end - begin, colours(outline));
            if (!(transparency >= 1.0F))
                Blend(picture + begin, end - begin, colours(label), transparency);
        }
        begin = end;
    }
}

float IncreaseTransparency(float transparency) {
    return std::min(transparency + 0.05F, 1.0F);
}

float DecreaseTransparency(float transparency) {
    return std::max(transparency - 0.05F, 0.0F);
}

} // namespace zel
