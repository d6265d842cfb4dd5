#include "model/zel_filenames.h"

#include <algorithm>
#include <cstddef>

namespace zel {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Length of the run of digits that a text begins with.
std::size_t CountDigits(std::string_view text) {
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), &IsDigit) - text.begin());
}

std::string_view WithoutZeros(std::string_view digits) {
    return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
}

/// Below 0, 0 or above 0, as the number a is smaller than b, equal or larger. They may have any length.
int CompareNumbers(std::string_view a, std::string_view b) {
    const std::string_view x = WithoutZeros(a);
    const std::string_view y = WithoutZeros(b);
    if (x.size() != y.size())
        return x.size() < y.size() ? -1 : 1;
    return x.compare(y);
}

/// A name that was taken apart at one of its numbers.
struct NumberedName {
    std::string_view before;
    std::string_view digits;
    std::string_view after;
};

/// The name's numbers, but for those in its ending.
std::vector<NumberedName> FindNumbers(std::string_view name) {
    std::vector<NumberedName> numbers;
    const std::size_t end = std::min(name.rfind('.'), name.size());
    for (std::size_t at = 0; at < end;) {
        const std::size_t digits = CountDigits(name.substr(at, end - at));
        if (digits > 0)
            numbers.push_back({name.substr(0, at), name.substr(at, digits), name.substr(at + digits)});
        at += std::max<std::size_t>(digits, 1);
    }
    return numbers;
}

/// The digits in the place of a name's number, if another name differs there only; else nothing.
std::string_view TakeDigits(const NumberedName& name, std::string_view other) {
    const std::size_t around = name.before.size() + name.after.size();
    if (other.size() <= around || !other.starts_with(name.before) || !other.ends_with(name.after))
        return {};
    const std::string_view digits = other.substr(name.before.size(), other.size() - around);
    return CountDigits(digits) == digits.size() ? digits : std::string_view();
}

/// The number is written with zeros up to a width, if it needs any.
bool IsPadded(std::string_view digits, std::size_t width) {
    return digits.size() == width || (digits.size() > width && digits.front() != '0');
}

/// The longest sequence along one number of a name.
std::vector<std::string> FindAlong(const NumberedName& number, const std::vector<std::string>& names) {
    struct Member {
        std::string_view digits;
        const std::string* name;
    };
    std::vector<Member> members;
    for (const std::string& name : names) {
        if (const std::string_view digits = TakeDigits(number, name); !digits.empty())
            members.push_back({digits, &name});
    }
    std::sort(members.begin(), members.end(),
              [](const Member& a, const Member& b) { return CompareNumbers(a.digits, b.digits) < 0; });
    // A number without zeros in front may be one of "9, 10" or of "09, 10".
    std::vector<std::string> longest;
    const std::size_t widest = number.digits.size();
    for (std::size_t width = number.digits.front() == '0' ? widest : 1; width <= widest; ++width) {
        std::vector<std::string> sequence;
        for (const Member& member : members) {
            if (IsPadded(member.digits, width))
                sequence.push_back(*member.name);
        }
        if (sequence.size() > longest.size())
            longest = std::move(sequence);
    }
    return longest;
}

} // namespace

bool ComesBefore(std::string_view a, std::string_view b) {
    std::string_view x = a;
    std::string_view y = b;
    while (!x.empty() && !y.empty()) {
        if (IsDigit(x.front()) && IsDigit(y.front())) {
            const std::size_t xDigits = CountDigits(x);
            const std::size_t yDigits = CountDigits(y);
            if (const int order = CompareNumbers(x.substr(0, xDigits), y.substr(0, yDigits)); order != 0)
                return order < 0;
            x.remove_prefix(xDigits);
            y.remove_prefix(yDigits);
            continue;
        }
        if (x.front() != y.front())
            return static_cast<unsigned char>(x.front()) < static_cast<unsigned char>(y.front());
        x.remove_prefix(1);
        y.remove_prefix(1);
    }
    if (x.empty() != y.empty())
        return x.empty();
    return a.size() != b.size() ? a.size() < b.size() : a < b; // they differ in zeros in front of numbers
}

void SortFileNames(std::vector<std::string>& names) {
    std::sort(names.begin(), names.end(), &ComesBefore);
}

std::vector<std::string> FindSequence(const std::string& fileName, const std::vector<std::string>& names) {
    std::vector<std::string> all = names;
    if (std::find(all.begin(), all.end(), fileName) == all.end())
        all.push_back(fileName);
    std::vector<std::string> longest{fileName};
    for (const NumberedName& number : FindNumbers(fileName)) {
        std::vector<std::string> sequence = FindAlong(number, all);
        if (sequence.size() > 1 && sequence.size() >= longest.size())
            longest = std::move(sequence);
    }
    return longest;
}

} // namespace zel
