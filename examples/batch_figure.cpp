// A figure of an image without a window or a display, by the steps that a viewer's windows go through.

#include "image/zel_image4d.h"
#include "mapping/zel_mapperfactory.h"
#include "mapping/zel_mappingmodule.h"
#include "model/zel_composition.h"
#include "model/zel_proportions.h"
#include "model/zel_slice.h"

#include <wx/init.h>
#include <wx/log.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace {

using Voxel = unsigned short;

/// One plane's picture on its way, which must live until the figure is composed.
struct Picture {
    kep::Image3d<Voxel> slice;
    zel::ColourBuffer colours{0, 0};
    std::vector<zel::Colour> turned;
};

/// The three cuts through the middle of the first frame, in true proportions.
zel::Sheet MakeFigure(const mor::Image4d<Voxel>& image, const zel::zel_Mapper<Voxel>& mapper) {
    zel::View view;
    view.Open({image.GetOffset(), image.GetSize(), image.GetResolution()});
    view.options.baseScale = view.scale = zel::ChooseScale(image.GetResolution()).scale;
    // Room for the whole image: twice the largest window on each side, as XY may take no more than half.
    zel::Size room;
    for (const zel::Plane& plane : zel::planes) {
        const zel::Size full = view.GetFullSize(plane);
        room = {std::max(room.x, 2 * full.x + 2), std::max(room.y, 2 * full.y + 2)};
    }
    const auto windows = view.Arrange(room, 0);

    zel::PerPlane<Picture> pictures;
    zel::PerPlane<zel::PictureSource> seen;
    zel::PerPlane<bool> isIn;
    for (const zel::Plane& plane : zel::planes) {
        Picture& picture = pictures[plane.type];
        const zel::Rect& window = (*windows)[plane.type];
        zel::CutSlice(view, plane, {window.width, window.height}, *image.GetImage(0), picture.slice, picture.colours);
        mapper.Map(picture.slice.GetFirstVoxelAddr(), picture.colours);
        const zel::SeenPicture turned = zel::TurnPicture(
            plane, view.options, picture.colours.data, {picture.colours.width, picture.colours.height}, picture.turned);
        seen[plane.type] = {turned.pixels, turned.size};
        isIn[plane.type] = true;
    }
    return zel::ComposeView(seen, isIn, 4);
}

} // namespace

/// batch_figure IMAGE FIGURE.tif
int main(int argc, char** argv) try {
    if (argc != 3)
        throw std::runtime_error("batch_figure IMAGE FIGURE.tif");
    const wxInitializer toolkit; // strings and events only: no display is opened
    wxLog::SetLogLevel(wxLOG_Warning);
    wxArrayString files;
    files.Add(wxString::FromUTF8(argv[1]));
    mor::Image4d<Voxel> image;
    image.ReadSequence(files, false);
    const std::unique_ptr<zel::zel_MappingModule<Voxel>> mapping(zel::zel_CreateMapperForType<Voxel>(nullptr, image));
    mapping->SetPercentilStretch();
    MakeFigure(image, *mapping).SaveImage(argv[2], kep::FF_BY_NAME, true, nullptr);
    return 0;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
}
