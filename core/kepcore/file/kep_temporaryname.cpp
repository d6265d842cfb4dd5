#include "core/kepcore/file/kep_temporaryname.h"

#include "core/kepcore/convert/kep_number.h"
#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/file/kep_systemcalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace kep::detail {

namespace {

constexpr std::time_t staleAge = 3600; // seconds
constexpr std::size_t longestHost = HOST_NAME_MAX;
constexpr std::size_t markDigits = 8;
constexpr std::size_t longestSuffix = 32;
/// Behind a hyphen each: host, dot and mark; process; start; number.
constexpr std::size_t longestWords = (1 + longestHost + 1 + markDigits) + (1 + 10) + (1 + 20) + (1 + 10);
constexpr std::size_t longestStem = NAME_MAX - 1 - longestWords - longestSuffix; // 1 for the dot that hides it

std::string_view Cut(std::string_view text, std::size_t longest) {
    return text.substr(0, FindUtf8Cut(text, longest));
}

std::string Prefix(std::string_view stem) {
    return std::string(".").append(Cut(stem, longestStem)).append("-");
}

/// Takes what stands in front of the next hyphen, and the hyphen with it.
std::string_view TakeWord(std::string_view& text) {
    const std::string_view word = text.substr(0, text.find('-'));
    text.remove_prefix(std::min(text.size(), word.size() + 1));
    return word;
}

/// A number and nothing else, without a sign.
template <typename Number>
bool Parse(std::string_view word, Number& number) {
    const std::optional<Number> parsed = word.starts_with('-') ? std::nullopt : ParseWhole<Number>(word);
    number = parsed.value_or(number);
    return parsed.has_value();
}

/// The beginning of a file of the system's, which tells no length.
std::string_view ReadSystemFile(const char* name, std::array<char, 1024>& to) {
    const int descriptor = Uninterrupted([&] { return ::open(name, O_RDONLY | O_CLOEXEC); });
    if (descriptor < 0)
        return {};
    const ssize_t bytes = ReadFully(descriptor, 0, to.data(), to.size());
    ::close(descriptor);
    return {to.data(), bytes > 0 ? static_cast<std::size_t>(bytes) : 0};
}

/// A mark of the running system and of the spaces in which this process's number and start count.
std::string MakeMark() {
    std::uint32_t mark = 2166136261U; // FNV-1a
    const auto mix = [&mark](std::string_view text) {
        for (const char c : text)
            mark = (mark ^ static_cast<unsigned char>(c)) * 16777619U;
    };
    std::array<char, 1024> text{};
    mix(ReadSystemFile("/proc/sys/kernel/random/boot_id", text));
    for (const char* const space : {"/proc/self/ns/pid", "/proc/self/ns/time"}) {
        const ssize_t length = ::readlink(space, text.data(), text.size());
        mix({text.data(), length > 0 ? static_cast<std::size_t>(length) : 0});
    }
    std::string digits(markDigits, '0');
    for (std::size_t i = 0; i < markDigits; ++i)
        digits[i] = "0123456789abcdef"[mark >> (4 * (markDigits - 1 - i)) & 0xFU];
    return digits;
}

std::string MakeMachine() {
    std::array<char, longestHost + 1> host{};
    if (::gethostname(host.data(), host.size()) != 0)
        host[0] = '\0';
    std::string machine = host.data();
    for (char& c : machine) {
        if (c == '-')
            c = '+'; // a hyphen parts the words of the name
        else if (c == '/')
            c = '_';
    }
    return machine + "." + MakeMark();
}

struct Process {
    bool hasEnded = false; ///< and waits for its parent to notice
    std::uint64_t started = 0;
};

/// What the system tells of a process, if it does.
std::optional<Process> FindProcess(pid_t number) {
    std::array<char, 1024> buffer{};
    std::string_view text = ReadSystemFile(("/proc/" + std::to_string(number) + "/stat").c_str(), buffer);
    // The name in brackets may hold anything; behind it come words, the first of which counts as the third of all.
    const std::size_t name = text.rfind(')');
    if (name == std::string_view::npos || name + 2 > text.size())
        return std::nullopt;
    text.remove_prefix(name + 2);
    constexpr std::size_t firstWord = 3, stateWord = 3, threadsWord = 20, startWord = 22;
    Process process;
    bool isZombie = false;
    for (std::size_t i = firstWord; i <= startWord && !text.empty(); ++i) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(text.size(), word.size() + 1));
        if (i == stateWord)
            isZombie = word == "Z" || word == "X";
        else if (i == threadsWord)
            process.hasEnded = isZombie && (word == "0" || word == "1"); // others may outlive the first thread
        else if (i == startWord && Parse(word, process.started))
            return process;
    }
    return std::nullopt;
}

} // namespace

Writer GetThisWriter() {
    const pid_t process = ::getpid();
    const std::optional<Process> found = FindProcess(process);
    return {MakeMachine(), process, found ? found->started : 0};
}

bool IsRunning(const Writer& writer) {
    if (::kill(writer.process, 0) != 0 && errno == ESRCH)
        return false;
    const std::optional<Process> found = FindProcess(writer.process);
    if (!found)
        return true;
    return !found->hasEnded && (writer.started == 0 || writer.started == found->started);
}

std::string MakeTemporaryName(std::string_view stem, std::string_view suffix, const Writer& writer, unsigned number) {
    return Prefix(stem)
        .append(writer.machine)
        .append("-")
        .append(std::to_string(writer.process))
        .append("-")
        .append(std::to_string(writer.started))
        .append("-")
        .append(std::to_string(number))
        .append(Cut(suffix, longestSuffix));
}

std::optional<Writer> ReadTemporaryName(std::string_view name, std::string_view stem, std::string_view suffix) {
    const std::string prefix = Prefix(stem);
    const std::string_view end = Cut(suffix, longestSuffix);
    if (!name.starts_with(prefix) || !name.substr(prefix.size()).ends_with(end))
        return std::nullopt;
    name.remove_prefix(prefix.size());
    name.remove_suffix(end.size());
    Writer writer;
    unsigned number = 0;
    writer.machine = TakeWord(name);
    const std::string_view process = TakeWord(name);
    const std::string_view started = TakeWord(name);
    if (writer.machine.empty() || !Parse(process, writer.process) || writer.process <= 0 ||
        !Parse(started, writer.started) || !Parse(name, number))
        return std::nullopt;
    return writer;
}

bool IsLeftover(const Writer& writer, std::time_t age, std::string_view machine) {
    return writer.machine == machine ? !IsRunning(writer) : age > staleAge;
}

} // namespace kep::detail
