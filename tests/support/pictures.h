#pragma once

// Images and mappers whose pictures are known voxel by voxel.

#include "image/zel_image4d.h"
#include "model/zel_mapper.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <complex>
#include <cstddef>
#include <memory>

namespace zel::test {

/// Leaves the pictures to the voxels.
inline void HideDecorations(zel_Viewer3dCanvas& canvas) {
    zel_CanvasSettings settings;
    canvas.GetSettings(settings);
    settings.cutPointer.style = 0;
    settings.timeBar.thickness = 0;
    settings.scaleBar.thickness = 0;
    canvas.SetSettings(settings);
    if (canvas.GetInfoFlag())
        canvas.ToggleInfoFlag();
}

/// An image whose voxels are made by their place x, y, z, t, and whose extremes are known; by default of one micron a
/// voxel.
template <typename T, typename MakeVoxel>
std::unique_ptr<mor::Image4d<T>> MakeImage(kep::Vector3d<std::size_t> size, std::size_t frames,
                                           const MakeVoxel& makeVoxel, const kep::Resolution& resolution = {1, 1, 1},
                                           const kep::Vector3d<float>& offset = {}) {
    auto image = std::make_unique<mor::Image4d<T>>(&offset, &resolution);
    image->MakeRoom(size, frames);
    for (std::size_t t = 0; t < frames; ++t) {
        std::size_t i = 0;
        for (T& voxel : *image->GetImage(t)) {
            const kep::Vector3d<std::size_t> at = image->GetFramePos(i++);
            voxel = static_cast<T>(makeVoxel(at.x, at.y, at.z, t));
        }
    }
    image->UpdateMinMaxValues();
    return image;
}

template <typename T>
struct ToColour {
    static kep::RGB_generic<unsigned char> Of(T v) { return {static_cast<unsigned char>(v), 0, 0}; }
};
template <typename C>
struct ToColour<kep::RGB_generic<C>> {
    static kep::RGB_generic<unsigned char> Of(const kep::RGB_generic<C>& v) {
        return {static_cast<unsigned char>(v.red), static_cast<unsigned char>(v.green),
                static_cast<unsigned char>(v.blue)};
    }
};
template <>
struct ToColour<unsigned short> {
    /// Low byte red, high byte green: a pixel names its voxel.
    static kep::RGB_generic<unsigned char> Of(unsigned short v) {
        return {static_cast<unsigned char>(v & 255), static_cast<unsigned char>(v >> 8), 0};
    }
};
template <>
struct ToColour<std::complex<float>> {
    static kep::RGB_generic<unsigned char> Of(const std::complex<float>& v) {
        return {static_cast<unsigned char>(v.real()), 0, 0};
    }
};

/// Shows values as they are, and counts.
template <typename T>
class PlainMapper : public zel_Mapper<T> {
public:
    void Map(const T* data, ColourBuffer& buffer) const override {
        ++maps;
        for (int i = 0; i < buffer.width * buffer.height; ++i)
            buffer.data[i] = ToColour<T>::Of(data[i]);
    }
    mutable int maps = 0;
};

} // namespace zel::test
