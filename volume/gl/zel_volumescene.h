#pragma once

#include "image/kep.h"
#include "model/zel_clippingplane.h"
#include "model/zel_geometry.h"
#include "model/zel_isosurfacegenerator.h"
#include "model/zel_sheetmesh.h"
#include "model/zel_volumesurfaces.h"
#include "model/zel_volumeview.h"
#include "model/zel_wholemeshes.h"
#include "volume/gl/zel_meshbuffers.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zel {

/// What the volume window has handed to OpenGL, and how that is drawn: OpenGL's fixed functions only, as they stand on
/// every machine. All calls need the window's context to be current.
class VolumeScene {
public:
    explicit VolumeScene(MeshDrawing meshDrawing);

    /// Called once, before all others.
    void SetUp();
    /// To be called when the window has another size. A window without a width or height changes nothing.
    static void SetViewport(const Size& window);

    enum class Upload {
        Done,
        TooBig,      ///< refused; the scale is as it was
        Unavailable, ///< OpenGL has no volumes here
        Failed       ///< OpenGL refused
    };
    /// Uploads the volume, in place of the one before, which is gone in any case.
    /// @param rgba   size.x * size.y * size.z voxels of four bytes, in memory order: row 0 at the bottom. Copied
    /// @param size   of the texture, with its border
    /// @param scale  as ComputeVolumeScale gives it
    Upload SetVolume(const void* rgba, const kep::Vector3d<std::size_t>& size, const Vector3f& scale);
    bool HasVolume() const { return m_hasVolume; }
    const Vector3f& GetTextureScale() const { return m_textureScale; }

    /// Uploads meshes in place of those before. They are not needed after the call. For MeshDrawing::Halved.
    void SetSurfaces(const std::vector<LabelSurface>& surfaces, const Vector3f& translation);
    /// The same for MeshDrawing::Whole. @param toObject  as PlaceMeshes gives it
    /// @return the labels of those that OpenGL cannot take
    std::vector<std::uint64_t> SetMeshes(const std::vector<LabelSurface>& meshes, const Matrix4& toObject) {
        return m_meshes.Upload(meshes, toObject);
    }
    void SetSurfaceColours(bool drawSurfaces, std::vector<kep::RGB_generic<unsigned char>> colours);

    /// Draws it all, after the view's pending rotation was applied; only the background if there is no volume.
    /// @return whether there was one
    bool Draw(VolumeView& view) const;

    /// Gives everything back to OpenGL.
    void Release();

    /// A point of the sheets, which are all alike.
    const Vector3f& GetSheetPoint(std::size_t row, std::size_t column) const {
        return m_sheet[sheetSide * row + column];
    }

private:
    /// The buffers of one mesh.
    struct Surface {
        unsigned vertices = 0; // names in OpenGL
        unsigned indices = 0;
        unsigned normals = 0;
        unsigned triangleCount = 0;
        bool hasNormals = false;
        std::uint64_t label = 0;
    };

    static Surface UploadSurface(const LabelSurface& mesh);
    static void DrawSurface(const Surface& surface, const SurfaceColour& colour, const Vector3f& translation);
    void DrawInOrder(const VolumeView& view, const ClippingPlane& plane) const;
    void DrawInDepth(const VolumeView& view, const ClippingPlane& plane) const;
    void DrawSurfaces() const;
    void StartTexture(const VolumeView& view) const;
    void DrawSheets(const VolumeView& view) const;
    void DrawCut(const VolumeView& view, const ClippingPlane& plane) const;
    void ReleaseSurfaces();

    const MeshDrawing m_meshDrawing;
    bool m_hasDepth = false; // there is a depth buffer
    SheetMesh m_sheet;
    Vector3f m_textureScale;
    bool m_hasVolume = false;
    bool m_drawsSurfaces = false;
    std::vector<Surface> m_surfaces; // of MeshDrawing::Halved
    MeshBuffers m_meshes;            // of MeshDrawing::Whole
    std::vector<kep::RGB_generic<unsigned char>> m_surfaceColours;
    Vector3f m_surfaceTranslation;
    unsigned m_texture = 0; // 0 is no texture, and may be deleted
};

} // namespace zel
