#pragma once

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/kep_exceptions.h"
#include "tests/support/scratch_folder.h"

#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ics_test {

using kep::detail::FrameHeader;
using kep::detail::NumberKind;
using kep::detail::SampleType;

/// A frame in memory: what a file says, and its voxels as bytes.
struct Frame {
    FrameHeader header;
    std::string voxels;
};

inline std::size_t CountBytes(const FrameHeader& header) {
    return header.GetSliceBytes() * header.size.z;
}

/// Reads a file by its slices: one, then two at a time.
inline Frame Read(const std::string& fileName) {
    const auto source = kep::detail::OpenIcsFrame(std::make_unique<kep::detail::InputFile>(fileName));
    Frame frame{source->GetHeader(), {}};
    frame.voxels.assign(CountBytes(frame.header), '\0');
    auto* to = reinterpret_cast<std::byte*>(frame.voxels.data());
    std::size_t done = 0;
    while (done < frame.header.size.z) {
        const std::size_t count = done == 0 ? 1 : std::min<std::size_t>(2, frame.header.size.z - done);
        source->ReadSlices(count, to + done * frame.header.GetSliceBytes());
        done += count;
    }
    return frame;
}

/// @return what the file lacks
inline std::string Write(const std::string& fileName, const Frame& frame, bool compress) {
    return kep::detail::WriteIcsFrame(
        fileName, {frame.header, reinterpret_cast<const std::byte*>(frame.voxels.data()), compress});
}

/// The text of the failure, or nothing if the action went well.
inline std::string FailureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const kep::IOException& failure) {
        return failure.GetText();
    }
    return "";
}

inline std::string RandomBytes(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() & 0xFFU);
    return bytes;
}

/// A frame of random voxels with a resolution, an offset and a description.
inline Frame MakeFrame(SampleType sample, int components, kep::Vector3d<std::size_t> size, unsigned seed) {
    Frame frame;
    frame.header.size = size;
    frame.header.sample = sample;
    frame.header.components = components;
    frame.header.resolution = kep::Resolution(10.3F, 9.7F, 1.1F);
    frame.header.offset = {0.1F, -33.3F, 1234.567F};
    frame.header.description = {{"author", "me"}, {"note", "two\nlines"}};
    frame.voxels = RandomBytes(CountBytes(frame.header), seed);
    return frame;
}

/// A header of version 2 that tests change line by line.
class HeaderText {
public:
    HeaderText() {
        Set("layout\tparameters", "4");
        Set("layout\torder", "bits\tx\ty\tz");
        Set("layout\tsizes", "8\t3\t2\t2");
        Set("representation\tformat", "integer");
        Set("representation\tsign", "unsigned");
        Set("representation\tcompression", "uncompressed");
        Set("representation\tbyte_order", "1");
    }

    /// Replaces a line, or adds it behind the others.
    HeaderText& Set(const std::string& key, const std::string& values) {
        for (auto& line : lines)
            if (line.first == key) {
                line.second = values;
                return *this;
            }
        lines.emplace_back(key, values);
        return *this;
    }
    HeaderText& Drop(const std::string& key) {
        std::erase_if(lines, [&](const auto& line) { return line.first == key; });
        return *this;
    }
    /// Sets axes and sizes, the bits first.
    HeaderText& SetAxes(const std::string& order, const std::string& sizes) {
        Set("layout\tparameters", std::to_string(1 + std::count(order.begin(), order.end(), '\t')));
        Set("layout\torder", order);
        return Set("layout\tsizes", sizes);
    }
    HeaderText& SetVersion(int number) {
        version = number;
        return *this;
    }

    std::string Text() const {
        std::string text = "\t\nics_version\t" + std::to_string(version) + ".0\nfilename\tx\n";
        for (const auto& [key, values] : lines)
            text.append(key).append("\t").append(values).append("\n");
        return text + (version == 2 ? "end\n" : "");
    }

private:
    int version = 2;
    std::vector<std::pair<std::string, std::string>> lines;
};

} // namespace ics_test
