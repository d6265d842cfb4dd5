#include <GL/glew.h> // before any header that brings OpenGL's own

#include "volume/gl/zel_meshbuffers.h"

#include <algorithm>
#include <utility>

namespace zel {

namespace {

constexpr std::uint64_t triangleBytes = 3 * sizeof(std::uint32_t);

/// Errors of calls before would be taken for those of an upload. A lost context may report one for ever.
void ForgetErrors() {
    constexpr int kindsOfErrors = 8;
    for (int i = 0; i < kindsOfErrors && glGetError() != GL_NO_ERROR; ++i) {
    }
}

/// Makes room in the buffer that is bound. @return whether there is that much
bool Allocate(GLenum target, std::uint64_t bytes, const void* data) {
    glBufferData(target, static_cast<GLsizeiptr>(bytes), data, GL_STATIC_DRAW);
    return glGetError() == GL_NO_ERROR;
}

bool FillVectors(unsigned name, std::uint64_t count, const float* vectors) {
    glBindBuffer(GL_ARRAY_BUFFER, name);
    return Allocate(GL_ARRAY_BUFFER, count * 3 * sizeof(float), vectors);
}

/// Piece by piece, so that there is no second copy of all indices.
bool FillIndices(unsigned name, const std::vector<TriangleRange>& ranges, const LabelSurface& from) {
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, name);
    if (!Allocate(GL_ELEMENT_ARRAY_BUFFER, from.GetTriangleCount() * triangleBytes, nullptr))
        return false;
    std::vector<std::uint32_t> narrow(static_cast<std::size_t>(3 * ranges.front().count));
    for (const TriangleRange& range : ranges) {
        NarrowIndices(from.GetIndices() + 3 * range.first, static_cast<std::size_t>(3 * range.count), narrow.data());
        glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLintptr>(range.first * triangleBytes),
                        static_cast<GLsizeiptr>(range.count * triangleBytes), narrow.data());
    }
    return glGetError() == GL_NO_ERROR;
}

/// Light as VolumeScene sets it up. Where the clipping plane cuts a mesh open its inside is seen, and lit too.
void StartLight() {
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
}

void EndLight() {
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisable(GL_LIGHT0);
    glDisable(GL_LIGHTING);
}

} // namespace

std::vector<std::uint64_t> MeshBuffers::Upload(const std::vector<LabelSurface>& meshes, const Matrix4& toObject) {
    Release();
    ForgetErrors();
    m_toObject = toObject;
    m_meshes.reserve(meshes.size());
    std::vector<std::uint64_t> refused;
    try {
        for (const LabelSurface& from : meshes) {
            if (from.GetTriangleCount() == 0)
                continue;
            if (!FitsOpenGL(from.GetVertexCount(), from.GetTriangleCount())) {
                refused.push_back(from.GetLabel());
                continue;
            }
            Mesh& mesh = m_meshes.emplace_back();
            mesh.label = from.GetLabel();
            mesh.ranges = SplitTriangles(from.GetTriangleCount(), trianglesPerCall);
            for (unsigned* const name : {&mesh.vertices, &mesh.normals, &mesh.indices})
                glGenBuffers(1, name);
            if (Fill(mesh, from))
                continue;
            refused.push_back(mesh.label);
            Delete(mesh);
            m_meshes.pop_back();
        }
    } catch (...) {
        Release();
        throw;
    }
    return refused;
}

bool MeshBuffers::Fill(const Mesh& mesh, const LabelSurface& from) {
    return FillVectors(mesh.vertices, from.GetVertexCount(), from.GetVertices()) &&
           FillVectors(mesh.normals, from.GetVertexCount(), from.GetNormals()) &&
           FillIndices(mesh.indices, mesh.ranges, from);
}

void MeshBuffers::Draw(const std::vector<kep::RGB_generic<unsigned char>>& colours, bool hasDepth) const {
    glPushMatrix();
    glMultMatrixf(m_toObject.data());
    StartLight();
    glFrontFace(IsMirroring(m_toObject) ? GL_CCW : GL_CW); // triangles are clockwise, as seen from outside
    SurfaceColour colour = firstSurfaceColour;
    for (const Mesh& mesh : m_meshes) {
        colour = SurfaceColourOf(mesh.label, colours, colour);
        glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, colour.data());
        if (hasDepth) {
            DrawMesh(mesh);
            continue;
        }
        glEnable(GL_CULL_FACE);
        for (const GLenum hidden : {GLenum{GL_FRONT}, GLenum{GL_BACK}}) {
            glCullFace(hidden);
            DrawMesh(mesh);
        }
        glDisable(GL_CULL_FACE);
    }
    glFrontFace(GL_CCW);
    EndLight();
    glPopMatrix();
}

void MeshBuffers::DrawMesh(const Mesh& mesh) {
    glBindBuffer(GL_ARRAY_BUFFER, mesh.vertices);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, mesh.normals);
    glNormalPointer(GL_FLOAT, 0, nullptr);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.indices);
    for (const TriangleRange& range : mesh.ranges)
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(3 * range.count), GL_UNSIGNED_INT,
                       reinterpret_cast<const void*>(static_cast<std::uintptr_t>(range.first * triangleBytes)));
}

void MeshBuffers::Delete(const Mesh& mesh) {
    for (const unsigned name : {mesh.vertices, mesh.normals, mesh.indices})
        glDeleteBuffers(1, &name);
}

void MeshBuffers::Release() {
    for (const Mesh& mesh : m_meshes)
        Delete(mesh);
    m_meshes.clear();
}

} // namespace zel
