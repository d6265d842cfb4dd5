#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

/// A fresh folder under the system's folder for temporary files, removed with everything in it at the end.
class ScratchFolder {
public:
    ScratchFolder() {
        path = (std::filesystem::temp_directory_path() / "zel-test-XXXXXX").string();
        if (::mkdtemp(path.data()) == nullptr)
            throw std::runtime_error("no scratch folder under " + path);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& GetPath() const { return path; }
    std::string operator/(const std::string& name) const { return path + "/" + name; }

    /// The names in the folder, sorted.
    std::vector<std::string> List() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::string path;
};

inline std::string ReadBytes(const std::string& fileName) {
    std::ifstream in(fileName, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void WriteBytes(const std::string& fileName, const std::string& bytes) {
    // Some file systems flush a file that was emptied and filled anew, which thousands of times takes minutes.
    std::filesystem::remove(fileName);
    std::ofstream out(fileName, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(out.good()) << fileName;
}
