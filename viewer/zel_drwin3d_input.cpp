#include "model/zel_imageiterator.h"
#include "viewer/menus/zel_menushortcut.h"
#include "viewer/zel_drwin3d.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/cursor.h>
#include <wx/image.h>
#include <wx/utils.h>

namespace zel {

namespace {

/// The cross of a window that has the keyboard.
const wxCursor& CrossCursor() {
    static const char* const picture[] = {
        "15 15 3 1",       "  c None",        "a c Black",       "b c #FFFFFF",     "       a       ",
        "      aba      ", "      aba      ", "      aba      ", "      aba      ", "      aba      ",
        " aaaaab baaaaa ", "abbbbb   bbbbba", " aaaaab baaaaa ", "      aba      ", "      aba      ",
        "      aba      ", "      aba      ", "      aba      ", "       a       ",
    };
    static const wxCursor cursor = [] {
        wxImage image(picture);
        image.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_X, 8);
        image.SetOption(wxIMAGE_OPTION_CUR_HOTSPOT_Y, 8);
        return wxCursor(image);
    }();
    return cursor;
}

} // namespace

void zel_DrWin3d::OnMouse(wxMouseEvent& event) {
    zel_Mouse3dEvent told(this, event);
    m_canvas->ProcessWindowEvent(told);
    event.Skip(); // the toolkit gives the keyboard to the window that is pressed
}

void zel_DrWin3d::OnSetFocus(wxFocusEvent& event) {
    SetCursor(CrossCursor());
    event.Skip();
}

void zel_DrWin3d::OnKillFocus(wxFocusEvent& event) {
    SetCursor(wxNullCursor);
    event.Skip();
}

bool zel_DrWin3d::IsPointerInside(wxPoint& at) {
    wxPoint screen;
    if (wxFindWindowAtPointer(screen) != this)
        return false;
    at = ScreenToClient(screen);
    return wxRect(GetClientSize()).Contains(at);
}

void zel_DrWin3d::Browse(int (mor::ImageIterator::*move)()) {
    (m_iterator.*move)();
    if (m_iterator.moved)
        m_canvas->OnTimeChange();
}

void zel_DrWin3d::OnKeyDown(wxKeyEvent& event) {
    switch (event.GetKeyCode()) {
    case WXK_LEFT:
        m_canvas->Apply(m_view.ScrollBack(m_plane.horizontal));
        return;
    case WXK_RIGHT:
        m_canvas->Apply(m_view.ScrollForward(m_plane.horizontal));
        return;
    case WXK_UP:
        m_canvas->Apply(m_view.ScrollBack(m_plane.vertical));
        return;
    case WXK_DOWN:
        m_canvas->Apply(m_view.ScrollForward(m_plane.vertical));
        return;
    case WXK_PAGEUP:
        m_canvas->Apply(m_view.StepCutBack(m_plane));
        return;
    case WXK_PAGEDOWN:
        m_canvas->Apply(m_view.StepCutForward(m_plane));
        return;
    case WXK_SPACE:
        SetCutAtPointer();
        return;
    case 'C':
    case 'c':
        if (event.ControlDown())
            event.Skip();
        else
            Centre(event.AltDown());
        return;
    case WXK_HOME:
        Browse(&mor::ImageIterator::GoToFirst);
        return;
    case WXK_END:
        Browse(&mor::ImageIterator::GoToLast);
        return;
    case WXK_NUMPAD_ADD:
    case '=':
        Browse(&mor::ImageIterator::StepForward);
        return;
    case WXK_NUMPAD_SUBTRACT:
    case '-':
        Browse(&mor::ImageIterator::StepBackward);
        return;
    default:
        if (!RunMenuShortcut(*this, event))
            event.Skip(); // other shortcuts reach the frame's menus
    }
}

void zel_DrWin3d::SetCutAtPointer() {
    wxPoint at;
    if (IsPointerInside(at))
        m_canvas->Apply(m_view.MoveCutIn(m_plane, WindowXToMicrons(at.x), WindowYToMicrons(at.y)));
}

void zel_DrWin3d::Centre(bool onCut) {
    wxPoint at;
    if (onCut)
        m_canvas->Apply(m_view.CentreOnCut());
    else if (IsPointerInside(at))
        m_canvas->Apply(m_view.CentreOn(m_plane, WindowXToMicrons(at.x), WindowYToMicrons(at.y)));
}

} // namespace zel
