#pragma once

// Private to the library: names of the files that a save writes before it renames them, and what can be told by them.

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace kep::detail {

/// Who writes a temporary file.
struct Writer {
    std::string machine;       ///< the host's name and a mark of the running system, without hyphens
    pid_t process = 0;         ///< numbers come again
    std::uint64_t started = 0; ///< when the process did, in the system's ticks since its start; 0 is not known

    friend bool operator==(const Writer&, const Writer&) = default;
};

/// This process. The mark in its machine's name comes from the running system and its space of process numbers, since
/// two machines on a shared disk can have one name, and a container that of its host.
/// @throws std::bad_alloc
Writer GetThisWriter();

/// The writer's process runs on this machine: one that has its number by now is another one. True if it can't be told.
bool IsRunning(const Writer& writer);

/// Name of a temporary file, e.g. ".cells-desk.5f3a9c01-1234-567890-0.tif": one that listings hide, with the stem and
/// suffix of its target, both cut where the name would be too long for a folder.
/// @param suffix  with its dot, or empty
/// @param number  of the process's files
std::string MakeTemporaryName(std::string_view stem, std::string_view suffix, const Writer& writer, unsigned number);

/// The writer that a name tells, if it is that of a temporary file of this target.
std::optional<Writer> ReadTemporaryName(std::string_view name, std::string_view stem, std::string_view suffix);

/// Nobody is going to rename this file. One of this machine is judged by its process; nothing is known of others but
/// the age of their files.
/// @param age      seconds since something was written
/// @param machine  this one's name as in Writer
bool IsLeftover(const Writer& writer, std::time_t age, std::string_view machine);

} // namespace kep::detail
