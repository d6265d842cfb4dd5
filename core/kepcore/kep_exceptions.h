#pragma once

#include "core/kepcore/kep_export.h"

#include <exception>
#include <string>

namespace kep {

/// Base of everything that the library throws on purpose. Holds one text, in UTF-8, made for the user.
class KEP_EXPORT LibException : public std::exception {
public:
    explicit LibException(std::string message);
    LibException(const LibException&) = default;
    LibException& operator=(const LibException&) = default;
    ~LibException() override;

    const std::string& GetText() const noexcept { return text; }
    const char* what() const noexcept override { return text.c_str(); }

    std::string text;
};

/// A call that the library refuses: thrown before anything has changed.
class KEP_EXPORT InternalException : public LibException {
public:
    explicit InternalException(std::string message);
    InternalException(const InternalException&) = default;
    InternalException& operator=(const InternalException&) = default;
    ~InternalException() override;
};

/// A file that could not be read or written. The text names the file, what was wrong and where.
class KEP_EXPORT IOException : public LibException {
public:
    explicit IOException(std::string message);
    IOException(const IOException&) = default;
    IOException& operator=(const IOException&) = default;
    ~IOException() override;
};

} // namespace kep
