#include "bench/support/scratch_folder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace {

class ScratchFolder {
public:
    ScratchFolder() : path((std::filesystem::temp_directory_path() / "zel-bench-XXXXXX").string()) {
        if (mkdtemp(path.data()) == nullptr)
            throw std::system_error(errno, std::generic_category(), path);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string path;
};

} // namespace

std::string GetScratchName(const std::string& fileName) {
    static const ScratchFolder folder;
    return folder.path + "/" + fileName;
}
