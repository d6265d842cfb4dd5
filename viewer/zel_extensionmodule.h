#pragma once

#include "model/zel_export.h"

#include <wx/event.h>
#include <wx/frame.h>
#include <wx/weakref.h>

class WXDLLIMPEXP_FWD_CORE wxMenu;

namespace zel {

/// An event handler that adds a menu of its own to a viewer frame. It is pushed on the frame and so sees each event
/// before the frame does: this is how it gets the commands of its menu.
class ZEL_EXPORT zel_ExtensionModule : public wxEvtHandler {
public:
    zel_ExtensionModule() = default;
    ~zel_ExtensionModule() override;

    /// Makes the menu. Its entries have command ids of `id` and above. A module need not use them all: a mapping module
    /// begins one behind `id`.
    /// @param id  in: the first free command id; out: the next one that is free for other modules
    /// @return the menu, which the caller then owns, or null for none
    virtual wxMenu* CreateMenu(int& id) = 0;

    /// Id of a menu entry by its offset from the module's first id, which is 0 until CreateMenu has set it. Each kind
    /// of module numbers its entries by such offsets.
    int GetMenuId(int offset) const { return m_firstMenuId + offset; }

    /// The owning frame; null until the module is added to one, and once that has gone.
    wxFrame* GetFrame() const { return m_frame.get(); }
    void SetFrame(wxFrame* frame) { m_frame = frame; } ///< called by the frame that it is added to

protected:
    /// For CreateMenu: the id that offset 0 stands for.
    void SetFirstMenuId(int id) { m_firstMenuId = id; }

private:
    int m_firstMenuId = 0;
    wxWeakRef<wxFrame> m_frame;
};

} // namespace zel
