#include "core/kepcore/kep_exceptions.h"

#include <cstddef>
#include <utility>

namespace kep {

LibException::LibException(std::string message) : text(std::move(message)) {}
LibException::~LibException() = default;

std::string_view LibException::GetSentence() const noexcept {
    constexpr std::string_view mark = "(): ";
    const std::string_view whole = text;
    const std::size_t call = whole.find(mark);
    return call < whole.find(' ') ? whole.substr(call + mark.size()) : whole;
}

InternalException::InternalException(std::string message) : LibException(std::move(message)) {}
InternalException::~InternalException() = default;

IOException::IOException(std::string message) : LibException(std::move(message)), reason(GetSentence()) {}
IOException::IOException(std::string message, std::string file, std::string why)
    : LibException(std::move(message)), fileName(std::move(file)), reason(std::move(why)) {}
IOException::~IOException() = default;

} // namespace kep
