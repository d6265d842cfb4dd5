#include <GL/glew.h> // before any header that brings OpenGL's own

#include "image/zel_modaldialog.h"
#include "model/zel_trackball.h"
#include "model/zel_viewfile.h"
#include "volume/gl/zel_canvasattributes.h"
#include "volume/gl/zel_opengldisplay.h"
#include "volume/gl/zel_volumescene.h"
#include "volume/vol3D_canvas.h"

#include <wx/dcclient.h>
#include <wx/evtloop.h>
#include <wx/filedlg.h>
#include <wx/log.h>
#include <wx/statusbr.h>
#include <wx/weakref.h>

#include <optional>
#include <utility>

namespace zel {

namespace {

std::optional<VolumeStep> StepOfKey(int key) {
    switch (key) {
    case WXK_SPACE:
        return VolumeStep::SwitchMode;
    case '+':
        return VolumeStep::MoreSlices;
    case '-':
        return VolumeStep::FewerSlices;
    case WXK_UP:
        return VolumeStep::MoreIntensity;
    case WXK_DOWN:
        return VolumeStep::LessIntensity;
    case WXK_RIGHT:
        return VolumeStep::MoreThreshold;
    case WXK_LEFT:
        return VolumeStep::LessThreshold;
    default:
        return std::nullopt;
    }
}

wxString TextOf(GLenum name) {
    const GLubyte* const text = glGetString(name);
    return text != nullptr ? wxString::FromUTF8(reinterpret_cast<const char*>(text)) : wxString();
}

void LogMissing() {
    wxLogError("Unable to init GLEW.");
}

/// GLEW asks the X server's OpenGL for more functions last; where the toolkit has another one, that fails when all that
/// is used here is already there.
bool IsGlewReady() {
    const GLenum result = glewInit();
    return result == GLEW_OK || (result == GLEW_ERROR_NO_GLX_DISPLAY && glGetString(GL_VERSION) != nullptr);
}

/// Under a window manager a window is on the screen some events after it was shown.
void WaitUntilShown(const wxWeakRef<wxWindow>& window) {
    constexpr int patience = 400;
    wxEventLoopBase* const loop = wxEventLoopBase::GetActive();
    for (int i = 0; i < patience && loop != nullptr && window && !window->IsShownOnScreen(); ++i) {
        loop->YieldFor(wxEVT_CATEGORY_UI);
        wxMilliSleep(5);
    }
}

/// Nothing if none is chosen. The dialog has gone when this returns: a window that goes while a message follows would
/// take its dialogs with it.
std::optional<wxString> AskForFile(wxWindow* parent, const wxString& title, const wxString& wildcard, long style) {
    wxFileDialog dialog(parent, title, wxEmptyString, wxEmptyString, wildcard, style);
    return RunModal(dialog) == wxID_OK ? std::optional(dialog.GetPath()) : std::nullopt;
}

} // namespace

vol3D_VolVisCanvas::vol3D_VolVisCanvas(wxStatusBar* statusBar, wxWindow* parent, wxWindowID id, const wxPoint& pos,
                                       const wxSize& size, long style, const wxString& name, const int* attributeList,
                                       MeshDrawing meshDrawing)
    : wxGLCanvas(parent, id, attributeList, pos, size, style | wxFULL_REPAINT_ON_RESIZE, name),
      m_statusBar(statusBar),
      m_meshDrawing(meshDrawing),
      m_scene(std::make_unique<VolumeScene>(meshDrawing)) {
    ResetView();
    Bind(wxEVT_PAINT, &vol3D_VolVisCanvas::OnPaint, this);
    Bind(wxEVT_ERASE_BACKGROUND, [](wxEraseEvent&) {}); // the paint covers everything, so nothing flickers
    Bind(wxEVT_SIZE, &vol3D_VolVisCanvas::OnSize, this);
    Bind(wxEVT_CHAR, &vol3D_VolVisCanvas::OnChar, this);
    // The second press of a double click comes as one event, and is a press as well.
    for (const auto& type :
         {wxEVT_LEFT_DOWN, wxEVT_LEFT_DCLICK, wxEVT_LEFT_UP, wxEVT_RIGHT_DOWN, wxEVT_RIGHT_DCLICK, wxEVT_RIGHT_UP})
        Bind(type, &vol3D_VolVisCanvas::OnButton, this);
    Bind(wxEVT_MOTION, &vol3D_VolVisCanvas::OnMotion, this);
    Bind(wxEVT_LEAVE_WINDOW, &vol3D_VolVisCanvas::OnLeave, this);
}

vol3D_VolVisCanvas::~vol3D_VolVisCanvas() {
    if (MakeCurrent())
        m_scene->Release();
}

bool vol3D_VolVisCanvas::CheckDisplay() {
    const bool isThere = HasOpenGLDisplay();
    if (!isThere)
        LogMissing();
    return isThere;
}

const int* vol3D_VolVisCanvas::ChooseAttributes(MeshDrawing meshDrawing) {
    return ChooseCanvasAttributes(meshDrawing, [](const int* list) { return wxGLCanvas::IsDisplaySupported(list); });
}

bool vol3D_VolVisCanvas::Init() {
    const wxWeakRef<wxWindow> self(this);
    GetParent()->Show();
    WaitUntilShown(self);
    return self && CheckDisplay() && StartOpenGL();
}

bool vol3D_VolVisCanvas::StartOpenGL() {
    m_context = std::make_unique<wxGLContext>(this);
    if (!m_context->IsOK())
        m_context.reset();
    MakeCurrent(); // without a context GLEW fails, and so says why
    if (!IsGlewReady()) {
        LogMissing();
        return false;
    }
    wxLogMessage("Starting OpenGL window");
    wxLogMessage("Vendor: %s", TextOf(GL_VENDOR));
    wxLogMessage("Renderer: %s", TextOf(GL_RENDERER));
    wxLogMessage("Version: %s", TextOf(GL_VERSION));
    if (!GLEW_VERSION_2_0) {
        wxLogError("OpenGL 2.0 or newer driver is required.");
        return false;
    }
    m_scene->SetUp();
    SetUpViewport();
    return true;
}

bool vol3D_VolVisCanvas::MakeCurrent() {
    return m_context != nullptr && SetCurrent(*m_context);
}

void vol3D_VolVisCanvas::ResetView() {
    m_view = VolumeView();
}

void vol3D_VolVisCanvas::SetUpViewport() {
    m_size = GetClientSize();
    VolumeScene::SetViewport(m_size);
}

void vol3D_VolVisCanvas::SetVolumeData(const void* rgba, const kep::Vector3d<std::size_t>& size,
                                       const kep::Vector3d<float>& scale) {
    switch (m_scene->SetVolume(rgba, size, scale)) {
    case VolumeScene::Upload::Done:
        Refresh(false);
        break;
    case VolumeScene::Upload::TooBig:
        wxLogError("Sorry. The data is too big and cannot be displayed");
        break;
    case VolumeScene::Upload::Failed:
        wxLogError("Sorry. Creating the 3D texture failed (the image is probably too big), no data will be displayed.");
        break;
    case VolumeScene::Upload::Unavailable:
        break;
    }
}

void vol3D_VolVisCanvas::SetIsosurfaces(const IsosurfaceGenerator& generator, const kep::Vector3d<float>& translation) {
    if (m_meshDrawing == MeshDrawing::Whole)
        SetWholeIsosurfaces(generator, TranslationMatrix(translation));
    else
        m_scene->SetSurfaces(generator.GetSurfaces(), translation);
}

void vol3D_VolVisCanvas::SetWholeIsosurfaces(const IsosurfaceGenerator& generator, const Matrix4& toObject) {
    if (m_meshDrawing != MeshDrawing::Whole)
        throw kep::InternalException("This window places meshes by a translation only.");
    for (const std::uint64_t label : m_scene->SetMeshes(generator.GetSurfaces(), toObject))
        wxLogWarning("The mesh of label %llu is too big for OpenGL and is not drawn.",
                     static_cast<unsigned long long>(label));
    Refresh(false);
}

void vol3D_VolVisCanvas::SetSurfaceColours(bool drawSurfaces, std::vector<kep::RGB_generic<unsigned char>> colours) {
    m_scene->SetSurfaceColours(drawSurfaces, std::move(colours));
}

void vol3D_VolVisCanvas::SetViewDirection(float eyeDistance, float forwardX, float forwardY, float forwardZ, float upX,
                                          float upY, float upZ) {
    m_view.LookAlong({{forwardX, forwardY, forwardZ}, {upX, upY, upZ}}, eyeDistance);
    Refresh(false);
}

void vol3D_VolVisCanvas::SaveView() {
    const wxWeakRef<wxWindow> self(this);
    const std::optional<wxString> name =
        AskForFile(GetParent(), "Save view matrix as", "Viewer3D view matrix (*.zelview)|*.zelview",
                   wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (!name || !self)
        return;
    try {
        SaveViewFile(static_cast<const char*>(name->fn_str()));
    } catch (const kep::IOException&) {
        ShowMessage("Unable to create file.");
    }
}

void vol3D_VolVisCanvas::LoadView() {
    const wxWeakRef<wxWindow> self(this);
    const std::optional<wxString> name = AskForFile(GetParent(), "Choose a view to load",
                                                    "Viewer3D view matrix (*.zelview)|*.zelview|All files (*.*) | *.*",
                                                    wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (!name || !self)
        return;
    if (!LoadViewFile(static_cast<const char*>(name->fn_str())))
        ShowMessage("Unable to open file.");
}

void vol3D_VolVisCanvas::SaveViewFile(const std::string& fileName) const {
    SavePose(fileName, m_view.pose);
}

bool vol3D_VolVisCanvas::LoadViewFile(const std::string& fileName) {
    return LoadPose(fileName, m_view.pose);
}

wxImage vol3D_VolVisCanvas::TakePicture() {
    if (!MakeCurrent() || m_size.x <= 0 || m_size.y <= 0)
        return {};
    m_scene->Draw(m_view);
    // The back buffer, before it is swapped: what the front buffer has is up to the driver.
    wxImage picture(m_size.x, m_size.y, false);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadBuffer(GL_BACK);
    glReadPixels(0, 0, m_size.x, m_size.y, GL_RGB, GL_UNSIGNED_BYTE, picture.GetData());
    SwapBuffers();
    return picture.Mirror(false); // OpenGL's first row is the lowest
}

void vol3D_VolVisCanvas::SetShowBox(bool show) {
    m_view.showsBox = show;
    Refresh(false);
}

void vol3D_VolVisCanvas::SetShowPlane(bool show) {
    m_view.showsPlane = show;
    Refresh(false);
}

void vol3D_VolVisCanvas::SetBackground(float red, float green, float blue) {
    m_view.background = {red, green, blue};
    Refresh(false);
}

bool vol3D_VolVisCanvas::HasVolume() const {
    return m_scene->HasVolume();
}

const kep::Vector3d<float>& vol3D_VolVisCanvas::GetTextureScale() const {
    return m_scene->GetTextureScale();
}

kep::Vector3d<float> vol3D_VolVisCanvas::GetSheetPoint(std::size_t row, std::size_t column) const {
    return m_scene->GetSheetPoint(row, column);
}

kep::Vector3d<float> vol3D_VolVisCanvas::ProjectToSphere(int x, int y, int width, int height) {
    return zel::ProjectToSphere({x, y}, {width, height});
}

void vol3D_VolVisCanvas::OnPaint(wxPaintEvent&) {
    const wxPaintDC dc(this);
    if (!MakeCurrent())
        return;
    if (m_scene->Draw(m_view))
        TellState();
    SwapBuffers();
}

void vol3D_VolVisCanvas::TellState() {
    if (m_statusBar == nullptr)
        return;
    m_statusBar->SetStatusText(m_view.GetModeText(), 0);
    m_statusBar->SetStatusText(m_view.GetSettingsText(), 1);
}

void vol3D_VolVisCanvas::OnSize(wxSizeEvent& event) {
    event.Skip();
    if (MakeCurrent())
        SetUpViewport();
}

void vol3D_VolVisCanvas::OnChar(wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_ESCAPE) {
        GetParent()->Close(false);
    } else if (const auto step = StepOfKey(event.GetKeyCode())) {
        m_view.Step(*step);
    } else {
        event.Skip();
        return;
    }
    Refresh(false);
}

void vol3D_VolVisCanvas::OnButton(wxMouseEvent& event) {
    if (event.LeftDown() || event.LeftDClick()) {
        m_view.PressLeft(event.GetPosition(), m_size);
        event.Skip(); // the toolkit gives the keyboard to what is pressed
    } else if (event.LeftUp()) {
        m_view.ReleaseLeft();
    } else if (event.RightUp()) {
        m_view.ReleaseRight();
    } else {
        m_view.PressRight(event.GetPosition());
    }
    Refresh(false);
}

void vol3D_VolVisCanvas::OnMotion(wxMouseEvent& event) {
    if (m_view.Drag(event.GetPosition(), m_size))
        Refresh(false);
}

void vol3D_VolVisCanvas::OnLeave(wxMouseEvent&) {
    m_view.Leave();
}

} // namespace zel
