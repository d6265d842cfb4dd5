#pragma once

#include <cstddef>

namespace zel {

/// A picture: width * height pixels, rows from top to bottom. Owns its memory; not copyable.
template <typename U>
struct Buffer2d {
    int width;  ///< pixels of a row
    int height; ///< rows
    U* data;    ///< row after row without gaps; not null, even without pixels, unless Resize has failed

    /// A picture whose pixels are as the default constructor of U leaves them.
    Buffer2d(int newWidth, int newHeight) : width(newWidth), height(newHeight), data(Allocate(newWidth, newHeight)) {}
    ~Buffer2d() { delete[] data; }
    Buffer2d(const Buffer2d&) = delete;
    Buffer2d& operator=(const Buffer2d&) = delete;

    /// Number of pixels.
    std::size_t GetCount() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }

    /// A new block of pixels, whatever the old size was: what was in it is gone.
    void Resize(int newWidth, int newHeight) {
        delete[] data;
        data = nullptr;
        width = height = 0;
        data = Allocate(newWidth, newHeight);
        width = newWidth;
        height = newHeight;
    }

private:
    static U* Allocate(int w, int h) { return new U[static_cast<std::size_t>(w) * static_cast<std::size_t>(h)]; }
};

} // namespace zel
