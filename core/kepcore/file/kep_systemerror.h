#pragma once

// Private to the library.

#include <cstring>
#include <string>

namespace kep::detail {

/// What an errno means, in English whatever the locale, since texts of exceptions are UTF-8 and strerror's need not be.
inline std::string SystemReason(int error) {
    const char* text = strerrordesc_np(error);
    return text != nullptr ? text : "Unknown error";
}

} // namespace kep::detail
