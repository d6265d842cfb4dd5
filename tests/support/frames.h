#pragma once

// Small frames of voxels, and files of them.

#include "image/kep.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

/// A frame of these voxels, x fastest; by default one row.
template <typename T>
kep::Image3d<T> FrameOf(const std::vector<T>& voxels, std::size_t width = 0) {
    const std::size_t row = width != 0 ? width : voxels.size();
    kep::Image3d<T> frame;
    frame.MakeRoom(row, voxels.size() / row, 1);
    std::copy(voxels.begin(), voxels.end(), frame.begin());
    return frame;
}

/// Saves a frame in the format that the name asks for, without compression. @return the name
template <typename T>
std::string Save(const kep::Image3d<T>& frame, const std::string& fileName) {
    frame.SaveImage(fileName.c_str(), kep::FF_BY_NAME, false, nullptr);
    return fileName;
}
