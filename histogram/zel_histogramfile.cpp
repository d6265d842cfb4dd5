#include "image/kep.h"
#include "model/zel_histogram.h"

#include <wx/string.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <istream>
#include <locale>
#include <new>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>
#include <type_traits>

namespace zel {

namespace {

/// The first line of a file, the same whatever a compiler calls its types.
template <typename T>
constexpr std::string_view typeName = "";
template <>
constexpr std::string_view typeName<unsigned char> = "unsigned char";
template <>
constexpr std::string_view typeName<unsigned short> = "unsigned short";
template <>
constexpr std::string_view typeName<int> = "int";
template <>
constexpr std::string_view typeName<float> = "float";

/// How a center stands in a file: a number also where T is a character to the streams.
template <typename T>
using Written = std::conditional_t<std::is_same_v<T, unsigned char>, int, T>;

/// What any file may promise: 2^25 bins, which take 384 MB with centers of 4 bytes. A longer file may promise as many
/// as it has room for counters.
constexpr std::uint64_t leastLimit = std::uint64_t{1} << 25;

/// The bytes of a plain file for a stream.
class FileBuffer final : public std::streambuf {
public:
    explicit FileBuffer(const kep::PlainFile& from) : file(from) {}

protected:
    int_type underflow() override {
        const std::ptrdiff_t got = file.ReadAt(at, block.data(), block.size());
        if (got < 0)
            throw std::ios_base::failure("reading failed"); // which the stream turns into its bad state
        at += static_cast<std::uint64_t>(got);
        setg(block.data(), block.data(), block.data() + got);
        return got > 0 ? traits_type::to_int_type(block[0]) : traits_type::eof();
    }

private:
    const kep::PlainFile& file;
    std::uint64_t at = 0;
    std::array<char, 65536> block;
};

bool ReadTypeName(std::istream& in, std::string_view expected) {
    char line[100];
    in.getline(line, sizeof line); // a longer line fails
    if (!in)
        return false;
    std::string_view name(line);
    if (name.ends_with('\r'))
        name.remove_suffix(1);
    return name == expected;
}

/// @param negative  whether the number may be below 0; the streams turn -5 into a large unsigned number
template <typename N>
bool ReadNumber(std::istream& in, N& number, bool negative) {
    in >> std::ws;
    if (!negative && in.peek() == '-')
        return false;
    return static_cast<bool>(in >> number);
}

template <typename T>
bool ReadCenter(std::istream& in, T& center) {
    Written<T> number{};
    if (!ReadNumber(in, number, std::is_signed_v<T>))
        return false;
    center = static_cast<T>(number);
    return true;
}

/// Reads up to the next blank or the end. Line breaks are passed over, also between digits.
bool ReadCounter(std::istream& in, std::size_t& counter) {
    constexpr int mostDigits = 19; // as many as any counter of so many digits fits
    std::size_t number = 0;
    int digits = 0;
    char c = 0;
    while (in.get(c) && c != ' ') {
        if (c == '\r' || c == '\n')
            continue;
        if (c < '0' || c > '9' || ++digits > mostDigits)
            return false;
        number = number * 10 + static_cast<std::size_t>(c - '0');
    }
    if (digits == 0 || in.bad())
        return false;
    counter = number;
    return true;
}

/// What stands in front of the counters.
template <typename T>
struct Layout {
    std::size_t count = 0;
    std::size_t first = 0; ///< the stored stretch
    std::size_t last = 0;
    T left{}; ///< centers
    T right{};
};

template <typename T>
bool ReadLayout(std::istream& in, Layout<T>& layout) {
    return ReadTypeName(in, typeName<T>) && ReadNumber(in, layout.count, false) &&
           ReadNumber(in, layout.first, false) && ReadNumber(in, layout.last, false) && ReadCenter(in, layout.left) &&
           ReadCenter(in, layout.right);
}

/// The layout makes sense, and a file of so many bytes can hold its counters, each with the blank behind it.
template <typename T>
bool IsSound(const Layout<T>& layout, std::uint64_t fileLength) {
    const std::uint64_t mostCounters = fileLength / 2;
    return layout.count <= std::max(leastLimit, mostCounters) && layout.first <= layout.last &&
           layout.last < layout.count && layout.last - layout.first + 1 <= mostCounters;
}

template <typename T>
std::string FormatLayout(const Layout<T>& layout) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << typeName<T> << '\n' << layout.count << ' ' << layout.first << ' ' << layout.last << " \n";
    out << static_cast<Written<T>>(layout.left) << ' ' << static_cast<Written<T>>(layout.right) << '\n';
    return std::move(out).str();
}

/// Writes each counter with a blank behind it.
void WriteCounters(kep::AtomicFile& file, const std::size_t* first, const std::size_t* last) {
    constexpr std::size_t longest = 21; // 20 digits and the blank
    std::array<char, 65536> block;
    char* const end = block.data() + block.size();
    char* to = block.data();
    const auto flush = [&] {
        file.Write(block.data(), static_cast<std::size_t>(to - block.data()));
        to = block.data();
    };
    for (const std::size_t* counter = first; counter <= last; ++counter) {
        if (static_cast<std::size_t>(end - to) < longest)
            flush();
        to = std::to_chars(to, end, *counter).ptr;
        *to++ = ' ';
    }
    flush();
}

} // namespace

template <typename T>
bool Histogram<T>::Load(const wxString& fileName) try {
    const kep::PlainFile file(fileName.fn_str());
    if (!file.IsOpen())
        return false;
    FileBuffer buffer(file);
    std::istream in(&buffer);
    in.imbue(std::locale::classic());
    Layout<T> layout;
    if (!ReadLayout(in, layout) || !IsSound(layout, file.GetLength()))
        return false;
    Init(layout.left, layout.right, layout.count);
    for (std::size_t i = layout.first; i <= layout.last; ++i) {
        if (!ReadCounter(in, bins[i]))
            return false;
    }
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

template <typename T>
bool Histogram<T>::Save(const wxString& fileName) const try {
    if (empty())
        return false;
    const wxCharBuffer name(fileName.fn_str());
    const std::size_t first = FindFirstNonZero();
    const std::size_t last = bins[first] == 0 ? first : FindLastNonZero();
    const std::string layout = FormatLayout(Layout<T>{count, first, last, GetLeftCenter(), GetRightCenter()});
    kep::AtomicFile file(name.data() != nullptr ? name.data() : "");
    file.Write(layout.data(), layout.size());
    WriteCounters(file, bins.get() + first, bins.get() + last);
    file.Commit();
    return true;
} catch (const kep::IOException&) {
    return false;
} catch (const std::bad_alloc&) {
    return false;
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template ZEL_EXPORT bool Histogram<T>::Load(const wxString&);                                                      \
    template ZEL_EXPORT bool Histogram<T>::Save(const wxString&) const;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
