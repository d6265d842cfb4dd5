#pragma once

// The module of gray images without a frame and a menu: its ids then start at 0, so an entry's id is its offset.

#include "mapping/zel_graymapping.h"
#include "tests/mapping/counted.h"

namespace zel::test {

using Colour = kep::RGB_generic<unsigned char>;

/// A module whose dialogs are agreed to at once, with the parameters that they begin with.
template <typename T>
class Module : public zel_GrayMappingModule<T> {
public:
    explicit Module(const Histogram<T>& histogram) : zel_GrayMappingModule<T>(nullptr, SetOf(histogram)) {}

    bool SetLevelsStretch() override { return true; }
    bool SetThreshold() override { return true; }

    void Choose(int entry) {
        wxCommandEvent event(wxEVT_MENU, entry);
        this->OnMapping(event);
    }
    /// The level of a voxel.
    int operator()(T voxel) const { return this->GetMappingTable().Get(voxel); }
    Colour ColourOf(T voxel) const {
        ColourBuffer buffer(1, 1);
        this->Map(&voxel, buffer);
        return buffer.data[0];
    }
};

inline Histogram<unsigned char> Bytes(const std::vector<unsigned char>& voxels) {
    return OfVoxels<unsigned char>(voxels);
}

} // namespace zel::test
