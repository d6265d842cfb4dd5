#include "core/kepcore/kep_exceptions.h"

#include <utility>

namespace kep {

LibException::LibException(std::string message) : text(std::move(message)) {}
LibException::~LibException() = default;

InternalException::InternalException(std::string message) : LibException(std::move(message)) {}
InternalException::~InternalException() = default;

IOException::IOException(std::string message) : LibException(std::move(message)) {}
IOException::~IOException() = default;

} // namespace kep
