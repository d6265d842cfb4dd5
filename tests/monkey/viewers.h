#pragma once

// Viewers of every kind, behind one face.

#include "tests/monkey/dice.h"
#include "viewer/zel_extensionmodule.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/weakref.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zel::test {

/// A viewer, and what its host keeps for it: it must live until the frame has gone.
class AnyViewer {
public:
    virtual ~AnyViewer() = default;

    /// Null without one, and once the frame has gone.
    zel_Viewer3dCanvas* GetCanvas() const { return frame ? frame->GetCanvas() : nullptr; }
    /// There is a canvas, it has a frame of its image to show, and its mapper.
    bool HasPicture() const;

    // What a host may do. Without an image nothing happens.

    virtual void InsertFrame(Dice& dice) = 0;
    virtual void RemoveFrame(Dice& dice) = 0;
    virtual void ChangeVoxels(Dice& dice) = 0;
    virtual void ChangeGeometry(Dice& dice) = 0;
    /// Another canvas of the same image takes the place of the one that is there.
    virtual void ReplaceCanvas() = 0;
    /// Asks for what the info window and hosts are told of pixels and voxels.
    virtual void AskAboutPixels(Dice& dice) = 0;
    /// A module with a menu, or one without that stays the host's.
    void AddModule(bool withMenu);
    /// Detaches the mapper, and deletes what the host may delete then.
    void Detach();
    /// Destroys the frame; what is the host's goes at once.
    void Destroy();

    /// The voxels are those that the host has written.
    virtual bool AreVoxelsKept() const = 0;

    wxWeakRef<zel_Viewer3dFrame> frame;
    std::string name; ///< of the kind

protected:
    virtual void DeleteImage() = 0;

private:
    std::vector<std::unique_ptr<zel_ExtensionModule>> m_modules;
};

/// Which kinds of viewers are opened.
struct ViewerChoice {
    int mostFrames = 6;
    bool small = false; ///< a few voxels only
};

/// Opens a viewer of any kind: of any voxel type, with or without labels, by the library's factories or as the program
/// does, as it comes or equipped, of one or several frames. It is shown.
/// @param parent  null, or the host's window, which may have the frame as its child
/// @param open    what "Open..." and the like of the program's menu call
std::unique_ptr<AnyViewer> OpenAnyViewer(Dice& dice, wxWindow* parent, const std::function<void()>& open,
                                         const ViewerChoice& choice = {});

} // namespace zel::test
