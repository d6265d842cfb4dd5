#include "image/zel_stringfile.h"

#include <string>

namespace zel {

void LoadwxString(wxString& s, std::istream& in) {
    s.clear();
    in >> std::ws;
    const bool quoted = in.peek() == '"';
    if (quoted)
        in.get();
    constexpr int end = std::char_traits<char>::eof();
    std::string bytes;
    for (int c = in.peek(); c != end && c != '\n'; c = in.peek()) {
        in.get();
        if (quoted ? c == '"' : c == ' ' || c == '\t')
            break;
        bytes += static_cast<char>(c);
    }
    s = wxString::FromUTF8(bytes.data(), bytes.size());
    if (s.empty())
        s = wxString(bytes.data(), wxConvISO8859_1, bytes.size());
}

void SavewxString(wxString& s, std::ostream& out, bool addBlank) {
    const std::string bytes = s.utf8_string();
    if (bytes.find(' ') == std::string::npos)
        out << bytes;
    else
        out << '"' << bytes << '"';
    if (addBlank)
        out << ' ';
}

} // namespace zel
