#pragma once

#include "host/linearmapper.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/frame.h>

namespace zelviewer {

/// A window that a canvas fills.
class ImageFrame : public wxFrame {
public:
    explicit ImageFrame(const wxString& title);

    zel::zel_Viewer3dCanvas& GetCanvas() { return *m_canvas; }
    /// Makes the window as large as the whole image needs, but not larger than the display.
    void FitToImage();

protected:
    /// @param canvas    a child of this frame
    /// @param inVoxels  one pixel a voxel instead of true proportions
    void SetCanvas(zel::zel_Viewer3dCanvas* canvas, bool inVoxels);

private:
    zel::zel_Viewer3dCanvas* m_canvas = nullptr;
};

/// The window of an image, with a mapper of its own. Takes the image.
template <typename T>
class TypedImageFrame : public ImageFrame {
public:
    TypedImageFrame(std::unique_ptr<mor::Image4d<T>> image, bool inVoxels)
        : ImageFrame(wxEmptyString), m_mapper(image->GetExtremes()) {
        mor::Image4d<T>* const owned = image.release(); // the canvas owns it from here
        SetCanvas(new zel::zel_ImageViewer3dCanvas<T>(this, m_mapper, owned, true, wxID_ANY, wxDefaultPosition,
                                                      wxDefaultSize),
                  inVoxels);
    }

private:
    LinearMapper<T> m_mapper;
};

} // namespace zelviewer
