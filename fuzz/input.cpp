#include "fuzz/input.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/mman.h>
#include <unistd.h>

namespace fuzz {

namespace {

namespace fs = std::filesystem;

class Scratch {
public:
    Scratch() : path((fs::temp_directory_path() / "zel-fuzz-XXXXXX").string()) {
        Require(::mkdtemp(path.data()) != nullptr, "there is a folder for temporary files");
    }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    std::string path;
};

} // namespace

MemoryFile::MemoryFile()
    : descriptor(::memfd_create("input", MFD_CLOEXEC)), name("/proc/self/fd/" + std::to_string(descriptor)) {
    Require(descriptor >= 0, "a file in memory can be made");
}

MemoryFile::MemoryFile(const std::string& fileName)
    : descriptor(::open(fileName.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)), name(fileName) {
    Require(descriptor >= 0, "a temporary file can be made");
}

MemoryFile::~MemoryFile() {
    ::close(descriptor);
}

void MemoryFile::Set(std::string_view bytes) {
    const auto length = static_cast<ssize_t>(bytes.size());
    Require(::ftruncate(descriptor, 0) == 0 && ::pwrite(descriptor, bytes.data(), bytes.size(), 0) == length,
            "a temporary file can be written");
}

const std::string& GetScratchFolder() {
    static const Scratch folder;
    return folder.path;
}

void Require(bool holds, const char* promise) {
    if (holds)
        return;
    std::fprintf(stderr, "Broken promise: %s\n", promise);
    std::abort();
}

void Numbers::TakeBytes(void* to, std::size_t count) {
    const std::size_t there = std::min(count, bytes.size());
    if (there > 0)
        std::memcpy(to, bytes.data(), there);
    bytes.remove_prefix(there);
}

} // namespace fuzz
