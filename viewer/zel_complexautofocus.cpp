#include "viewer/zel_complexautofocus.h"

#include "model/zel_complexparts.h"

#include <wx/log.h>

namespace zel {

namespace {

using Frame = kep::Image3d<std::complex<float>>;

/// @param function  as the log names it
void MakeAutofocus(zel_ProjectionType type, const Frame& frame, Frame& autofocus,
                   const zel_Mapper<std::complex<float>>& mapper, const char* function) {
    if (const ComplexPart part = PartOf(ShownPartOf(mapper)))
        ProjectComplex(type, frame, part, autofocus);
    else
        wxLogger(wxLOG_Error, "zel_imagecanvas3d", __LINE__, function, wxLOG_COMPONENT)
            .Log("Don't know how to 'GetAF' in this mode of complex numbers.");
}

} // namespace

void MyGet_AF_XY(const Frame& frame, Frame& autofocus, const zel_Mapper<std::complex<float>>& mapper) {
    MakeAutofocus(zel_PT_XY, frame, autofocus, mapper, "zel::MyGet_AF_XY");
}

void MyGet_AF_XZ(const Frame& frame, Frame& autofocus, const zel_Mapper<std::complex<float>>& mapper) {
    MakeAutofocus(zel_PT_XZ, frame, autofocus, mapper, "zel::MyGet_AF_XZ");
}

void MyGet_AF_YZ(const Frame& frame, Frame& autofocus, const zel_Mapper<std::complex<float>>& mapper) {
    MakeAutofocus(zel_PT_YZ, frame, autofocus, mapper, "zel::MyGet_AF_YZ");
}

} // namespace zel
