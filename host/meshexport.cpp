#include "host/meshexport.h"

#include "host/message.h"
#include "host/outputs.h"
#include "host/voxelsize.h"
#include "model/zel_isosurfacegenerator.h"
#include "model/zel_meshfile.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <new>
#include <string_view>

namespace zelviewer {

namespace {

using Label = unsigned short;
using Labels = kep::LabeledImage3d<Label, Label>;

constexpr std::string_view frameMark = "_t";
constexpr std::string_view meshEnding = ".ply";

/// Takes digits off the front of a text. @return whether there was one
bool TakeDigits(std::string_view& text) {
    const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
    text.remove_prefix(count);
    return count > 0;
}

/// Whether a mesh's name may have this behind the prefix: "7.ply" or "7_t0.ply".
bool IsBehindPrefix(std::string_view rest) {
    if (!TakeDigits(rest))
        return false;
    if (!rest.starts_with(frameMark))
        return rest == meshEnding;
    rest.remove_prefix(frameMark.size());
    return TakeDigits(rest) && rest == meshEnding;
}

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
        throw Failure(NameAndReason(name, error));
    }
}

void SetVoxelSize(Labels& labels, const std::string& name, const MeshExport& order) {
    if (order.resolution && labels.GetResolution().IsDefined())
        PrintMessage(name + ": The file tells its voxel size; --resolution is not used.");
    labels.SetResolution(CompleteResolution(labels.GetResolution(), order.resolution));
    if (!labels.GetResolution().IsDefined())
        PrintMessage(name + ": The voxel size is not known; the meshes count in pixels. Use --resolution.");
}

void Generate(const Labels& labels, bool closed, zel::IsosurfaceGenerator& generator) {
    std::map<Label, std::size_t> toSurface;
    for (const auto& [label, component] : labels.components)
        toSurface.emplace(label, toSurface.size());
    const kep::Vector3d<std::size_t> size = labels.GetSize();
    const kep::Vector3d<float> cell = kep::PixelsToMicrons(kep::Vector3d<std::size_t>(1, 1, 1), labels.GetResolution());
    const auto generate =
        closed ? &zel::IsosurfaceGenerator::GenerateClosedSurfaces : &zel::IsosurfaceGenerator::GenerateSurfaces;
    (generator.*generate)(labels.begin(), toSurface, size.x, size.y, size.z, cell.x, cell.y, cell.z);
}

void ExportFrame(std::size_t frame, const MeshExport& order, const OutputRules& rules) {
    const std::string& name = order.labels[frame];
    Labels labels = ReadLabels(name, order);
    const kep::Vector3d<std::size_t> size = labels.GetSize();
    if (!order.closed && (size.x < 2 || size.y < 2 || size.z < 2))
        throw Failure(name + ": A flat frame has no surfaces: meshes need two voxels or more along each axis. Use "
                             "--close-meshes.");
    SetVoxelSize(labels, name, order);
    if (labels.components.empty())
        PrintMessage(name + ": There are no labels.");
    zel::IsosurfaceGenerator generator;
    Generate(labels, order.closed, generator);
    for (const zel::LabelSurface& surface : generator.GetSurfaces()) {
        const auto label = static_cast<Label>(surface.GetLabel());
        if (surface.GetTriangleCount() == 0) {
            PrintMessage(name + ": Label " + std::to_string(label) + " fills the frame and has no surface.");
            continue;
        }
        const std::string target = MeshFileName(order.prefix, label, frame, order.labels.size());
        // Seen again now, for folders that cannot be listed beforehand, and for files that were put there since.
        if (const std::string refusal = rules.RefusalOf(target, {std::string(meshEnding)}); !refusal.empty())
            throw Failure(refusal);
        try {
            zel::SaveMesh(target, surface, labels);
        } catch (const kep::IOException& error) {
            throw Failure(NameAndReason(target, error));
        }
    }
}

} // namespace

std::string MeshFileName(const std::string& prefix, unsigned short label, std::size_t frame, std::size_t frameCount) {
    std::string name = prefix + std::to_string(label);
    if (frameCount > 1)
        name.append(frameMark).append(std::to_string(frame));
    return name.append(meshEnding);
}

std::vector<std::string> FindMeshFiles(const std::string& prefix) {
    const std::size_t folderLength = prefix.rfind('/') + 1; // 0 without a folder
    const std::string folder = prefix.substr(0, folderLength);
    const std::string start = prefix.substr(folderLength);
    std::vector<std::string> files;
    std::error_code notListed;
    std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, notListed);
    for (; !notListed && entry != std::filesystem::directory_iterator(); entry.increment(notListed)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(start) && IsBehindPrefix(std::string_view(name).substr(start.size())))
            files.push_back(folder + name);
    }
    return files;
}

void ExportMeshes(const MeshExport& order) {
    const OutputRules rules(order.labels, order.replaces);
    for (std::size_t frame = 0; frame < order.labels.size(); ++frame)
        try {
            ExportFrame(frame, order, rules);
        } catch (const std::bad_alloc&) {
            throw Failure(order.labels[frame] + ": Not enough memory.");
        }
}

} // namespace zelviewer
