#pragma once

#include "image/kep.h"
#include "model/zel_export.h"
#include "model/zel_isosurfacegenerator.h"
#include "model/zel_matrix.h"
#include "model/zel_volumesurfaces.h"
#include "model/zel_wholemeshes.h"

#include <cstdint>
#include <vector>

namespace zel {

/// Meshes that OpenGL holds and draws whole. All calls need the window's context to be current.
class ZEL_EXPORT MeshBuffers {
public:
    /// Uploads meshes in place of those before. They are not needed after the call.
    /// @param toObject  as PlaceMeshes gives it
    /// @return the labels of those that OpenGL cannot take, which are left out
    /// @throws std::bad_alloc; there are no meshes then
    std::vector<std::uint64_t> Upload(const std::vector<LabelSurface>& meshes, const Matrix4& toObject);

    /// Draws them, opaque, into the object's coordinates.
    /// @param colours   labels take them in turn
    /// @param hasDepth  there is a depth buffer. Without one they stand one over the other as their labels count, each
    ///                  with its near side in front
    void Draw(const std::vector<kep::RGB_generic<unsigned char>>& colours, bool hasDepth) const;

    /// Gives the buffers back to OpenGL.
    void Release();

private:
    /// The buffers of one mesh.
    struct Mesh {
        unsigned vertices = 0; // names in OpenGL
        unsigned normals = 0;
        unsigned indices = 0;
        std::vector<TriangleRange> ranges;
        std::uint64_t label = 0;
    };

    static bool Fill(const Mesh& mesh, const LabelSurface& from);
    static void DrawMesh(const Mesh& mesh);
    static void Delete(const Mesh& mesh);

    std::vector<Mesh> m_meshes;
    Matrix4 m_toObject = identityMatrix;
};

} // namespace zel
