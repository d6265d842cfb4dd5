#include <GL/glew.h> // before any header that brings OpenGL's own

#include "model/zel_volumetexture.h"
#include "volume/gl/zel_volumescene.h"

#include <wx/utils.h>

#include <array>
#include <utility>

namespace zel {

namespace {

constexpr std::array<GLenum, 3> textureAxes{GL_S, GL_T, GL_R};
constexpr std::array<GLenum, 3> textureWraps{GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T, GL_TEXTURE_WRAP_R};
constexpr std::array<GLenum, 3> textureGenerations{GL_TEXTURE_GEN_S, GL_TEXTURE_GEN_T, GL_TEXTURE_GEN_R};
constexpr SheetQuads sheetQuads = MakeSheetQuads();
constexpr std::array<Vector3f, 24> boxLines = MakeBoxLines();

/// Names come from the toolkit's counter, not from OpenGL's own: a context of fixed functions takes any.
unsigned NewName() {
    return static_cast<unsigned>(wxNewId());
}

void PutVertex(const Vector3f& place) {
    glVertex3f(place.x, place.y, place.z);
}

GLsizeiptr Bytes(std::uint64_t count) {
    return static_cast<GLsizeiptr>(count * 12); // three floats, or three indices of 32 bits
}

void FillBuffer(GLenum target, unsigned name, std::uint64_t count, const void* data) {
    glBindBuffer(target, name);
    glBufferData(target, Bytes(count), data, GL_STATIC_DRAW);
}

/// The light shines from above the viewer and does not turn with the object.
void PlaceLight() {
    const std::array<GLfloat, 4> direction{0, 2, 10, 0};
    glLightfv(GL_LIGHT0, GL_POSITION, direction.data());
}

/// In the object's coordinates: the modelview matrix holds the object's rotation.
void CutAt(const ClippingPlane& plane) {
    for (const GLenum axis : textureAxes)
        glTexGeni(axis, GL_TEXTURE_GEN_MODE, GL_EYE_LINEAR);
    glClipPlane(GL_CLIP_PLANE0, plane.equation.data());
    glEnable(GL_CLIP_PLANE0);
}

/// The texture is fixed to the object while the sheets are fixed before the eye.
void PlaceTexture(const Vector3f& scale, const Matrix4& inverseRotation, float eyeDistance) {
    glMatrixMode(GL_TEXTURE);
    glLoadMatrixf(TextureMatrix(scale, inverseRotation, eyeDistance).data());
    glEnable(GL_TEXTURE_3D);
    glMatrixMode(GL_MODELVIEW);
}

void EndTexture() {
    glDisable(GL_TEXTURE_3D);
    for (const GLenum generation : textureGenerations)
        glDisable(generation);
}

void EnableBlending() {
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_BLEND);
}

/// The cut through the volume: the texture is on, and what is drawn keeps out of the depth buffer.
void DrawPlane(const ClippingPlane& plane) {
    glBegin(GL_QUADS);
    glColor4f(1, 1, 1, 1);
    for (const std::size_t corner : planeQuad)
        PutVertex(plane.corners[corner]);
    glEnd();
}

void DrawBox() {
    glColor3f(0.0F, 0.0F, 0.7F);
    glBegin(GL_LINES);
    for (const Vector3f& place : boxLines)
        PutVertex(place);
    glEnd();
}

void DrawOutline(const ClippingPlane& plane) {
    glColor3f(1, 0, 0);
    glBegin(GL_LINES);
    for (const std::size_t corner : planeOutline)
        PutVertex(plane.corners[corner]);
    glEnd();
}

} // namespace

VolumeScene::VolumeScene(MeshDrawing meshDrawing) : m_meshDrawing(meshDrawing), m_sheet(MakeSheetMesh()) {}

void VolumeScene::SetUp() {
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    m_texture = NewName();
    GLint depthBits = 0;
    glGetIntegerv(GL_DEPTH_BITS, &depthBits);
    m_hasDepth = depthBits > 0;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glDepthFunc(GL_LESS);
    glEnable(GL_DEPTH_TEST);

    constexpr std::array<GLfloat, 4> white{1, 1, 1, 1};
    constexpr std::array<GLfloat, 4> lightAmbient{0.2F, 0.2F, 0.2F, 1};
    glLightfv(GL_LIGHT0, GL_DIFFUSE, white.data());
    glLightfv(GL_LIGHT0, GL_AMBIENT, lightAmbient.data());
    glLightfv(GL_LIGHT0, GL_SPECULAR, white.data());
    glShadeModel(GL_SMOOTH);

    constexpr std::array<GLfloat, 4> ambient{0.25F, 0.25F, 0.25F, 1};
    constexpr std::array<GLfloat, 4> specular{0.6F, 0.6F, 0.6F, 1};
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, ambient.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular.data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 70);
}

void VolumeScene::SetViewport(const Size& window) {
    if (window.x <= 0 || window.y <= 0)
        return;
    glViewport(0, 0, window.x, window.y);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMultMatrixd(PerspectiveMatrix(window.x, window.y).data());
    glMatrixMode(GL_MODELVIEW);
}

VolumeScene::Upload VolumeScene::SetVolume(const void* rgba, const kep::Vector3d<std::size_t>& size,
                                           const Vector3f& scale) {
    m_hasVolume = false;
    if (!FitsTexture(size))
        return Upload::TooBig;
    m_textureScale = scale;
    if (__glewTexImage3DEXT == nullptr)
        return Upload::Unavailable;
    glBindTexture(GL_TEXTURE_3D, m_texture);
    for (const GLenum wrap : textureWraps)
        glTexParameteri(GL_TEXTURE_3D, wrap, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    constexpr std::array<GLfloat, 4> border{1, 1, 1, 1};
    glTexParameterfv(GL_TEXTURE_3D, GL_TEXTURE_BORDER_COLOR, border.data());
    glTexImage3D(GL_TEXTURE_3D, 0, GL_RGBA8, static_cast<GLsizei>(size.x), static_cast<GLsizei>(size.y),
                 static_cast<GLsizei>(size.z), 0, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    m_hasVolume = glGetError() == GL_NO_ERROR;
    return m_hasVolume ? Upload::Done : Upload::Failed;
}

/// Indices go up as they are, 64 bits wide, but only 12 bytes of them a triangle, and they are drawn as numbers of 32
/// bits. So about half of the triangles are seen, every second corner of them at vertex 0. This is how the window has
/// always drawn meshes; neither side is to be changed alone.
VolumeScene::Surface VolumeScene::UploadSurface(const LabelSurface& mesh) {
    Surface surface;
    surface.vertices = NewName();
    surface.indices = NewName();
    surface.normals = NewName();
    FillBuffer(GL_ARRAY_BUFFER, surface.vertices, mesh.GetVertexCount(), mesh.GetVertices());
    surface.triangleCount = static_cast<unsigned>(mesh.GetTriangleCount());
    FillBuffer(GL_ELEMENT_ARRAY_BUFFER, surface.indices, mesh.GetTriangleCount(), mesh.GetIndices());
    surface.hasNormals = mesh.GetNormals() != nullptr;
    if (surface.hasNormals)
        FillBuffer(GL_ARRAY_BUFFER, surface.normals, mesh.GetVertexCount(), mesh.GetNormals());
    surface.label = mesh.GetLabel();
    return surface;
}

void VolumeScene::SetSurfaces(const std::vector<LabelSurface>& surfaces, const Vector3f& translation) {
    m_surfaceTranslation = translation;
    ReleaseSurfaces();
    m_surfaces.reserve(surfaces.size());
    for (const LabelSurface& mesh : surfaces)
        m_surfaces.push_back(UploadSurface(mesh));
}

void VolumeScene::SetSurfaceColours(bool drawSurfaces, std::vector<kep::RGB_generic<unsigned char>> colours) {
    m_drawsSurfaces = drawSurfaces;
    m_surfaceColours = std::move(colours);
}

bool VolumeScene::Draw(VolumeView& view) const {
    glEnable(GL_DEPTH_TEST);
    glClearColor(view.background[0], view.background[1], view.background[2], 0.0F);
    glClearDepth(1.0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (!m_hasVolume || __glewTexImage3DEXT == nullptr)
        return false;

    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0, 0, view.pose.eyeDistance);
    PlaceLight();
    view.Advance();
    glMultMatrixf(view.pose.objectMatrix.data());
    const ClippingPlane plane = MakeClippingPlane(view.pose.planeMatrix, view.pose.planeOffset);
    CutAt(plane);
    if (m_meshDrawing == MeshDrawing::Whole)
        DrawInDepth(view, plane);
    else
        DrawInOrder(view, plane);
    return true;
}

/// One thing over the other. Clipping is on.
void VolumeScene::DrawInOrder(const VolumeView& view, const ClippingPlane& plane) const {
    DrawSurfaces();
    StartTexture(view);
    DrawSheets(view);
    glDisable(GL_CLIP_PLANE0);
    if (view.showsPlane) {
        glDepthMask(GL_FALSE);
        DrawPlane(plane);
        glDepthMask(GL_TRUE);
    }
    EndTexture();
    if (view.showsBox)
        DrawBox();
    if (view.showsPlane)
        DrawOutline(plane);
}

/// Nearer things before farther ones, as far as there is a depth buffer. What is opaque comes first. Clipping is on.
void VolumeScene::DrawInDepth(const VolumeView& view, const ClippingPlane& plane) const {
    if (m_drawsSurfaces)
        m_meshes.Draw(m_surfaceColours, m_hasDepth);
    glDisable(GL_CLIP_PLANE0);
    if (view.showsBox && m_hasDepth)
        DrawBox();
    // The sheets go from back to front, and the whole volume is on one side of the plane.
    EnableBlending();
    glDepthMask(GL_FALSE);
    const bool isPlaneBehind = Keeps(plane, view.GetEye());
    if (view.showsPlane && isPlaneBehind)
        DrawCut(view, plane);
    StartTexture(view);
    glEnable(GL_CLIP_PLANE0);
    DrawSheets(view);
    glDisable(GL_CLIP_PLANE0);
    EndTexture();
    if (view.showsPlane && !isPlaneBehind)
        DrawCut(view, plane);
    glDepthMask(GL_TRUE);
    if (view.showsBox && !m_hasDepth)
        DrawBox(); // it would be lost under the sheets otherwise
}

void VolumeScene::DrawSurfaces() const {
    if (!m_drawsSurfaces)
        return;
    SurfaceColour colour = firstSurfaceColour;
    for (const Surface& surface : m_surfaces) {
        colour = SurfaceColourOf(surface.label, m_surfaceColours, colour);
        DrawSurface(surface, colour, m_surfaceTranslation);
    }
}

void VolumeScene::DrawSurface(const Surface& surface, const SurfaceColour& colour, const Vector3f& translation) {
    glEnableClientState(GL_VERTEX_ARRAY);
    if (surface.hasNormals)
        glEnableClientState(GL_NORMAL_ARRAY);
    glEnableClientState(GL_INDEX_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, surface.vertices);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    if (surface.hasNormals) {
        glEnable(GL_LIGHTING);
        glEnable(GL_LIGHT0);
        glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, colour.data());
        glBindBuffer(GL_ARRAY_BUFFER, surface.normals);
        glNormalPointer(GL_FLOAT, 0, nullptr);
    } else {
        glColor3fv(colour.data());
    }
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, surface.indices);
    glIndexPointer(GL_UNSIGNED_BYTE, 0, nullptr);
    glPushMatrix();
    glTranslatef(translation.x, translation.y, translation.z);
    // 32 bits out of indices of 64: see UploadSurface.
    glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(surface.triangleCount * 3), GL_UNSIGNED_INT, nullptr);
    glPopMatrix();
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_INDEX_ARRAY);
    if (surface.hasNormals) {
        glDisable(GL_LIGHTING);
        glDisable(GL_LIGHT0);
        glDisableClientState(GL_NORMAL_ARRAY);
    }
}

void VolumeScene::StartTexture(const VolumeView& view) const {
    PlaceTexture(m_textureScale, InverseRotation(view.GetModelView()), view.pose.eyeDistance);
    glPushMatrix();
    glLoadIdentity();
    constexpr std::array<std::array<GLfloat, 4>, 3> eyePlanes{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}};
    for (std::size_t i = 0; i < eyePlanes.size(); ++i) {
        glTexGenfv(textureAxes[i], GL_EYE_PLANE, eyePlanes[i].data());
        glEnable(textureGenerations[i]);
    }
    glBindTexture(GL_TEXTURE_3D, m_texture);
    glPopMatrix();
}

void VolumeScene::DrawSheets(const VolumeView& view) const {
    glColor4f(1, 1, 1, view.intensity);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, view.intensity * view.threshold);
    EnableBlending();
    glPushMatrix();
    glLoadIdentity();
    glTranslatef(0, 0, view.pose.eyeDistance);
    for (int sheet = 0; sheet < view.sliceCount; ++sheet) {
        glPushMatrix();
        glTranslatef(0, 0, PlaceOfSheet(sheet, view.sliceCount));
        glBegin(GL_QUADS);
        for (const std::size_t point : sheetQuads)
            PutVertex(m_sheet[point]);
        glEnd();
        glPopMatrix();
    }
    glPopMatrix();
    glDisable(GL_ALPHA_TEST);
}

/// The clipping plane with its outline, in depth.
void VolumeScene::DrawCut(const VolumeView& view, const ClippingPlane& plane) const {
    StartTexture(view);
    DrawPlane(plane);
    EndTexture();
    DrawOutline(plane);
}

void VolumeScene::ReleaseSurfaces() {
    for (const Surface& surface : m_surfaces)
        for (const unsigned name : {surface.vertices, surface.indices, surface.normals})
            glDeleteBuffers(1, &name);
    m_surfaces.clear();
}

void VolumeScene::Release() {
    glDeleteTextures(1, &m_texture);
    m_texture = 0;
    m_hasVolume = false;
    ReleaseSurfaces();
    m_meshes.Release();
}

} // namespace zel
