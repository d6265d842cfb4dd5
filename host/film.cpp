#include "host/film.h"

#include "host/message.h"
#include "image/kep.h"

#include <wx/imaggif.h>
#include <wx/mstream.h>
#include <wx/palette.h>
#include <wx/quantize.h>

#include <algorithm>
#include <array>
#include <new>
#include <vector>

namespace zelviewer {

namespace {

constexpr std::size_t mostColours = 256;

/// The different colours, in no order that matters; nothing if there are more than a palette holds.
std::vector<zel::Colour> FindColours(const zel::Sheet& picture) {
    const auto key = [](const zel::Colour& colour) { return colour.red << 16 | colour.green << 8 | colour.blue; };
    std::vector<bool> seen(std::size_t{1} << 24);
    std::vector<zel::Colour> colours;
    for (const zel::Colour& colour : picture) {
        const auto number = static_cast<std::size_t>(key(colour));
        if (seen[number])
            continue;
        if (colours.size() == mostColours)
            return {};
        seen[number] = true;
        colours.push_back(colour);
    }
    return colours;
}

wxPalette PaletteOf(const std::vector<zel::Colour>& colours) {
    std::array<unsigned char, mostColours> red{}, green{}, blue{};
    for (std::size_t i = 0; i < colours.size(); ++i) {
        red[i] = colours[i].red;
        green[i] = colours[i].green;
        blue[i] = colours[i].blue;
    }
    return {static_cast<int>(colours.size()), red.data(), green.data(), blue.data()};
}

/// A picture with a palette, which the format needs.
wxImage Paletted(const zel::Sheet& picture) {
    static_assert(sizeof(zel::Colour) == 3);
    wxImage image(static_cast<int>(picture.GetSizeX()), static_cast<int>(picture.GetSizeY()), false);
    if (!image.IsOk())
        throw std::bad_alloc();
    std::copy(picture.begin(), picture.end(), reinterpret_cast<zel::Colour*>(image.GetData()));
    if (const std::vector<zel::Colour> colours = FindColours(picture); !colours.empty()) {
        image.SetPalette(PaletteOf(colours));
        return image;
    }
    wxImage reduced;
    // The toolkit's own flags add 20 colours of another system's, more than a palette holds.
    if (!wxQuantize::Quantize(image, reduced, static_cast<int>(mostColours), nullptr,
                              wxQUANTIZE_FILL_DESTINATION_IMAGE))
        throw std::bad_alloc();
    return reduced;
}

} // namespace

void Film::Add(const zel::Sheet& picture) {
    constexpr std::size_t longest = 65535;
    if (picture.GetSizeX() > longest || picture.GetSizeY() > longest)
        throw Failure("A picture of " + std::to_string(picture.GetSizeX()) + " x " +
                      std::to_string(picture.GetSizeY()) + " pixels is too large for a film.");
    m_pictures.Add(Paletted(picture));
}

void Film::Save(const std::string& name, int picturesASecond) const {
    wxMemoryOutputStream bytes;
    wxGIFHandler handler;
    if (!handler.SaveAnimation(m_pictures, &bytes, false, 1000 / picturesASecond))
        throw kep::IOException("The pictures cannot be made into a GIF file.");
    kep::AtomicFile file(name);
    file.Write(bytes.GetOutputStreamBuffer()->GetBufferStart(), static_cast<std::size_t>(bytes.GetLength()));
    file.Commit();
}

} // namespace zelviewer
