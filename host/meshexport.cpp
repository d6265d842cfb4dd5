#include "host/meshexport.h"

#include "host/message.h"
#include "host/proportions.h"
#include "volume/zel_isosurfacegenerator.h"
#include "volume/zel_meshfile.h"

#include <map>
#include <new>

namespace zelviewer {

namespace {

using Label = unsigned short;
using Labels = kep::LabeledImage3d<Label, Label>;

Labels ReadLabels(const std::string& name, const MeshExport& order) {
    try {
        Labels labels;
        labels.ReadImage(name.c_str(), nullptr, false, -1, nullptr, nullptr);
        if (order.components)
            labels.CreateForegroundRegionsFF(labels, kep::nb3D_6);
        else
            labels.CreateRegionsOfLabels(labels);
        return labels;
    } catch (const kep::LibException& error) {
        throw Failure(NameAndReason(name, error.GetText()));
    }
}

void SetVoxelSize(Labels& labels, const std::string& name, const MeshExport& order) {
    if (order.resolution && labels.GetResolution().IsDefined())
        PrintMessage(name + ": The file tells its voxel size; --resolution is not used.");
    labels.SetResolution(CompleteResolution(labels.GetResolution(), order.resolution));
    if (!labels.GetResolution().IsDefined())
        PrintMessage(name + ": The voxel size is not known; the meshes count in pixels. Use --resolution.");
}

void Generate(const Labels& labels, zel::IsosurfaceGenerator& generator) {
    std::map<Label, std::size_t> toSurface;
    for (const auto& [label, component] : labels.components)
        toSurface.emplace(label, toSurface.size());
    const kep::Vector3d<std::size_t> size = labels.GetSize();
    const kep::Vector3d<float> cell = kep::PixelsToMicrons(kep::Vector3d<std::size_t>(1, 1, 1), labels.GetResolution());
    generator.GenerateSurfaces(labels.begin(), toSurface, size.x, size.y, size.z, cell.x, cell.y, cell.z);
}

void ExportFrame(std::size_t frame, const MeshExport& order) {
    const std::string& name = order.labels[frame];
    Labels labels = ReadLabels(name, order);
    const kep::Vector3d<std::size_t> size = labels.GetSize();
    if (size.x < 2 || size.y < 2 || size.z < 2)
        throw Failure(name + ": A flat frame has no surfaces: meshes need two voxels or more along each axis.");
    SetVoxelSize(labels, name, order);
    if (labels.components.empty())
        PrintMessage(name + ": There are no labels.");
    zel::IsosurfaceGenerator generator;
    Generate(labels, generator);
    for (const zel::LabelSurface& surface : generator.GetSurfaces()) {
        const auto label = static_cast<Label>(surface.GetLabel());
        if (surface.GetTriangleCount() == 0) {
            PrintMessage(name + ": Label " + std::to_string(label) + " fills the frame and has no surface.");
            continue;
        }
        const std::string target = MeshFileName(order.prefix, label, frame, order.labels.size());
        try {
            zel::SaveMesh(target, surface, labels);
        } catch (const kep::IOException& error) {
            throw Failure(NameAndReason(target, error.GetText()));
        }
    }
}

} // namespace

std::string MeshFileName(const std::string& prefix, unsigned short label, std::size_t frame, std::size_t frameCount) {
    const std::string name = prefix + std::to_string(label);
    return (frameCount > 1 ? name + "_t" + std::to_string(frame) : name) + ".ply";
}

void ExportMeshes(const MeshExport& order) {
    for (std::size_t frame = 0; frame < order.labels.size(); ++frame)
        try {
            ExportFrame(frame, order);
        } catch (const std::bad_alloc&) {
            throw Failure(order.labels[frame] + ": Not enough memory.");
        }
}

} // namespace zelviewer
