// What stood in memory before must not show up in what the program prints and saves.

#include "image/kep.h"
#include "tests/support/old_memory.h"

#include <complex>
#include <random>

namespace {

/// A frame of random voxels. @return its name
template <typename T>
std::string SaveRandom(const std::string& name, std::size_t x, std::size_t y, std::size_t z) {
    kep::Image3d<T> frame;
    frame.MakeRoom(x, y, z);
    std::mt19937 random(3);
    for (T& voxel : frame.GetVoxelData()) {
        const auto level = static_cast<unsigned char>(random() % 5U);
        if constexpr (requires { voxel.red; })
            voxel = {level, static_cast<unsigned char>(40 * level), 9};
        else
            voxel = static_cast<T>(level);
    }
    frame.SetResolution(kep::Resolution(10.0F, 9.0F, 2.0F));
    frame.SaveImage(name.c_str(), kep::FF_BY_NAME, true, nullptr);
    return name;
}

TEST(OldMemory, IsNotInWhatTheProgramPrintsAndSaves) {
    const ScratchFolder folder;
    const std::string gray = SaveRandom<unsigned short>(folder / "gray.tif", 31, 17, 5);
    const std::string colour = SaveRandom<kep::RGB_generic<unsigned char>>(folder / "colour.ics", 31, 17, 5);
    const std::string complex = SaveRandom<std::complex<float>>(folder / "complex.tif", 31, 17, 5);
    const std::string exact = SaveRandom<float>(folder / "float.tif", 31, 17, 5);
    const std::string labels = SaveRandom<unsigned short>(folder / "labels.ics", 31, 17, 5);

    std::string commands = "cd '" + folder.GetPath() +
                           "'; unset DISPLAY WAYLAND_DISPLAY; export XDG_CONFIG_HOME=\"$PWD\"; '" + VOXEL_CHECKSUMS +
                           "' . 0";
    std::size_t count = 0;
    const auto run = [&](const std::string& arguments, const std::string& result) {
        commands += "; '" ZELVIEWER "' --force " + arguments + " && cksum " + result;
        ++count;
    };
    for (const char* const ending : {"png", "tif", "ics"}) {
        run("--save-view v." + std::string(ending) + " gray.tif --labels labels.ics", "v." + std::string(ending));
        run("--save-gallery g." + std::string(ending) + " colour.ics", "g." + std::string(ending));
    }
    run("--save-view v.png --part amplitude complex.tif", "v.png");
    run("--save-view v.png --stretch equalize --voxels float.tif", "v.png");
    run("--save-view v.png --stretch percentil", "v.png"); // the synthetic cells
    run("--save-film f.gif gray.tif gray.tif", "f.gif");
    run("--export-meshes m --labels labels.ics", "m1.ply m2.ply m3.ply m4.ply");
    count += 3;
    commands += "; '" ZELVIEWER "' --info --json gray.tif colour.ics complex.tif > info; cksum info";
    ++count;
    EXPECT_EQ(RunWithOldMemory(commands).size(), 1 + count);
}

} // namespace
