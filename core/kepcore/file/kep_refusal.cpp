#include "core/kepcore/file/kep_refusal.h"

#include "core/kepcore/kep_exceptions.h"

namespace kep::detail {

namespace {

[[noreturn]] void Throw(FileSentence&& sentence) {
    throw IOException(std::move(sentence.text), std::move(sentence.fileName), std::move(sentence.reason));
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
