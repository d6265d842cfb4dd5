#include "viewer/zel_viewer3dcanvas.h"

#include "viewer/zel_commands.h"

#include <wx/dcclient.h>
#include <wx/frame.h>

namespace zel {

zel_Viewer3dCanvas::zel_Viewer3dCanvas(wxWindow* parent, int id, const wxPoint& pos, const wxSize& size)
    : wxPanel(parent, id, pos, size, 0, wxPanelNameStr) {
    const zel_ViewFields fields{&m_iterator, &m_boundingBox, &m_visibleBox, &m_scale,
                                m_reversed,  &m_cut,         &m_scrollStep, &m_cutStep};
    m_windowXY = new zel_DrWinXY(this, fields);
    m_windowXZ = new zel_DrWinXZ(this, fields);
    m_windowYZ = new zel_DrWinYZ(this, fields);
    m_sequenceTimer.SetOwner(this);
    m_border = m_windowXY->GetSize().x - m_windowXY->GetClientSize().x;
    // Bound last: nothing may reach the derived class's operations while it is not there.
    Bind(wxEVT_SIZE, &zel_Viewer3dCanvas::OnSize, this);
    Bind(wxEVT_PAINT, &zel_Viewer3dCanvas::OnPaint, this);
    for (zel_DrWin3d* window : {m_windowXY, m_windowXZ, m_windowYZ})
        window->Bind(wxEVT_PAINT, &zel_Viewer3dCanvas::OnWindowPaint, this);
    Bind(zel_EVT_MOUSE3D, &zel_Viewer3dCanvas::OnMouse3d, this);
    Bind(wxEVT_TIMER, &zel_Viewer3dCanvas::OnSequenceTimerHandler, this);
    RecomputeVisible();
    Show(true);
}

zel_Viewer3dCanvas::~zel_Viewer3dCanvas() = default;

zel_DrWin3d* zel_Viewer3dCanvas::GetDrWin(zel_ProjectionType type) const {
    switch (type) {
    case zel_PT_XY:
        return m_windowXY;
    case zel_PT_XZ:
        return m_windowXZ;
    case zel_PT_YZ:
        return m_windowYZ;
    default:
        return nullptr;
    }
}

void zel_Viewer3dCanvas::GetIcons(wxIconBundle&) {}

wxSize zel_Viewer3dCanvas::GetOptimalSize() {
    return ComputeOptimalSize(m_windowXY->GetOptimalSize(), m_windowXZ->GetOptimalSize(), m_windowYZ->GetOptimalSize(),
                              m_windowXY->IsShown(), m_windowXZ->IsShown(), m_windowYZ->IsShown());
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

void zel_Viewer3dCanvas::UpdateVolVis() {}

void zel_Viewer3dCanvas::UpdateIsosurface() {}

void zel_Viewer3dCanvas::InfoFrame_Show(bool) {}

void zel_Viewer3dCanvas::InfoFrame_Create() {}

bool zel_Viewer3dCanvas::InfoFrame_IsShown() const {
    return m_infoFrame != nullptr && m_infoFrame->IsShown();
}

void zel_Viewer3dCanvas::InfoFrame_Move() {}

void zel_Viewer3dCanvas::ShowVolVis(const wxIconBundle&) {}

void zel_Viewer3dCanvas::RefreshVolVisIcon(const wxIconBundle&) {}

void zel_Viewer3dCanvas::DetachMapper() {
    m_sequenceTimer.Stop();
    m_mapperDetached = true;
}

void zel_Viewer3dCanvas::ZoomIn() {
    if (m_zoom < std::numeric_limits<int>::max())
        ++m_zoom;
    OnViewChange();
}

void zel_Viewer3dCanvas::ZoomOut() {
    if (m_zoom > std::numeric_limits<int>::min())
        --m_zoom;
    OnViewChange();
}

void zel_Viewer3dCanvas::NormalZoom() {
    m_zoom = 0;
    OnViewChange();
}

void zel_Viewer3dCanvas::OnViewChange() {
    RecomputeVisible();
    OnVis3dChange(zel_PT_ALL);
    InfoFrame_Move();
}

void zel_Viewer3dCanvas::CenterView() {
    m_windowXY->CenterAt(m_cut.x, m_cut.y);
    m_windowXZ->CenterAt(m_cut.x, m_cut.z);
}

void zel_Viewer3dCanvas::CenterViewIfOut() {
    const auto inside = [](float at, float offset, float size) { return offset <= at && at <= offset + size; };
    if (!inside(m_cut.x, m_visibleBox.offset.x, m_visibleBox.size.x) ||
        !inside(m_cut.y, m_visibleBox.offset.y, m_visibleBox.size.y) ||
        !inside(m_cut.z, m_visibleBox.offset.z, m_visibleBox.size.z))
        CenterView();
}

bool zel_Viewer3dCanvas::IsStrictlyInside(const kep::Vector3d<float>& point) const {
    const auto inside = [](float at, float offset, float size) { return offset < at && at < offset + size; };
    return inside(point.x, m_boundingBox.offset.x, m_boundingBox.size.x) &&
           inside(point.y, m_boundingBox.offset.y, m_boundingBox.size.y) &&
           inside(point.z, m_boundingBox.offset.z, m_boundingBox.size.z);
}

void zel_Viewer3dCanvas::ChangeCut(const kep::Vector3d<float>& point) {
    if (!IsStrictlyInside(point))
        return;
    m_cut = point;
    OnCutChange(zel_PT_ALL);
}

bool zel_Viewer3dCanvas::ToggleAxisReverse(int axis) {
    if (static_cast<unsigned>(axis) > 2)
        return false;
    m_reversed[axis] = !m_reversed[axis];
    ReverseAxis(axis);
    Refresh(true);
    InfoFrame_UpdatePixelInfo();
    GetEventHandler()->AddPendingEvent(wxUpdateUIEvent(zel_CMD_REFRESH_ICON));
    return m_reversed[axis];
}

void zel_Viewer3dCanvas::ShowDrWin(zel_ProjectionType mask, bool show) {
    if ((mask & zel_PT_XY) != 0)
        m_showXY = show;
    if ((mask & zel_PT_XZ) != 0)
        m_showXZ = show;
    if ((mask & zel_PT_YZ) != 0)
        m_showYZ = show;
    OnViewChange();
}

bool zel_Viewer3dCanvas::IsDrWinShown(zel_ProjectionType mask) const {
    return ((mask & zel_PT_XY) == 0 || m_showXY) && ((mask & zel_PT_XZ) == 0 || m_showXZ) &&
           ((mask & zel_PT_YZ) == 0 || m_showYZ);
}

void zel_Viewer3dCanvas::ChangeContent(zel_ProjectionContent content, zel_ProjectionType mask) {
    if ((mask & zel_PT_XY) != 0)
        m_contentXY = content;
    if ((mask & zel_PT_XZ) != 0)
        m_contentXZ = content;
    if ((mask & zel_PT_YZ) != 0)
        m_contentYZ = content;
    OnContentChange(mask);
}

zel_ProjectionContent zel_Viewer3dCanvas::GetContent(zel_ProjectionType type) const {
    switch (type) {
    case zel_PT_XY:
        return m_contentXY;
    case zel_PT_XZ:
        return m_contentXZ;
    case zel_PT_YZ:
        return m_contentYZ;
    default:
        return m_contentXY == zel_PC_AUTOFOCUS && m_contentXZ == zel_PC_AUTOFOCUS && m_contentYZ == zel_PC_AUTOFOCUS
                   ? zel_PC_AUTOFOCUS
                   : zel_PC_CUT;
    }
}

void zel_Viewer3dCanvas::GetSettings(zel_CanvasSettings& settings) const {
    settings.showAnnotation = m_showAnnotation;
    settings.showXY = m_showXY;
    settings.showXZ = m_showXZ;
    settings.showYZ = m_showYZ;
    settings.contentXY = m_contentXY;
    settings.contentXZ = m_contentXZ;
    settings.contentYZ = m_contentYZ;
    settings.zoom = m_zoom;
    settings.cut = m_cut;
    settings.baseScale = m_baseScale;
    settings.cutPointer = m_cutPointer;
    settings.reversedX = m_reversed[0];
    settings.reversedY = m_reversed[1];
    settings.reversedZ = m_reversed[2];
    settings.annotation = m_annotation;
    settings.scaleBar = m_scaleBar;
    settings.timeBar = m_timeBar;
}

void zel_Viewer3dCanvas::SetSettings(const zel_CanvasSettings& settings) {
    m_showAnnotation = settings.showAnnotation;
    m_showXY = settings.showXY;
    m_showXZ = settings.showXZ;
    m_showYZ = settings.showYZ;
    m_contentXY = settings.contentXY;
    m_contentXZ = settings.contentXZ;
    m_contentYZ = settings.contentYZ;
    m_zoom = settings.zoom;
    m_cut = settings.cut;
    m_baseScale = settings.baseScale;
    m_cutPointer = settings.cutPointer;
    m_reversed[0] = settings.reversedX;
    m_reversed[1] = settings.reversedY;
    m_reversed[2] = settings.reversedZ;
    m_annotation = settings.annotation;
    m_scaleBar = settings.scaleBar;
    m_timeBar = settings.timeBar;
    if (!IsStrictlyInside(m_cut)) {
        const auto centre = [](float offset, float size) { return offset + size / 2.0F; };
        m_cut = {centre(m_boundingBox.offset.x, m_boundingBox.size.x),
                 centre(m_boundingBox.offset.y, m_boundingBox.size.y),
                 centre(m_boundingBox.offset.z, m_boundingBox.size.z)};
    }
    RecomputeVisible();
    OnVis3dChange(zel_PT_ALL);
}

void zel_Viewer3dCanvas::RecomputeVisible() {
    m_scale = ScaleAtZoom(m_baseScale, m_zoom);
    if (!m_showXY && !m_showXZ && !m_showYZ) {
        ShowWindows();
        return;
    }
    ViewLayoutInput input;
    input.client = GetClientSize();
    input.border = m_border;
    input.showXY = m_showXY;
    input.showXZ = m_showXZ;
    input.showYZ = m_showYZ;
    input.boundingBox = m_boundingBox;
    input.visibleBox = m_visibleBox;
    input.scale = m_scale;
    ViewLayout layout;
    if (!ComputeViewLayout(input, layout))
        return;
    m_visibleBox = layout.visibleBox;
    m_windowXY->SetSize(layout.xy);
    m_windowXZ->SetSize(layout.xz);
    m_windowYZ->SetSize(layout.yz);
    m_scrollStep = layout.scrollStep;
    ShowWindows();
}

void zel_Viewer3dCanvas::ShowWindows() {
    const wxWindow* const focus = FindFocus();
    const bool hasKeyboard = focus != nullptr ? focus->GetParent() == this : m_keyboardWaits;
    m_windowXY->Show(m_showXY);
    m_windowYZ->Show(m_showYZ);
    m_windowXZ->Show(m_showXZ);
    // A window that is hidden takes the keyboard with it, so one that is left gets it, or the next one to be shown.
    m_keyboardWaits = false;
    if (!hasKeyboard || (focus != nullptr && focus->IsShown()))
        return;
    for (zel_DrWin3d* window : {m_windowXY, m_windowXZ, m_windowYZ})
        if (window->IsShown()) {
            window->SetFocus();
            return;
        }
    m_keyboardWaits = true;
}

void zel_Viewer3dCanvas::RepaintNow() {
    Update();
    if (IsShownOnScreen())
        return;
    for (zel_DrWin3d* window : {m_windowXY, m_windowXZ, m_windowYZ})
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
    for (const zel_DrWin3d* window : {m_windowXY, m_windowXZ, m_windowYZ})
        if (window->IsShown())
            m_unpainted |= window->GetProjectionType();
    CallAfter(&zel_Viewer3dCanvas::RefreshUnpainted);
}

void zel_Viewer3dCanvas::OnWindowPaint(wxPaintEvent& event) {
    m_unpainted &= ~static_cast<const zel_DrWin3d*>(event.GetEventObject())->GetProjectionType();
    event.Skip(); // the window paints itself
}

void zel_Viewer3dCanvas::RefreshUnpainted() {
    for (zel_DrWin3d* window : {m_windowXY, m_windowXZ, m_windowYZ})
        if ((m_unpainted & window->GetProjectionType()) != 0)
            window->Refresh(true);
    m_unpainted = 0;
}

} // namespace zel
