#include "factory/zel_viewerfactory.h"

#include "mapping/zel_mapperfactory.h"
#include "viewer/zel_imagecanvas3d.h"

namespace zel {

template <typename T>
zel_Viewer3dFrame* zel_CreateImage3dFrame(mor::Image4d<T>* image, bool ownsImage, wxWindow* parent, int id,
                                          const wxString& title, const wxPoint& pos, const wxSize& size, long style) {
    auto* const frame = new zel_Viewer3dFrame(parent, id, title, pos, size, style);
    zel_MappingModule<T>* mapper = nullptr;
    {
        const mor::Image4d<T> copy(*image, nullptr); // so that its extremes are those of the voxels as they are now
        mapper = zel_CreateMapperForType<T>(frame, copy);
    }
    frame->AddExtensionModule(mapper, "&Mapping", true);
    frame->SetCanvas(
        new zel_ImageViewer3dCanvas<T>(frame, *mapper, image, ownsImage, wxID_ANY, wxDefaultPosition, wxDefaultSize));
    frame->ResizeFrameIfRequired();
    return frame;
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template ZEL_EXPORT zel_Viewer3dFrame* zel_CreateImage3dFrame<T>(                                                  \
        mor::Image4d<T>*, bool, wxWindow*, int, const wxString&, const wxPoint&, const wxSize&, long);
ZEL_INSTANTIATE(unsigned char)
ZEL_INSTANTIATE(unsigned short)
ZEL_INSTANTIATE(float)
ZEL_INSTANTIATE(kep::RGB_generic<unsigned char>)
ZEL_INSTANTIATE(kep::RGB_generic<unsigned short>)
ZEL_INSTANTIATE(std::complex<float>)
#undef ZEL_INSTANTIATE

} // namespace zel
