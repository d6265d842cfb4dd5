#include "model/zel_infotexts.h"

#include "model/zel_truncate.h"

#include <array>
#include <cstdarg>
#include <cstdio>

namespace zel {

namespace {

constexpr const char* undefined = "undef";

[[gnu::format(printf, 1, 2)]] std::string Print(const char* format, ...) {
    std::array<char, 256> text{}; // three floats of 39 digits before the point fit
    std::va_list values;
    va_start(values, format);
    std::vsnprintf(text.data(), text.size(), format, values);
    va_end(values);
    return text.data();
}

unsigned Unsigned(std::size_t count) {
    return static_cast<unsigned>(count);
}

/// In single precision: 1000 / (1 / 0.065F) is 65 there, and just below in double.
unsigned Nanometres(float pixelsPerMicron) {
    return static_cast<unsigned>(TruncToInt(static_cast<double>(1000.0F / pixelsPerMicron)));
}

} // namespace

std::string PositionText(const kep::Vector3d<float>& microns) {
    return Print("[%.3f, %.3f, %.3f]", static_cast<double>(microns.x), static_cast<double>(microns.y),
                 static_cast<double>(microns.z));
}

std::string ExtentText(const kep::Vector3d<float>& microns) {
    return Print("%.3f x %.3f x %.3f", static_cast<double>(microns.x), static_cast<double>(microns.y),
                 static_cast<double>(microns.z));
}

std::string VoxelNumberText(const kep::Vector3d<std::size_t>& voxel, int frame) {
    return Print("[%d, %d, %d, %d]", static_cast<int>(voxel.x), static_cast<int>(voxel.y), static_cast<int>(voxel.z),
                 frame);
}

std::string ColourText(const Colour& colour) {
    return Print("%3d %3d %3d", colour.red, colour.green, colour.blue);
}

std::string ImageSizeText(const kep::Vector3d<std::size_t>& voxels, std::size_t frames) {
    return Print("%3u x %3u x %3u x %3u", Unsigned(voxels.x), Unsigned(voxels.y), Unsigned(voxels.z), Unsigned(frames));
}

std::string VoxelSizeText(const kep::Resolution& resolution) {
    if (!resolution.IsDefined())
        return undefined;
    const kep::Vector3d<float> res = resolution.GetRes();
    return Print("%3u x %3u x %3u", Nanometres(res.x), Nanometres(res.y), Nanometres(res.z));
}

std::string ImageExtentText(const kep::Vector3d<std::size_t>& voxels, const kep::Resolution& resolution) {
    return resolution.IsDefined() ? ExtentText(kep::PixelsToMicrons(voxels, resolution)) : undefined;
}

} // namespace zel
