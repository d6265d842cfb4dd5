#include "viewer/zel_viewer3dcanvas.h"

#include "viewer/draw/zel_squareborder.h"
#include "viewer/zel_commands.h"

#include <wx/dcclient.h>

#include <utility>

namespace zel {

zel_Viewer3dCanvas::zel_Viewer3dCanvas(wxWindow* parent, int id, const wxPoint& pos, const wxSize& size)
    : wxPanel(parent, id, pos, size, 0, wxPanelNameStr) {
    SquareBorders(); // before a border is measured
    m_windows[zel_PT_XY] = new zel_DrWinXY(this, m_view, m_iterator);
    m_windows[zel_PT_XZ] = new zel_DrWinXZ(this, m_view, m_iterator);
    m_windows[zel_PT_YZ] = new zel_DrWinYZ(this, m_view, m_iterator);
    m_sequenceTimer.SetOwner(this);
    const zel_DrWin3d& window = *m_windows[zel_PT_XY];
    m_border = window.GetSize().x - window.GetClientSize().x;
    // Bound last: nothing may reach the derived class's operations while it is not there.
    Bind(wxEVT_SIZE, &zel_Viewer3dCanvas::OnSize, this);
    Bind(wxEVT_PAINT, &zel_Viewer3dCanvas::OnPaint, this);
    for (zel_DrWin3d* each : m_windows)
        each->Bind(wxEVT_PAINT, &zel_Viewer3dCanvas::OnWindowPaint, this);
    Bind(zel_EVT_MOUSE3D, &zel_Viewer3dCanvas::OnMouse3d, this);
    Bind(wxEVT_TIMER, &zel_Viewer3dCanvas::OnSequenceTimerHandler, this);
    RecomputeVisible();
    Show(true);
}

zel_Viewer3dCanvas::~zel_Viewer3dCanvas() {
    DeleteVolVisFrame();
}

zel_DrWin3d* zel_Viewer3dCanvas::GetDrWin(zel_ProjectionType type) const {
    return FindPlane(type) != nullptr ? m_windows[type] : nullptr;
}

void zel_Viewer3dCanvas::GetIcons(wxIconBundle&) {}

void zel_Viewer3dCanvas::SetTruePictures(const zel_TruePictures& truePictures) {
    m_truePictures = truePictures;
    Refresh(false);
}

void zel_Viewer3dCanvas::CentreOn(const kep::Vector3d<float>& point) {
    const MicronBox before = m_view.visibleBox;
    m_view.CentreOn(*FindPlane(zel_PT_XY), point.x, point.y);
    m_view.CentreOn(*FindPlane(zel_PT_XZ), point.x, point.z);
    if (m_view.visibleBox != before)
        OnVis3dChange(zel_PT_ALL);
}

void zel_Viewer3dCanvas::OnInternalIdle() {
    wxPanel::OnInternalIdle();
    TellPosition();
}

void zel_Viewer3dCanvas::TellPosition() {
    const Position now{m_view.options.cut, m_view.visibleBox, m_view.scale, m_iterator.current};
    const Position told = std::exchange(m_toldPosition, now);
    zel_PositionEvent event(told.cut != now.cut, told.visibleBox != now.visibleBox || told.scale != now.scale,
                            told.time != now.time);
    if (event.HasCutChanged() || event.HasViewChanged() || event.HasTimeChanged())
        ProcessWindowEvent(event);
}

wxSize zel_Viewer3dCanvas::GetOptimalSize() {
    PerPlane<Size> sizes;
    PerPlane<bool> shown;
    for (const Plane& plane : planes) {
        sizes[plane.type] = m_windows[plane.type]->GetOptimalSize();
        shown[plane.type] = m_windows[plane.type]->IsShown();
    }
    return ComputeOptimalSize(sizes, shown);
}

void zel_Viewer3dCanvas::OnCutChange(zel_ProjectionType) {
    Refresh(false);
    InfoFrame_UpdateCutAndVisBoxInfo();
}

void zel_Viewer3dCanvas::OnVis3dChange(zel_ProjectionType) {
    Refresh(false);
    InfoFrame_UpdateCutAndVisBoxInfo();
}

void zel_Viewer3dCanvas::OnContentChange(zel_ProjectionType) {
    Refresh(false);
}

void zel_Viewer3dCanvas::MappingChanged(zel_MappingEvent&) {
    Refresh(false);
}

void zel_Viewer3dCanvas::OverlayingChanged(zel_OverlayingEvent&) {
    Refresh(false);
}

void zel_Viewer3dCanvas::OnDataChange() {
    InfoFrame_Move();
    InfoFrame_UpdateImageInfo();
    InfoFrame_UpdateCutAndVisBoxInfo();
}

void zel_Viewer3dCanvas::OnTimeChange() {
    m_iterator.Clamp();
    m_time = m_iterator.current;
    Refresh(false);
}

void zel_Viewer3dCanvas::OnMouse3d(zel_Mouse3dEvent&) {
    InfoFrame_UpdatePixelInfo();
}

// Empty by intention: this canvas has no voxels, so nothing to show in a volume window. Canvases that have them
// override these.

void zel_Viewer3dCanvas::UpdateVolVis() {}

void zel_Viewer3dCanvas::UpdateIsosurface() {}

void zel_Viewer3dCanvas::DetachMapper() {
    m_sequenceTimer.Stop();
    m_mapperDetached = true;
    OnMapperDetached();
}

ImageGeometry zel_Viewer3dCanvas::GetImageGeometry() {
    return {m_view.boundingBox.offset, GetImageSize(), GetResolution()};
}

void zel_Viewer3dCanvas::Apply(const ViewChange& change) {
    switch (change.kind) {
    case ViewChange::Kind::Nothing:
        break;
    case ViewChange::Kind::Cut:
        OnCutChange(change.planes);
        break;
    case ViewChange::Kind::Visible:
        OnVis3dChange(change.planes);
        break;
    case ViewChange::Kind::Content:
        OnContentChange(change.planes);
        break;
    case ViewChange::Kind::Layout:
        RecomputeVisible();
        OnVis3dChange(change.planes);
        InfoFrame_Move();
        break;
    case ViewChange::Kind::Mirrored:
        ReverseAxis(static_cast<int>(change.axis));
        Refresh(true);
        InfoFrame_UpdatePixelInfo();
        GetEventHandler()->AddPendingEvent(wxUpdateUIEvent(zel_CMD_REFRESH_ICON));
        break;
    }
}

bool zel_Viewer3dCanvas::ToggleAxisReverse(int axis) {
    if (static_cast<unsigned>(axis) > 2)
        return false;
    const Axis reversed = axes[static_cast<std::size_t>(axis)];
    Apply(m_view.ToggleReversed(reversed));
    return m_view.options.Reversed(reversed);
}

void zel_Viewer3dCanvas::GetSettings(zel_CanvasSettings& settings) const {
    static_cast<ViewOptions&>(settings) = m_view.options;
    static_cast<DecorationOptions&>(settings) = m_decorations;
}

void zel_Viewer3dCanvas::SetSettings(const zel_CanvasSettings& settings) {
    m_decorations = settings;
    m_view.SetOptions(settings);
    RecomputeVisible();
    OnVis3dChange(zel_PT_ALL);
    InfoFrame_Move();
}

void zel_Viewer3dCanvas::RecomputeVisible() {
    const auto arranged = m_view.Arrange(GetClientSize(), m_border);
    if (arranged)
        for (const Plane& plane : planes)
            m_windows[plane.type]->SetSize((*arranged)[plane.type]);
    if (arranged || !m_view.IsAnyShown())
        ShowWindows();
}

void zel_Viewer3dCanvas::ShowWindows() {
    const wxWindow* const focus = FindFocus();
    const bool hasKeyboard = focus != nullptr ? focus->GetParent() == this : m_keyboardWaits;
    for (const zel_ProjectionType type : {zel_PT_XY, zel_PT_YZ, zel_PT_XZ})
        m_windows[type]->Show(m_view.IsShown(type));
    // A window that is hidden takes the keyboard with it, so one that is left gets it, or the next one to be shown.
    m_keyboardWaits = false;
    if (!hasKeyboard || (focus != nullptr && focus->IsShown()))
        return;
    for (zel_DrWin3d* window : m_windows)
        if (window->IsShown()) {
            window->SetFocus();
            return;
        }
    m_keyboardWaits = true;
}

void zel_Viewer3dCanvas::RepaintNow() {
    Update();
    if (!IsShownOnScreen())
        RenderWindows();
}

void zel_Viewer3dCanvas::RenderNow() {
    Update();
    RenderWindows();
}

void zel_Viewer3dCanvas::RenderWindows() {
    for (zel_DrWin3d* window : m_windows)
        if (window->IsShown())
            window->Render();
}

void zel_Viewer3dCanvas::OnSize(wxSizeEvent&) {
    OnViewChange();
}

void zel_Viewer3dCanvas::OnPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    // The toolkit also sends a paint here for each paint of a child. Only a refresh of the canvas itself covers its
    // corner, as the windows begin at (1, 1); without this test canvas and windows repaint one another for ever.
    if (GetUpdateRegion().Contains(0, 0) == wxOutRegion)
        return;
    // The toolkit mostly goes on to paint the windows by itself. To refresh them all the same would paint everything
    // twice, a display frame apart.
    m_unpainted = 0;
    for (const zel_DrWin3d* window : m_windows)
        if (window->IsShown())
            m_unpainted |= window->GetProjectionType();
    CallAfter(&zel_Viewer3dCanvas::RefreshUnpainted);
}

void zel_Viewer3dCanvas::OnWindowPaint(wxPaintEvent& event) {
    m_unpainted &= ~static_cast<const zel_DrWin3d*>(event.GetEventObject())->GetProjectionType();
    event.Skip(); // the window paints itself
}

void zel_Viewer3dCanvas::RefreshUnpainted() {
    for (zel_DrWin3d* window : m_windows)
        if ((m_unpainted & window->GetProjectionType()) != 0)
            window->Refresh(true);
    m_unpainted = 0;
}

} // namespace zel
