#pragma once

#include "core/kepcore/kep_export.h"

#include <exception>
#include <string>
#include <string_view>

namespace kep {

/// Base of everything that the library throws on purpose. Holds one text, in UTF-8, made for the user.
class KEP_EXPORT LibException : public std::exception {
public:
    explicit LibException(std::string message); ///< the whole text, in UTF-8
    /// @{
    /// Copies hold the same text.
    LibException(const LibException&) = default;
    LibException& operator=(const LibException&) = default;
    /// @}
    ~LibException() override;

    const std::string& GetText() const noexcept { return text; } ///< in UTF-8, as the constructor got it
    /// The text as C code knows it; valid as long as the exception, and until its text changes.
    const char* what() const noexcept override { return text.c_str(); }

    /// The text without the operation in front of it: "The image is too large." of "MakeRoom(): The image is too
    /// large.". All of it if it names none. Valid as long as the exception, and until its text changes.
    std::string_view GetSentence() const noexcept;

    std::string text; ///< in UTF-8; whoever catches it may add to it before passing it on
};

/// A call that the library refuses: thrown before anything has changed.
class KEP_EXPORT InternalException : public LibException {
public:
    explicit InternalException(std::string message); ///< the whole text, in UTF-8
    /// @{
    /// Copies hold the same text.
    InternalException(const InternalException&) = default;
    InternalException& operator=(const InternalException&) = default;
    /// @}
    ~InternalException() override;
};

/// A file that could not be read or written. The text names the file, what was wrong and where. Whoever names the file
/// in a way of his own takes the two apart:
///
///     text       "ReadImage(): The voxel type of 'a.tif' is not supported: CMYK."
///     file name  "a.tif"
///     reason     "The voxel type is not supported: CMYK."
class KEP_EXPORT IOException : public LibException {
public:
    /// Of no file in particular: the file name stays empty, and the reason is the sentence of the text.
    explicit IOException(std::string message);
    /// @param message   the whole text
    /// @param fileName  as the caller of the operation gave it, in the file system's encoding
    /// @param reason    the sentence of the text as it reads without the file's name
    IOException(std::string message, std::string fileName, std::string reason);
    /// @{
    /// Copies hold the same text, file name and reason.
    IOException(const IOException&) = default;
    IOException& operator=(const IOException&) = default;
    /// @}
    ~IOException() override;

    /// The file that the text is about, which can be another one than was asked for: the voxels of "a.ics" may lie in
    /// "a.ids". Empty if it is about none.
    const std::string& GetFileName() const noexcept { return fileName; }
    /// What was wrong, in a sentence without operation and file name.
    const std::string& GetReason() const noexcept { return reason; }

private:
    std::string fileName;
    std::string reason;
};

} // namespace kep
