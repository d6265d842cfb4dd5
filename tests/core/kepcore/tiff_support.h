#pragma once

// What the tests of the TIFF reader share: frames read whole, and TIFF files made byte by byte, sound or not.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/kep_exceptions.h"
#include "tests/support/scratch_folder.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace tifftest {

inline std::unique_ptr<kep::detail::FrameSource> Open(const std::string& fileName) {
    return kep::detail::OpenTiffFrame(std::make_unique<kep::detail::InputFile>(fileName));
}

struct Frame {
    kep::detail::FrameHeader header;
    std::vector<std::byte> voxels;

    /// All numbers as they lie in memory.
    template <typename T>
    std::vector<T> GetNumbers() const {
        std::vector<T> numbers(voxels.size() / sizeof(T));
        std::memcpy(numbers.data(), voxels.data(), numbers.size() * sizeof(T));
        return numbers;
    }
};

/// Reads a file in steps of so many slices; 0: all at once.
inline Frame Read(const std::string& fileName, std::size_t step = 0) {
    const auto source = Open(fileName);
    Frame frame;
    frame.header = source->GetHeader();
    const std::size_t slices = frame.header.size.z;
    const std::size_t sliceBytes = frame.header.GetSliceBytes();
    frame.voxels.assign(slices * sliceBytes, std::byte{0xCD});
    for (std::size_t z = 0; z < slices;) {
        const std::size_t count = step == 0 ? slices : std::min(step, slices - z);
        source->ReadSlices(count, frame.voxels.data() + z * sliceBytes);
        z += count;
    }
    return frame;
}

/// The text of the failure to read a file, or nothing if it was read.
inline std::string GetFailure(const std::string& fileName) {
    try {
        Read(fileName);
    } catch (const kep::IOException& failure) {
        return failure.GetText();
    }
    return "";
}

enum class Order { Little, Big };
enum class Kind { Classic, Big };

/// A TIFF file in the making. Values are appended where the caller says; nothing is tested.
class TiffBuilder {
public:
    explicit TiffBuilder(Order byteOrder = Order::Little, Kind fileKind = Kind::Classic)
        : order(byteOrder), kind(fileKind) {
        bytes = order == Order::Little ? "II" : "MM";
        Add(kind == Kind::Big ? 43 : 42, 2);
        if (kind == Kind::Big) {
            Add(8, 2);
            Add(0, 2);
        }
        link = bytes.size();
        Add(0, GetOffsetBytes());
    }

    struct Tag {
        unsigned number;
        unsigned type;                     ///< 1 byte, 2 text, 3 short, 4 long, 5 rational, 16 long8
        std::vector<std::uint64_t> values; ///< of a rational: numerator and denominator in turn
        std::uint64_t count = UINT64_MAX;  ///< that the directory claims; else that of the values
    };
    static Tag Text(unsigned number, const std::string& text) {
        Tag tag{number, 2, {}};
        for (const char c : text)
            tag.values.push_back(static_cast<unsigned char>(c));
        tag.values.push_back(0);
        return tag;
    }

    /// Appends a number. @return its position
    std::size_t Add(std::uint64_t value, std::size_t size) {
        const std::size_t at = bytes.size();
        bytes.append(size, '\0');
        Put(at, value, size);
        return at;
    }
    void Put(std::size_t at, std::uint64_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i)
            bytes[at + (order == Order::Little ? i : size - 1 - i)] = static_cast<char>(value >> 8U * i & 0xFFU);
    }
    std::size_t AddBytes(const std::string& raw) {
        const std::size_t at = bytes.size();
        bytes += raw;
        return at;
    }
    /// Numbers of so many bytes in the file's order.
    std::size_t AddNumbers(const std::vector<std::uint64_t>& numbers, std::size_t size) {
        const std::size_t at = bytes.size();
        for (const std::uint64_t number : numbers)
            Add(number, size);
        return at;
    }

    /// Appends a directory and links it behind the last one.
    /// @return its position
    std::size_t AddDirectory(const std::vector<Tag>& tags) {
        std::vector<std::uint64_t> places;
        for (const Tag& tag : tags) {
            places.push_back(0);
            if (GetBytes(tag) > GetOffsetBytes()) {
                places.back() = bytes.size();
                AddValues(tag);
            }
        }
        const std::size_t at = bytes.size();
        Put(link, at, GetOffsetBytes());
        Add(tags.size(), kind == Kind::Big ? 8 : 2);
        for (std::size_t i = 0; i < tags.size(); ++i) {
            Add(tags[i].number, 2);
            Add(tags[i].type, 2);
            Add(tags[i].count != UINT64_MAX ? tags[i].count : GetCount(tags[i]), GetOffsetBytes());
            if (places[i] != 0) {
                Add(places[i], GetOffsetBytes());
            } else {
                const std::size_t field = bytes.size();
                AddValues(tags[i]);
                bytes.resize(field + GetOffsetBytes(), '\0');
            }
        }
        link = bytes.size();
        Add(0, GetOffsetBytes());
        return at;
    }
    /// Links the last directory to a position.
    void LinkTo(std::uint64_t at) { Put(link, at, GetOffsetBytes()); }

    const std::string& GetFile() const { return bytes; }
    std::size_t GetOffsetBytes() const { return kind == Kind::Big ? 8 : 4; }

private:
    static std::size_t GetUnit(const Tag& tag) {
        return tag.type == 16 ? 8 : tag.type == 4 || tag.type == 5 ? 4 : tag.type == 3 ? 2 : 1;
    }
    static std::size_t GetBytes(const Tag& tag) { return GetUnit(tag) * tag.values.size(); }
    static std::size_t GetCount(const Tag& tag) { return tag.type == 5 ? tag.values.size() / 2 : tag.values.size(); }
    void AddValues(const Tag& tag) {
        for (const std::uint64_t value : tag.values)
            Add(value, GetUnit(tag));
    }

    Order order;
    Kind kind;
    std::string bytes;
    std::size_t link = 0; ///< position of the last directory's link
};

/// The tags of a plain page in one strip.
inline std::vector<TiffBuilder::Tag> PlainTags(unsigned width, unsigned height, unsigned bits, std::size_t at) {
    return {{256, 4, {width}}, {257, 4, {height}}, {258, 3, {bits}},
            {259, 3, {1}},     {262, 3, {1}},      {273, 4, {at}},
            {277, 3, {1}},     {278, 4, {height}}, {279, 4, {std::uint64_t{width} * height * bits / 8}}};
}

/// The same with more tags behind.
inline std::vector<TiffBuilder::Tag> operator+(std::vector<TiffBuilder::Tag> tags,
                                               const std::vector<TiffBuilder::Tag>& more) {
    tags.insert(tags.end(), more.begin(), more.end());
    return tags;
}

/// A stack of 3 x 2 pixels of 8 bits; page k holds 10 k + 0..5. More tags go into its first page.
inline TiffBuilder MakeStack(unsigned pages, const std::vector<TiffBuilder::Tag>& first = {},
                             Order order = Order::Little, Kind kind = Kind::Classic) {
    TiffBuilder builder(order, kind);
    for (unsigned k = 0; k < pages; ++k) {
        std::vector<std::uint64_t> numbers(6);
        std::iota(numbers.begin(), numbers.end(), 10 * k);
        const std::size_t at = builder.AddNumbers(numbers, 1);
        builder.AddDirectory(k == 0 ? PlainTags(3, 2, 8, at) + first : PlainTags(3, 2, 8, at));
    }
    return builder;
}

/// The tag of a first page.
inline std::vector<TiffBuilder::Tag> Description(const std::string& text) {
    return {TiffBuilder::Text(270, text)};
}

} // namespace tifftest
