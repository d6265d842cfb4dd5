#pragma once

// What docs/embedding.md quotes of an overlayer.

#include "model/zel_planes.h"
#include "overlay/zel_overlayer.h"

#include <algorithm>
#include <vector>

namespace zel::docs {

/// Marks one voxel of one frame in red, in all cuts and projections in which it is seen.
class VoxelMark : public zel_Overlayer<unsigned short, unsigned char> {
public:
    /// @param offset, resolution  those of the image
    VoxelMark(const kep::Vector3d<float>& offset, const kep::Resolution& resolution, kep::Vector3d<int> voxel,
              std::size_t frame)
        : m_offset(offset), m_resolution(resolution), m_voxel(voxel), m_frame(frame) {
        SetOverlaying(true);
    }

    /// The caller sends a zel_OverlayingEvent(true, true) to the frame.
    void MoveTo(const kep::Vector3d<int>& voxel) { m_voxel = voxel; }

    std::size_t Buffer_Create(zel_OverlayWindowType type) override {
        m_buffers.emplace_back(type);
        return m_buffers.size() - 1;
    }
    void Buffer_SetDim(std::size_t buffer, const kep::Vector3d<std::size_t>& size, const kep::Vector3d<float>& offset,
                       const kep::Vector3d<float>& resolution) override {
        kep::Image3d<unsigned short>& layer = m_buffers[buffer].GetLayer(0);
        layer.MakeRoom(size.x, size.y, size.z);
        layer.SetOffset(offset);
        layer.SetResolution(kep::Resolution(resolution));
    }
    void Buffer_Render(std::size_t buffer, std::size_t frame) override {
        const zel_OverlayWindowType type = m_buffers[buffer].GetWindowType();
        const Axis third = planes[static_cast<std::size_t>(type - zel_OverlayWindowCutXY) % planes.size()].third;
        kep::Image3d<unsigned short>& layer = m_buffers[buffer].GetLayer(0);
        for (std::size_t i = 0; i < layer.GetNumVoxels(); ++i) {
            kep::Vector3d<float> place = layer.GetOffset();
            place += kep::PixelsToMicrons(layer.GetPos(i), layer.GetResolution());
            kep::Vector3d<int> seen = kep::MicronsToVoxel(place, m_offset, m_resolution);
            if (type >= zel_OverlayWindowAutofocusXY)
                At(seen, third) = At(m_voxel, third); // a projection shows all depths at once
            layer.SetVoxel(i, frame == m_frame && seen == m_voxel ? 1 : 0);
        }
    }
    void Overlay(std::size_t buffer, ColourBuffer& picture) const override {
        const kep::Image3d<unsigned short>& layer = m_buffers[buffer].GetLayer(0);
        for (std::size_t i = 0; GetOverlaying() && i < std::min(layer.GetNumVoxels(), picture.GetCount()); ++i)
            if (layer.GetVoxel(i) != 0)
                picture.data[i] = {255, 0, 0};
    }
    unsigned short Buffer_GetValue(std::size_t buffer, const kep::Vector3d<std::size_t>& position) const override {
        return m_buffers[buffer].GetLayer(0).GetVoxel(position);
    }
    bool IsEmpty(bool, std::size_t frame) const override { return frame != m_frame; }
    const kep::LabeledImage3d<unsigned short, unsigned char>* GetLabeledImage(bool, bool, std::size_t) const override {
        return nullptr; // no surface in the volume window
    }
    bool SetPosition(bool, const wxString&, const wxRect*) override { return false; }
    bool LoadOverlay(bool, const kep::Vector3d<std::size_t>&, const kep::Vector3d<float>&,
                     const kep::Resolution&) override {
        return false; // nothing to load
    }

private:
    kep::Vector3d<float> m_offset;
    kep::Resolution m_resolution;
    kep::Vector3d<int> m_voxel;
    std::size_t m_frame;
    std::vector<zel_OverlayBuffer<unsigned short>> m_buffers;
};

} // namespace zel::docs
