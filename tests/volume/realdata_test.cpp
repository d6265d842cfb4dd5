#include "image/kep.h"
#include "tests/volume/twin_comparison.h"

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

namespace {

TEST(RealLabels, GiveTheTwinsMeshesAndAreClosedInsideTheFrame) {
    const std::filesystem::path folder = std::filesystem::path(ZEL_TEST_DATA) / "tiff/labels-3d";
    if (!std::filesystem::is_directory(folder))
        GTEST_SKIP() << "no real labels in " << folder;
    std::size_t closed = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        SCOPED_TRACE(entry.path().filename());
        kep::LabeledImage3d<unsigned short, unsigned short> labels;
        labels.ReadImage(entry.path().c_str(), nullptr, false, -1, nullptr, nullptr);
        labels.CreateRegionsOfLabels(labels);
        const kep::Vector3d<std::size_t> size = labels.GetSize();
        const Volume volume{size.x, size.y, size.z, {labels.begin(), labels.end()}};
        ExpectAsLiterally(volume, volume.MapLabels(), {0.3F, 0.3F, 1});

        zel::IsosurfaceGenerator generator;
        Generate(generator, volume, volume.MapLabels());
        EXPECT_EQ(generator.GetSurfaces().size(), labels.components.size());
        for (const zel::LabelSurface& surface : generator.GetSurfaces()) {
            if (labels.components.at(static_cast<unsigned short>(surface.GetLabel())).border)
                continue;
            EXPECT_TRUE(GetShape(surface.GetIndices(), surface.GetTriangleCount()).closed)
                << "label " << surface.GetLabel();
            ++closed;
        }
    }
    EXPECT_GT(closed, 0U) << "no label lies inside";
}

} // namespace
