#pragma once

// Private to the library: the sentences with which files are refused, each in one place.

#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace kep::detail {

/// What an exception says of a file, with its name and without.
struct FileSentence {
    std::string text;
    std::string fileName;
    std::string reason;
};

/// Puts a file's name into a sentence: "The voxel type", " of ", " is not supported.". The tie and the name go where
/// the name is not wanted; with nothing before them the sentence then begins with "The file".
/// @param operation  that refuses, e.g. "ReadImage"
FileSentence MakeFileSentence(std::string_view operation, std::string_view before, std::string_view tie,
                              std::string fileName, std::string_view after);

// All of these throw an IOException.

/// A file that ReadImage does not take, by a sentence as above.
[[noreturn]] void ThrowCannotRead(std::string_view before, std::string_view tie, const std::string& fileName,
                                  std::string_view after);
[[noreturn]] void ThrowDamaged(const std::string& fileName, const std::string& what);
/// @param type  what its voxels are
[[noreturn]] void ThrowNotSupported(const std::string& fileName, const std::string& type);
/// A file that can't be opened.
/// @param error  an errno; EISDIR for a folder, EINVAL for what else is no plain file
[[noreturn]] void ThrowCannotOpen(const std::string& fileName, int error);
/// A number of channels that a frame can't have.
[[noreturn]] void ThrowChannels(const std::string& fileName, std::size_t channels);
/// More than one frame: several channels, several time points, or both.
[[noreturn]] void ThrowManyFrames(const std::string& fileName, std::size_t channels, std::size_t times);
/// A frame that is asked for and not there. Counted from 0.
[[noreturn]] void ThrowNoSuchFrame(const std::string& fileName, std::size_t channel, std::size_t time,
                                   std::size_t channels, std::size_t times);
/// @param what  of which the file holds several, in the plural
[[noreturn]] void ThrowNotOneFrame(const std::string& fileName, std::size_t count, std::string_view what);
[[noreturn]] void ThrowCannotWrite(const std::string& fileName, const std::string& reason);

/// @param sentence  what to say; nothing, if there was no memory even for that
[[noreturn]] void ThrowOutOfMemory(FileSentence&& sentence);

/// Calls `read` and returns what it does, with lack of memory turned into an IOException that names the file. Memory
/// may stay out, so its text is made before; where it does not come so far, the exception says less and takes none.
template <typename Read>
auto ReadWithinMemory(const char* fileName, const Read& read) {
    FileSentence sentence;
    try {
        sentence = MakeFileSentence("ReadImage", "Not enough memory", " for ", fileName, ".");
        return read();
    } catch (const std::bad_alloc&) {
        ThrowOutOfMemory(std::move(sentence));
    } catch (const std::length_error&) {
        ThrowOutOfMemory(std::move(sentence));
    }
}

} // namespace kep::detail
