#include "viewer/zel_frame.h"

#include "image/zel_assert.h"
#include "viewer/draw/zel_windowicons.h"
#include "viewer/menus/zel_framemenus.h"
#include "viewer/zel_viewer3dcanvas.h"

#include <wx/iconbndl.h>
#include <wx/menu.h>
#include <wx/weakref.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace zel {

namespace {

constexpr int messageSeconds = 5;
constexpr int firstUpdatedId = 6017; // the ids that OnUpdateUI gets to see
constexpr int lastUpdatedId = 6036;

/// The window that a "Show XY" and its kin, or an autofocus entry, stands for.
zel_ProjectionType TypeOf(int id) {
    switch (id) {
    case zel_CMD_SHOW_XY:
    case zel_CMD_AUTOFOCUS_XY:
        return zel_PT_XY;
    case zel_CMD_SHOW_XZ:
    case zel_CMD_AUTOFOCUS_XZ:
        return zel_PT_XZ;
    case zel_CMD_SHOW_YZ:
    case zel_CMD_AUTOFOCUS_YZ:
        return zel_PT_YZ;
    default:
        return zel_PT_ALL;
    }
}

/// The mark of a check entry. @return nothing for an id that has none to set
std::optional<bool> MarkOf(int id, const zel_Viewer3dCanvas& canvas) {
    switch (id) {
    case zel_CMD_BROWSE_FORWARD:
        return canvas.OnSequenceMenuUpdateUI_PlayingForward();
    case zel_CMD_BROWSE_BACKWARD:
        return canvas.OnSequenceMenuUpdateUI_PlayingBackward();
    case zel_CMD_LOOP_MODE:
        return canvas.OnSequenceMenuUpdateUI_Loop();
    case zel_CMD_OSCILLATION_MODE:
        return canvas.OnSequenceMenuUpdateUI_Oscillation();
    case zel_CMD_SHOW_XY:
    case zel_CMD_SHOW_XZ:
    case zel_CMD_SHOW_YZ:
        return canvas.IsDrWinShown(TypeOf(id));
    case zel_CMD_AUTOFOCUS_ALL:
    case zel_CMD_AUTOFOCUS_XY:
    case zel_CMD_AUTOFOCUS_XZ:
    case zel_CMD_AUTOFOCUS_YZ:
        return canvas.GetContent(TypeOf(id)) == zel_PC_AUTOFOCUS;
    case zel_CMD_SHOW_ANNOTATION:
        return canvas.GetInfoFlag();
    case zel_CMD_SHOW_INFO:
        return canvas.InfoFrame_IsShown();
    case zel_CMD_REVERSE_X:
    case zel_CMD_REVERSE_Y:
    case zel_CMD_REVERSE_Z:
        return canvas.IsAxisReversed(static_cast<std::size_t>(id - zel_CMD_REVERSE_X));
    default:
        return std::nullopt;
    }
}

} // namespace

void zel_Viewer3dFrame::MyStatusTimer::Notify() {
    m_frame->ClearInfoStatusText();
}

zel_Viewer3dFrame::zel_Viewer3dFrame(wxWindow* parent, int id, const wxString& title, const wxPoint& pos,
                                     const wxSize& size, long style)
    : m_statusTimer(this) {
    wxFrame::Create(parent, id, title, pos, size, style, wxFrameNameStr);
    SetMenuBar(MakeFrameMenuBar());
    CreateStatusBar(2, wxSTB_SIZEGRIP | wxSTB_SHOW_TIPS | wxSTB_ELLIPSIZE_END | wxFULL_REPAINT_ON_RESIZE, 0);
    constexpr int widths[] = {-1, 180}; // the second field is for messages
    SetStatusWidths(2, widths);
    wxAcceleratorEntry keys[] = {{wxACCEL_CTRL, WXK_NUMPAD_ADD, zel_CMD_ZOOM_IN},
                                 {wxACCEL_CTRL, WXK_NUMPAD_SUBTRACT, zel_CMD_ZOOM_OUT}};
    SetAcceleratorTable(wxAcceleratorTable(2, keys));
    Bind(wxEVT_MOVE, &zel_Viewer3dFrame::OnMove, this);
    Bind(zel_EVT_MAPPING_CHANGED, &zel_Viewer3dFrame::OnMappingChanged, this);
    Bind(zel_EVT_OVERLAYING_CHANGED, &zel_Viewer3dFrame::OnOverlayingChanged, this);
    Bind(wxEVT_IDLE, &zel_Viewer3dFrame::OnIdle, this);
    SetSizeHints(200, 200, -1, -1, -1, -1);
    ResizeFrameIfRequired();
}

zel_Viewer3dFrame::~zel_Viewer3dFrame() {
    SendDestroyEvent(); // dialogs that are open end here, while everything is still there
    // The modules go before the canvas, which may still be painted in between: the parent's handler of the event
    // below may well open a message box.
    if (m_canvas != nullptr)
        m_canvas->DetachMapper();
    while (!m_moduleFlags.empty()) {
        PopEventHandler(m_moduleFlags.back());
        m_moduleFlags.pop_back();
    }
    if (GetParent() != nullptr) {
        wxUpdateUIEvent closing(zel_CMD_FRAME_CLOSING);
        closing.SetEventObject(this);
        GetParent()->ProcessWindowEvent(closing);
    }
}

bool zel_Viewer3dFrame::Destroy() {
    if (m_canvas != nullptr)
        m_canvas->DetachMapper();
    return wxFrame::Destroy();
}

void zel_Viewer3dFrame::SetCanvas(zel_Viewer3dCanvas* canvas) {
    zel_Viewer3dCanvas* const former = std::exchange(m_canvas, canvas);
    if (former != nullptr && former != canvas)
        former->Destroy(); // at once: what it sends on its way out finds the new canvas
    if (m_canvas != nullptr)
        m_canvas->SetSize(GetClientSize());
}

void zel_Viewer3dFrame::AddExtensionModule(zel_ExtensionModule* module, const wxString& label, bool withMenu) {
    if (withMenu)
        if (wxMenu* const menu = module->CreateMenu(m_nextMenuId))
            GetMenuBar()->Append(menu, label);
    PushEventHandler(module);
    if (module->GetFrame() == nullptr)
        module->SetFrame(this);
    m_moduleFlags.push_back(withMenu);
}

void zel_Viewer3dFrame::AppendMenuW(const wxMenu* menu, const wxString& label) {
    zel_ASSERT(menu, "zel_frame", "zel::zel_Viewer3dFrame::AppendMenuW");
    if (menu == nullptr)
        return;
    auto copy = std::make_unique<wxMenu>();
    for (std::size_t i = 0; i < menu->GetMenuItemCount(); ++i) {
        const wxMenuItem* const item = menu->FindItemByPosition(i);
        copy->Append(item->GetId(), item->GetItemLabel(), item->GetHelp(), item->GetKind());
    }
    GetMenuBar()->Append(copy.release(), label);
}

void zel_Viewer3dFrame::ResizeFrameIfRequired() {
    if (!GetMenuBar()->IsChecked(zel_CMD_AUTO_ADJUST_FRAME_SIZE))
        return;
    wxCommandEvent event;
    OnAdjustFrameSize(event);
}

void zel_Viewer3dFrame::OnAdjustFrameSize(wxCommandEvent&) {
    if (m_canvas == nullptr)
        return;
    const auto getDecoration = [this] { return GetSize() - GetClientSize(); };
    const auto adjust = [this] {
        const wxSize display = wxGetClientDisplayRect().GetSize();
        wxSize optimal = m_canvas->GetOptimalSize();
        optimal.DecTo(display); // before anything is added, which int might not hold
        wxSize size = ClientToWindowSize(optimal);
        size.IncTo(wxSize(100, 100));
        size.DecTo(display);
        if (!IsMaximized())
            SetSize(size);
    };
    const wxSize decoration = getDecoration();
    adjust();
    if (getDecoration() != decoration)
        adjust(); // a frame smaller than its own bars does not know how much they take
    m_adjustedSize = GetSize();
    m_adjustedDecoration = getDecoration();
}

void zel_Viewer3dFrame::OnIdle(wxIdleEvent& event) {
    event.Skip();
    // Before a frame is shown its decoration is not known, and the client area loses the height of the title bar when
    // it comes. On the way a window manager gives the frame other sizes for a moment, a few pixels or the smallest one
    // allowed; the adjusted size comes back by itself, unless a host or user has chosen another one.
    if (m_canvas == nullptr || !IsShownOnScreen() || m_adjustedSize == wxSize() || GetSize() != m_adjustedSize ||
        GetSize() - GetClientSize() == m_adjustedDecoration)
        return;
    Unbind(wxEVT_IDLE, &zel_Viewer3dFrame::OnIdle, this);
    if (!IsMaximized())
        ResizeFrameIfRequired();
}

void zel_Viewer3dFrame::SetInfoStatusText(const wxString& text, int seconds) {
    SetStatusText(text, 1);
    m_statusTimer.StartOnce(seconds * 1000);
}

void zel_Viewer3dFrame::ClearInfoStatusText() {
    SetStatusText(wxString(), 1);
}

void zel_Viewer3dFrame::RefreshIcon() {
    if (m_canvas == nullptr || m_canvas->IsMapperDetached())
        return;
    wxIconBundle icons;
    m_canvas->GetIcons(icons);
    SetWindowIcons(*this, icons);
    m_canvas->RefreshVolVisIcon(icons);
}

void zel_Viewer3dFrame::Reset() {
    if (m_canvas != nullptr)
        m_canvas->OnDataChange();
}

void zel_Viewer3dFrame::OnSequenceMenuCmd(wxCommandEvent& event) {
    if (m_canvas == nullptr)
        return;
    const wxWeakRef<wxEvtHandler> self(this); // the command may open a dialog, and the frame close under it
    wxString message;
    m_canvas->OnSequenceMenuHandler(event, message);
    if (self && !message.empty())
        SetInfoStatusText(message, messageSeconds);
}

void zel_Viewer3dFrame::OnZoomIn(wxCommandEvent&) {
    if (m_canvas == nullptr)
        return;
    m_canvas->ZoomIn();
    ResizeFrameIfRequired();
}

void zel_Viewer3dFrame::OnZoomOut(wxCommandEvent&) {
    if (m_canvas == nullptr)
        return;
    m_canvas->ZoomOut();
    ResizeFrameIfRequired();
}

void zel_Viewer3dFrame::OnNormalZoom(wxCommandEvent&) {
    if (m_canvas == nullptr)
        return;
    m_canvas->NormalZoom();
    ResizeFrameIfRequired();
}

void zel_Viewer3dFrame::OnToggleProjection(wxCommandEvent& event) {
    const zel_ProjectionType type = TypeOf(event.GetId());
    if (m_canvas != nullptr && type != zel_PT_ALL)
        m_canvas->ShowDrWin(type, !m_canvas->IsDrWinShown(type));
}

void zel_Viewer3dFrame::OnReverseAxis(wxCommandEvent& event) {
    if (m_canvas != nullptr)
        m_canvas->ToggleAxisReverse(event.GetId() - zel_CMD_REVERSE_X);
}

void zel_Viewer3dFrame::OnAutoFocus(wxCommandEvent& event) {
    if (m_canvas == nullptr)
        return;
    const zel_ProjectionType type = TypeOf(event.GetId());
    m_canvas->ChangeContent(m_canvas->GetContent(type) != zel_PC_AUTOFOCUS ? zel_PC_AUTOFOCUS : zel_PC_CUT, type);
}

void zel_Viewer3dFrame::OnShowWindowsAnnotation(wxCommandEvent&) {
    if (m_canvas == nullptr)
        return;
    m_canvas->ToggleInfoFlag();
    m_canvas->Refresh(false);
}

void zel_Viewer3dFrame::OnMove(wxMoveEvent& event) {
    if (m_canvas != nullptr)
        m_canvas->InfoFrame_Move();
    event.Skip();
}

void zel_Viewer3dFrame::OnMappingChanged(zel_MappingEvent& event) {
    if (m_canvas != nullptr)
        m_canvas->MappingChanged(event);
}

void zel_Viewer3dFrame::OnOverlayingChanged(zel_OverlayingEvent& event) {
    if (m_canvas != nullptr)
        m_canvas->OverlayingChanged(event);
}

void zel_Viewer3dFrame::OnUpdateUI(wxUpdateUIEvent& event) {
    if (event.GetId() == zel_CMD_REFRESH_ICON) {
        RefreshIcon();
        return;
    }
    const auto mark = m_canvas != nullptr ? MarkOf(event.GetId(), *m_canvas) : std::nullopt;
    if (mark)
        event.Check(*mark);
    else
        event.Skip(); // to a host's own handler behind the frame
}

wxBEGIN_EVENT_TABLE(zel_Viewer3dFrame, wxFrame)
    EVT_MENU(zel_CMD_BROWSE_FORWARD, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_BROWSE_BACKWARD, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_STOP_BROWSING, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_LOOP_MODE, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_OSCILLATION_MODE, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_BROWSING_RANGE, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_FASTER, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_SLOWER, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_LARGER_STEP, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_SMALLER_STEP, zel_Viewer3dFrame::OnSequenceMenuCmd)
    EVT_MENU(zel_CMD_SAVE_3D_DATA, zel_Viewer3dFrame::OnSave3dData)
    EVT_MENU(zel_CMD_SAVE_VIEW, zel_Viewer3dFrame::OnSaveView)
    EVT_MENU(zel_CMD_SAVE_GALLERY, zel_Viewer3dFrame::OnSaveGalleryView)
    EVT_MENU(zel_CMD_ADJUST_FRAME_SIZE, zel_Viewer3dFrame::OnAdjustFrameSize)
    EVT_MENU(zel_CMD_VOLUME, zel_Viewer3dFrame::OnVisualizeVolume)
    EVT_MENU(zel_CMD_ZOOM_IN, zel_Viewer3dFrame::OnZoomIn)
    EVT_MENU(zel_CMD_ZOOM_OUT, zel_Viewer3dFrame::OnZoomOut)
    EVT_MENU(zel_CMD_NORMAL_ZOOM, zel_Viewer3dFrame::OnNormalZoom)
    EVT_MENU(zel_CMD_AUTOFOCUS_ALL, zel_Viewer3dFrame::OnAutoFocus)
    EVT_MENU(zel_CMD_SHOW_ANNOTATION, zel_Viewer3dFrame::OnShowWindowsAnnotation)
    EVT_MENU(zel_CMD_SHOW_INFO, zel_Viewer3dFrame::OnShowInfo)
    EVT_MENU(zel_CMD_SHOW_XY, zel_Viewer3dFrame::OnToggleProjection)
    EVT_MENU(zel_CMD_SHOW_XZ, zel_Viewer3dFrame::OnToggleProjection)
    EVT_MENU(zel_CMD_SHOW_YZ, zel_Viewer3dFrame::OnToggleProjection)
    EVT_MENU(zel_CMD_REVERSE_X, zel_Viewer3dFrame::OnReverseAxis)
    EVT_MENU(zel_CMD_REVERSE_Y, zel_Viewer3dFrame::OnReverseAxis)
    EVT_MENU(zel_CMD_REVERSE_Z, zel_Viewer3dFrame::OnReverseAxis)
    EVT_MENU(zel_CMD_AUTOFOCUS_XY, zel_Viewer3dFrame::OnAutoFocus)
    EVT_MENU(zel_CMD_AUTOFOCUS_XZ, zel_Viewer3dFrame::OnAutoFocus)
    EVT_MENU(zel_CMD_AUTOFOCUS_YZ, zel_Viewer3dFrame::OnAutoFocus)
    EVT_MENU(zel_CMD_PREFERENCES, zel_Viewer3dFrame::OnPreferences)
    EVT_UPDATE_UI_RANGE(firstUpdatedId, lastUpdatedId, zel_Viewer3dFrame::OnUpdateUI)
wxEND_EVENT_TABLE()

} // namespace zel
