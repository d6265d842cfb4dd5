#pragma once

#include "image/kep.h"
#include "model/zel_export.h"
#include "model/zel_isosurfacegenerator.h"
#include "model/zel_volumeview.h"
#include "model/zel_wholemeshes.h"

#include <wx/glcanvas.h>
#include <wx/image.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class WXDLLIMPEXP_FWD_CORE wxStatusBar;

namespace zel {

class VolumeScene;

/// The OpenGL window in which a frame is seen as a volume: a stack of curved sheets with a clipping plane and a box,
/// and the surfaces of labels. Mouse and keys move it. It draws with OpenGL 2.0, without shaders.
///
/// Sources that call OpenGL themselves include <GL/glew.h> before this header.
class ZEL_EXPORT vol3D_VolVisCanvas : public wxGLCanvas {
public:
    /// RGBA and double buffered. No depth buffer is asked for: most systems then give none, and meshes hide one another
    /// in the order of their labels.
    static constexpr int attributes[] = {WX_GL_RGBA, WX_GL_DOUBLEBUFFER, 0};
    /// The same with a depth buffer of 24 bits.
    static constexpr int attributesWithDepth[] = {WX_GL_RGBA, WX_GL_DOUBLEBUFFER, WX_GL_DEPTH_SIZE, 24, 0};
    /// The same with one of 16 bits, for displays that have no other.
    static constexpr int attributesWithSmallDepth[] = {WX_GL_RGBA, WX_GL_DOUBLEBUFFER, WX_GL_DEPTH_SIZE, 16, 0};

    /// Whether the display has OpenGL at all; the log says so if not. Without it no such window can be made.
    static bool CheckDisplay();
    /// The attributes of a window on this display. One for whole meshes has a depth buffer if the display can have it;
    /// the log says so if not. CheckDisplay must be true.
    static const int* ChooseAttributes(MeshDrawing meshDrawing);

    /// Makes the window without a picture; Init must follow. CheckDisplay must be true, or the toolkit fails in
    /// assertions, and Init.
    /// @param statusBar                           gets the mode in its field 0 and the numbers in field 1; outlives the
    ///                                            canvas; may be null
    /// @param parent, id, pos, size, style, name  as for any window of the toolkit
    /// @param attributeList                       as ChooseAttributes gives it. Without a depth buffer whole meshes
    ///                                            stand one over the other in the order of their labels
    /// @param meshDrawing                         how meshes are drawn. With MeshDrawing::Whole, what is nearer also
    ///                                            hides box and plane
    vol3D_VolVisCanvas(wxStatusBar* statusBar, wxWindow* parent, wxWindowID id, const wxPoint& pos, const wxSize& size,
                       long style, const wxString& name, const int* attributeList,
                       MeshDrawing meshDrawing = MeshDrawing::Halved);
    ~vol3D_VolVisCanvas() override;

    /// Shows the parent, which must be on the screen for it, and starts OpenGL. Dispatches events until the window is
    /// there, two seconds at most. To be called once.
    /// @return false if OpenGL cannot be had, or the window was destroyed meanwhile; the log says why. The window is of
    ///         no use then
    bool Init();

    /// The view as it is at first. What is drawn stays.
    void ResetView();

    /// Makes the window's context the one that OpenGL's calls go to: there are as many as volume windows.
    /// @return false if there is none
    bool MakeCurrent();

    /// Uploads a volume, in place of the one before. MakeCurrent must have been called. Failures are logged; nothing is
    /// drawn then.
    /// @param rgba   size.x * size.y * size.z voxels of R, G, B, A, x fastest; the caller's
    /// @param size   of the texture, whatever the driver takes
    /// @param scale  from the view's space to the texture, as ComputeVolumeScale gives it
    void SetVolumeData(const void* rgba, const kep::Vector3d<std::size_t>& size, const kep::Vector3d<float>& scale);

    /// As the window was made.
    MeshDrawing GetMeshDrawing() const { return m_meshDrawing; }

    /// Uploads the meshes, in place of those before. MakeCurrent must have been called. About half of their triangles
    /// are drawn; all with MeshDrawing::Whole.
    /// @param generator    not needed after the call
    /// @param translation  moves the meshes, which begin at the origin, to the volume's place
    void SetIsosurfaces(const IsosurfaceGenerator& generator, const kep::Vector3d<float>& translation);
    /// The same for whole meshes anywhere. Meshes that OpenGL cannot take are left out; the log says so.
    /// @param generator  not needed after the call
    /// @param toObject   from the meshes to the volume's space, as PlaceMeshes gives it, with lengths kept
    /// @throws kep::InternalException  the window is not one of MeshDrawing::Whole
    /// @throws std::bad_alloc          there are no meshes then
    void SetWholeIsosurfaces(const IsosurfaceGenerator& generator, const Matrix4& toObject);

    /// The caller refreshes the window.
    /// @param drawSurfaces  whether surfaces are drawn
    /// @param colours       labels take them in turn. None: surfaces are white
    void SetSurfaceColours(bool drawSurfaces, std::vector<kep::RGB_generic<unsigned char>> colours);

    /// Turns the object so that it is seen along a direction; the plane keeps its place in it. Both vectors are of
    /// length 1 and at right angles.
    void SetViewDirection(float eyeDistance, float forwardX, float forwardY, float forwardZ, float upX, float upY,
                          float upZ);

    // These ask for a file. A failure is told in a message box.

    void SaveView(); ///< keeps the pose of object and plane
    void LoadView(); ///< takes a pose that was kept

    /// Saves where volume and plane stand; the file appears under its name when it is whole.
    /// @param fileName  in the file system's encoding
    /// @throws kep::IOException; what stood under the name stays then
    void SaveViewFile(const std::string& fileName) const;
    /// Takes the numbers that the file has and keeps the others. They are seen from the next paint on.
    /// @param fileName  in the file system's encoding
    /// @return false if the file cannot be opened; nothing has changed then
    bool LoadViewFile(const std::string& fileName);

    /// Draws the window and reads its picture back; it must be on the screen and uncovered. Not OK without OpenGL.
    wxImage TakePicture();

    void SetShowBox(bool show);   ///< the edges of the volume
    void SetShowPlane(bool show); ///< the square of the clipping plane
    /// @param red, green, blue  0 to 1
    void SetBackground(float red, float green, float blue);

    bool HasVolume() const;                              ///< SetVolumeData has uploaded one
    const kep::Vector3d<float>& GetTextureScale() const; ///< as SetVolumeData got it
    /// A point of the sheets, before they are moved to their places. @param row, column  0 to 7
    kep::Vector3d<float> GetSheetPoint(std::size_t row, std::size_t column) const;
    /// Rotations, column by column.
    const Matrix4& GetObjectMatrix() const { return m_view.pose.objectMatrix; }
    const Matrix4& GetPlaneMatrix() const { return m_view.pose.planeMatrix; } ///< in the object's coordinates
    float GetEyeDistance() const { return m_view.pose.eyeDistance; }  ///< z of the object before the eye, so below 0
    double GetPlaneOffset() const { return m_view.pose.planeOffset; } ///< along the first column of the plane's matrix
    int GetSliceCount() const { return m_view.sliceCount; }           ///< sheets that are drawn
    float GetIntensity() const { return m_view.intensity; }           ///< alpha of the sheets, 0 to 1
    /// Share of the intensity from which voxels are seen, 0 to 1.
    float GetThreshold() const { return m_view.threshold; }
    bool IsMovingPlane() const { return m_view.isMovingPlane; } ///< the mouse moves the plane and not the object

    /// Where a pointer touches a ball that fills the window: a unit vector.
    static kep::Vector3d<float> ProjectToSphere(int x, int y, int width, int height);

private:
    void OnPaint(wxPaintEvent& event);
    void OnSize(wxSizeEvent& event);
    void OnChar(wxKeyEvent& event);
    void OnButton(wxMouseEvent& event);
    void OnMotion(wxMouseEvent& event);
    void OnLeave(wxMouseEvent& event);
    bool StartOpenGL();
    void SetUpViewport();
    void TellState();

    wxStatusBar* m_statusBar;
    const MeshDrawing m_meshDrawing;
    std::unique_ptr<VolumeScene> m_scene;
    std::unique_ptr<wxGLContext> m_context; // null until Init
    VolumeView m_view;
    Size m_size{0, 0}; // of the client area, when the viewport was set up last
};

} // namespace zel
