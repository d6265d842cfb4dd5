#include "factory/zel_labeledviewerfactory.h"

#include "mapping/zel_mapperfactory.h"
#include "overlay/zel_basicoverlayingmodule.h"
#include "overlay/zel_labeledimagecanvas3d.h"

#include <memory>

namespace zel {

template <typename T, typename L, typename V>
zel_Viewer3dFrame* zel_CreateLabeledImage3dFrame(mor::Image4d<T>* image, mor::LabeledImage4d<L, V>* labels,
                                                 bool ownsImage, bool ownsLabels, wxWindow* parent, int id,
                                                 const wxString& title, const wxPoint& pos, const wxSize& size,
                                                 long style) {
    auto* const frame = new zel_Viewer3dFrame(parent, id, title, pos, size, style);
    auto overlaying = std::make_unique<zel_BasicOverlayingModule<L, V>>(frame, labels, false);
    zel_MappingModule<T>* const mapper = zel_CreateMapperForType<T>(frame, *image);
    frame->AddExtensionModule(mapper, "&Mapping", true);
    frame->AddExtensionModule(overlaying.get(), "&Overlaying", true);
    zel_BasicOverlayingModule<L, V>& overlayer = *overlaying.release(); // the frame's now
    frame->SetCanvas(new zel_LabeledImageViewer3dCanvas<T, L, V>(frame, *mapper, overlayer, image, ownsImage, wxID_ANY,
                                                                 wxDefaultPosition, wxDefaultSize));
    overlayer.SetOwnsImage(ownsLabels); // only here, so that the caller still owns them when something throws
    frame->ResizeFrameIfRequired();
    return frame;
}

#define ZEL_INSTANTIATE(T, L, V)                                                                                       \
    template ZEL_EXPORT zel_Viewer3dFrame* zel_CreateLabeledImage3dFrame<T, L, V>(                                     \
        mor::Image4d<T>*, mor::LabeledImage4d<L, V>*, bool, bool, wxWindow*, int, const wxString&, const wxPoint&,     \
        const wxSize&, long);
ZEL_LABELED_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
