#include "mapping/zel_palette.h"

#include "mapping/text/zel_firstlines.h"

#include <wx/tokenzr.h>

#include <new>
#include <optional>

namespace zel {

namespace {

bool ReadColour(const wxString& line, Palette::value_type& colour) {
    wxStringTokenizer tokens(line, " :,");
    long numbers[3];
    for (long& number : numbers)
        if (!tokens.GetNextToken().ToLong(&number, 10))
            return false;
    colour = {static_cast<unsigned char>(numbers[0]), static_cast<unsigned char>(numbers[1]),
              static_cast<unsigned char>(numbers[2])};
    return true;
}

} // namespace

bool LoadPalette(Palette& palette, const wxString& file_name) try {
    return ReadPalette(palette, file_name).empty();
} catch (const std::bad_alloc&) {
    return false;
}

wxString ReadPalette(Palette& palette, const wxString& file_name) {
    constexpr std::size_t mostColours = 256;
    constexpr std::size_t longestLine = 4096; // behind the third number is nothing that counts
    std::optional<std::vector<wxString>> lines = ReadFirstLines(file_name, mostColours, longestLine);
    if (!lines)
        return "The file can't be read.";
    palette.resize(lines->size());
    for (std::size_t i = 0; i < palette.size(); ++i) {
        if (!ReadColour((*lines)[i].Trim(true).Trim(false), palette[i]))
            return wxString::Format("Line %zu has no three numbers for red, green and blue.", i + 1);
    }
    return "";
}

} // namespace zel
