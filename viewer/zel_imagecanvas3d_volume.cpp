// The present frame in the volume window.

#include "model/zel_volumetexture.h"
#include "viewer/zel_imagecanvas3d.h"
#include "volume/vol3D_canvas.h"
#include "volume/zel_updatenotice.h"

#include <new>

namespace zel {

template <typename T>
VolumeTexture zel_ImageViewer3dCanvas<T>::MakeFrameVolume() const {
    const kep::Image3d<T>& frame = *m_image->GetImage(static_cast<std::size_t>(m_time));
    ColourBuffer mapped(CountMappedVoxels(frame.GetSize()), 1);
    m_mapper->Map(frame.GetFirstVoxelAddr(), mapped);
    return MakeVolume(mapped.data, frame.GetSize());
}

template <typename T>
void zel_ImageViewer3dCanvas<T>::UpdateVolVis() {
    if (!IsVolVisShown() || IsMapperDetached() || !IsFrameThere() || m_image->IsEmpty())
        return;
    const zel_UpdateNotice notice("Updating 3D data...", GetVolVisFrame());
    try {
        const VolumeTexture volume = MakeFrameVolume();
        vol3D_VolVisCanvas& canvas = *GetVolVisFrame()->GetCanvas();
        canvas.MakeCurrent();
        canvas.SetVolumeData(volume.rgba.get(), volume.size,
                             ComputeVolumeScale(m_image->GetSize(), m_image->GetResolution()));
    } catch (const std::bad_alloc&) {
        ReportVolumeError("Not enough memory to create the 3D texture!");
    }
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template VolumeTexture zel_ImageViewer3dCanvas<T>::MakeFrameVolume() const;                                        \
    template void zel_ImageViewer3dCanvas<T>::UpdateVolVis();
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)

} // namespace zel
