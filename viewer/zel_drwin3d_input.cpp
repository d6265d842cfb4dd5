#include "image/zel_imageiterator.h"
#include "viewer/zel_drwin3d.h"
#include "viewer/zel_menushortcut.h"
#include "viewer/zel_navigation.h"
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

void zel_DrWin3d::SetCutFromPoint(float horizontal, float vertical) {
    *m_horizontal.cut = HoldInBox(horizontal, *m_horizontal.boxOffset, *m_horizontal.boxSize);
    *m_vertical.cut = HoldInBox(vertical, *m_vertical.boxOffset, *m_vertical.boxSize);
}

void zel_DrWin3d::ScrollTo(const Axis& axis, std::optional<float> visibleOffset, zel_ProjectionType mask) {
    if (!visibleOffset)
        return;
    *axis.visibleOffset = *visibleOffset;
    m_canvas->OnVis3dChange(mask);
}

void zel_DrWin3d::MoveCutTo(std::optional<float> cut) {
    if (!cut)
        return;
    *m_third.cut = *cut;
    m_canvas->OnCutChange(GetProjectionType());
}

void zel_DrWin3d::Browse(int (mor::ImageIterator::*move)()) {
    (m_iterator->*move)();
    if (m_iterator->moved)
        m_canvas->OnTimeChange();
}

void zel_DrWin3d::OnKeyDown(wxKeyEvent& event) {
    const Axis& h = m_horizontal;
    const Axis& v = m_vertical;
    const Axis& t = m_third;
    switch (event.GetKeyCode()) {
    case WXK_LEFT:
        ScrollTo(h, ScrollBack(*h.visibleOffset, *h.boxOffset, *h.scrollStep), GetHorizontalAxisMask());
        return;
    case WXK_RIGHT:
        ScrollTo(h, ScrollForward(*h.visibleOffset, *h.visibleSize, *h.boxOffset, *h.boxSize, *h.scrollStep),
                 GetHorizontalAxisMask());
        return;
    case WXK_UP:
        ScrollTo(v, ScrollBack(*v.visibleOffset, *v.boxOffset, *v.scrollStep), GetVerticalAxisMask());
        return;
    case WXK_DOWN:
        ScrollTo(v, ScrollForward(*v.visibleOffset, *v.visibleSize, *v.boxOffset, *v.boxSize, *v.scrollStep),
                 GetVerticalAxisMask());
        return;
    case WXK_PAGEUP:
        MoveCutTo(StepCutBack(*t.cut, *t.boxOffset, *t.cutStep));
        return;
    case WXK_PAGEDOWN:
        MoveCutTo(StepCutForward(*t.cut, *t.boxOffset, *t.boxSize, *t.cutStep));
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
    if (!IsPointerInside(at))
        return;
    SetCutFromPoint(WindowXToMicrons(at.x), WindowYToMicrons(at.y));
    m_canvas->OnCutChange(GetOtherWindowsMask());
}

void zel_DrWin3d::Centre(bool onCut) {
    wxPoint at;
    if (onCut)
        m_canvas->CenterView();
    else if (IsPointerInside(at))
        CenterAt(WindowXToMicrons(at.x), WindowYToMicrons(at.y));
    else
        return;
    m_canvas->OnVis3dChange(zel_PT_ALL);
}

} // namespace zel
