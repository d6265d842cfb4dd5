#include "core/kepcore/file/kep_refusal.h"

#include "core/kepcore/file/kep_systemerror.h"
#include "core/kepcore/kep_exceptions.h"

#include <cerrno>

namespace kep::detail {

namespace {

[[noreturn]] void Throw(FileSentence&& sentence) {
    throw IOException(std::move(sentence.text), std::move(sentence.fileName), std::move(sentence.reason));
}

/// "1 channel and 3 time points"
std::string CountFrames(std::size_t channels, std::size_t times) {
    const auto count = [](std::size_t number, const char* what) {
        return std::to_string(number).append(" ").append(what).append(number == 1 ? "" : "s");
    };
    return count(channels, "channel") + " and " + count(times, "time point");
}

} // namespace

FileSentence MakeFileSentence(std::string_view operation, std::string_view before, std::string_view tie,
                              std::string fileName, std::string_view after) {
    // Each in one piece of memory, as there may be little left.
    constexpr std::string_view call = "(): ";
    const std::string_view start = before.empty() ? "The file" : before;
    FileSentence sentence;
    sentence.text.reserve(operation.size() + call.size() + before.size() + tie.size() + fileName.size() + 2 +
                          after.size());
    sentence.text.append(operation).append(call).append(before).append(tie);
    sentence.text.append("'").append(fileName).append("'").append(after);
    sentence.reason.reserve(start.size() + after.size());
    sentence.reason.append(start).append(after);
    sentence.fileName = std::move(fileName);
    return sentence;
}

void ThrowCannotRead(std::string_view before, std::string_view tie, const std::string& fileName,
                     std::string_view after) {
    Throw(MakeFileSentence("ReadImage", before, tie, fileName, after));
}

void ThrowDamaged(const std::string& fileName, const std::string& what) {
    ThrowCannotRead("The file", " ", fileName, " is damaged: " + what);
}

void ThrowNotSupported(const std::string& fileName, const std::string& type) {
    ThrowCannotRead("The voxel type", " of ", fileName, " is not supported: " + type + ".");
}

void ThrowCannotOpen(const std::string& fileName, int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        ThrowCannotRead("There is no such file", " as ", fileName, ".");
    case EISDIR:
        Throw({"ReadImage(): '" + fileName + "' is a folder, not a file.", fileName, "It is a folder, not a file."});
    case EINVAL:
    case ENXIO: // a socket
        Throw({"ReadImage(): '" + fileName + "' is not a plain file.", fileName, "It is not a plain file."});
    case EACCES:
    case EPERM:
        ThrowCannotRead("No permission to read the file", " ", fileName, ".");
    default:
        ThrowCannotRead("Cannot open the file", " ", fileName, ": " + SystemReason(error) + ".");
    }
}

void ThrowManyFrames(const std::string& fileName, std::size_t channels, std::size_t times) {
    if (times == 1)
        ThrowChannels(fileName, channels);
    if (channels == 1)
        ThrowNotOneFrame(fileName, times, "time points");
    ThrowCannotRead("", "", fileName, " holds " + CountFrames(channels, times) + "; one frame holds one of each.");
}

void ThrowNoSuchFrame(const std::string& fileName, std::size_t channel, std::size_t time, std::size_t channels,
                      std::size_t times) {
    ThrowCannotRead("", "", fileName,
                    " has no channel " + std::to_string(channel + 1) + " at time point " + std::to_string(time + 1) +
                        "; it holds " + CountFrames(channels, times) + ".");
}

void ThrowChannels(const std::string& fileName, std::size_t channels) {
    ThrowCannotRead("", "", fileName, " holds " + std::to_string(channels) + " channels; one frame holds one.");
}

void ThrowNotOneFrame(const std::string& fileName, std::size_t count, std::string_view what) {
    ThrowCannotRead("", "", fileName,
                    " holds " +
                        std::to_string(count).append(" ").append(what).append("; one file must hold one frame."));
}

void ThrowCannotWrite(const std::string& fileName, const std::string& reason) {
    Throw(MakeFileSentence("SaveImage", "Cannot write the file", " ", fileName, ": " + reason));
}

void ThrowOutOfMemory(FileSentence&& sentence) {
    if (sentence.text.empty())
        throw IOException("Out of memory."); // short enough to need no memory of its own
    Throw(std::move(sentence));
}

} // namespace kep::detail
