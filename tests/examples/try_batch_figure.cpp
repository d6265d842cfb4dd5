// Runs the program named on the command line on a file of its own, without a display, and looks at the figure.

#include "watching.h"

#include <wx/init.h>
#include <wx/log.h>

#include <cstdlib>
#include <iostream>
#include <string>

namespace watching {

void Fail(const char* what) {
    std::cerr << what << std::endl;
    std::_Exit(1);
}

} // namespace watching

using watching::Fail;

int main(int argc, char** argv) {
    if (argc != 2)
        Fail("which program?");
    const wxInitializer toolkit;
    const wxLogNull quiet;
    mor::Image4d<unsigned short> image;
    image.SetResolution(kep::Resolution(2, 2, 1)); // XY of 100 x 60 pixels; z is 2 pixels a voxel
    image.MakeRoom(100, 60, 10, 1);
    std::size_t i = 0;
    for (unsigned short& voxel : *image.GetImage(0))
        voxel = static_cast<unsigned short>(i++ % 100 < 50 ? 10 : 4000);
    image.SaveSequence("halves", 3, ".tif", 0, 0);
    const std::string command = "env -u DISPLAY '" + std::string(argv[1]) + "' halves000.tif figure.tif";
    if (std::system(command.c_str()) != 0)
        Fail("the program fails");
    kep::Image3d<kep::RGB_generic<unsigned char>> figure;
    figure.ReadImage("figure.tif", nullptr, false, -1, nullptr, nullptr);
    if (figure.GetSizeX() != 100 + 4 + 20 || figure.GetSizeY() != 60 + 4 + 20)
        Fail("the figure has another size");
    using Colour = kep::RGB_generic<unsigned char>;
    if (figure.GetVoxel(20, 30, 0) != Colour(0, 0, 0) || figure.GetVoxel(80, 30, 0) != Colour(255, 255, 255) ||
        figure.GetVoxel(20, 70, 0) != Colour(0, 0, 0) || figure.GetVoxel(80, 80, 0) != Colour(255, 255, 255))
        Fail("the figure does not show the image");
    if (std::system(("env -u DISPLAY '" + std::string(argv[1]) + "' nothing.tif other.tif").c_str()) == 0)
        Fail("a file that is not there is no failure");
    return 0;
}
