#include "histogram/zel_histogram.h"

#include <fstream>
#include <locale>
#include <new>
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

} // namespace

template <typename T>
bool Histogram<T>::Load(const wxString& fileName) {
    std::ifstream in(fileName.fn_str());
    in.imbue(std::locale::classic());
    if (!in || !ReadTypeName(in, typeName<T>))
        return false;
    std::size_t n = 0, first = 0, last = 0;
    T left{}, right{};
    if (!ReadNumber(in, n, false) || !ReadNumber(in, first, false) || !ReadNumber(in, last, false) ||
        !ReadCenter(in, left) || !ReadCenter(in, right) || first > last || last >= n)
        return false;
    try {
        Init(left, right, n);
    } catch (const std::bad_alloc&) {
        return false;
    }
    for (std::size_t i = first; i <= last; ++i) {
        if (!ReadCounter(in, bins[i]))
            return false;
    }
    return true;
}

template <typename T>
bool Histogram<T>::Save(const wxString& fileName) const {
    if (empty())
        return false;
    std::ofstream out(fileName.fn_str());
    if (!out)
        return false;
    out.imbue(std::locale::classic());
    const std::size_t first = FindFirstNonZero();
    const std::size_t last = bins[first] == 0 ? first : FindLastNonZero();
    out << typeName<T> << '\n' << count << ' ' << first << ' ' << last << " \n";
    out << static_cast<Written<T>>(GetLeftCenter()) << ' ' << static_cast<Written<T>>(GetRightCenter()) << '\n';
    for (std::size_t i = first; i <= last; ++i)
        out << bins[i] << ' ';
    out.close();
    return static_cast<bool>(out);
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template ZEL_EXPORT bool Histogram<T>::Load(const wxString&);                                                      \
    template ZEL_EXPORT bool Histogram<T>::Save(const wxString&) const;
ZEL_HISTOGRAM_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

} // namespace zel
