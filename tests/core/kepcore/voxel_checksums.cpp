// Reads image files and prints a checksum of each one's voxels, or why it was refused:
//   voxel_checksums SCRATCH-FOLDER CHANGES FILE-OR-FOLDER...
// Small files are also read CHANGES times with one byte changed, always the same ones. The first line is about fresh
// memory, so that whoever compares two runs sees that it held other bytes in each.

#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_imageinfo.h"

#include <algorithm>
#include <complex>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using kep::Image3d;
using kep::RGB_generic;
using kep::VoxelType;

constexpr std::uintmax_t largestToChange = 300000;

std::uint64_t Sum(const void* bytes, std::size_t count) {
    std::uint64_t sum = 14695981039346656037U;
    for (std::size_t i = 0; i < count; ++i)
        sum = (sum ^ static_cast<const unsigned char*>(bytes)[i]) * 1099511628211U;
    return sum;
}

std::string Print(std::uint64_t number) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(number));
    return text;
}

/// Checksum of memory that nobody has written.
std::uint64_t SumFreshMemory() {
    constexpr std::size_t bytes = 5000;
    void* fresh = std::malloc(bytes);
    asm volatile("" : "+r"(fresh)); // as far as the compiler knows, this writes it
    const std::uint64_t sum = Sum(fresh, bytes);
    std::free(fresh);
    return sum;
}

template <typename T>
std::string SumVoxels(const std::string& name) {
    const Image3d<T> whole(name.c_str(), nullptr, false, -1, nullptr, nullptr);
    std::string sums = Print(Sum(whole.begin(), whole.GetNumVoxels() * sizeof(T)));
    if (whole.GetNumVoxels() > std::size_t{1} << 20U)
        return sums;
    typename Image3d<T>::PixelBox box; // from a column beside the picture on, to one within
    box.offset = {-1, 1, 0};
    box.size = whole.GetSize();
    const Image3d<T> part(name.c_str(), &box, false, -1, nullptr, nullptr);
    return sums + ' ' + Print(Sum(part.begin(), part.GetNumVoxels() * sizeof(T)));
}

std::string SumVoxels(const std::string& name) {
    switch (kep::ReadImageInfo(name.c_str()).voxelType) {
    case VoxelType::Binary:
        return SumVoxels<bool>(name);
    case VoxelType::Gray8:
        return SumVoxels<unsigned char>(name);
    case VoxelType::Gray16:
        return SumVoxels<unsigned short>(name);
    case VoxelType::Int:
        return SumVoxels<int>(name);
    case VoxelType::UInt64:
        return SumVoxels<unsigned long long>(name);
    case VoxelType::Float:
        return SumVoxels<float>(name);
    case VoxelType::Double:
        return SumVoxels<double>(name);
    case VoxelType::RGB8:
        return SumVoxels<RGB_generic<unsigned char>>(name);
    case VoxelType::RGB16:
        return SumVoxels<RGB_generic<unsigned short>>(name);
    case VoxelType::Complex:
        return SumVoxels<std::complex<float>>(name);
    case VoxelType::DoubleComplex:
        return SumVoxels<std::complex<double>>(name);
    case VoxelType::Other:
        break;
    }
    return SumVoxels<bool>(name);
}

void PrintResult(const std::string& what, const std::string& name) {
    std::string result;
    try {
        result = SumVoxels(name);
    } catch (const kep::IOException& refusal) {
        result = refusal.GetText();
    }
    std::printf("%s: %s\n", what.c_str(), result.c_str());
}

std::string ReadBytes(const fs::path& name) {
    std::ifstream in(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A place in a file: in every other case near one of its ends, where directories and headers lie.
std::size_t PickPlace(std::size_t bytes, std::mt19937& random) {
    const std::size_t near = std::min<std::size_t>(bytes, 512);
    switch (random() % 4U) {
    case 0:
        return random() % near;
    case 1:
        return bytes - 1 - random() % near;
    default:
        return random() % bytes;
    }
}

/// Reads a file with one byte changed, several times. Files beside it with its stem come along.
void PrintChanged(const fs::path& file, unsigned changes, const fs::path& scratch) {
    const std::string bytes = ReadBytes(file);
    if (bytes.empty())
        return;
    const fs::path changed = scratch / file.filename();
    for (const auto& entry : fs::directory_iterator(file.parent_path())) {
        if (entry.path() != file && entry.path().stem() == file.stem() && file.extension() == ".ics")
            fs::copy_file(entry.path(), scratch / entry.path().filename(), fs::copy_options::overwrite_existing);
    }
    std::mt19937 random(static_cast<unsigned>(bytes.size()));
    for (unsigned i = 0; i < changes; ++i) {
        std::string other = bytes;
        const std::size_t at = PickPlace(bytes.size(), random);
        other[at] = static_cast<char>(random() & 0xFFU);
        fs::remove(changed); // some systems flush a file that is written over
        std::ofstream(changed, std::ios::binary) << other;
        PrintResult(file.string() + " with byte " + std::to_string(at) + " changed", changed.string());
    }
    fs::remove(changed);
}

std::vector<fs::path> ListFiles(const fs::path& from) {
    if (!fs::is_directory(from))
        return {from};
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(from)) {
        if (entry.is_regular_file() && entry.path().extension() != ".ids")
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3)
        return 2;
#ifndef __SANITIZE_ADDRESS__                                // the checker itself maps terabytes
    const rlimit limit{rlim_t{1} << 30U, rlim_t{1} << 30U}; // a changed byte may promise much
    ::setrlimit(RLIMIT_AS, &limit);
#endif
    std::printf("fresh memory: %s\n", Print(SumFreshMemory()).c_str());
    for (int i = 3; i < argc; ++i) {
        for (const fs::path& file : ListFiles(argv[i])) {
            PrintResult(file.string(), file.string());
            if (fs::file_size(file) <= largestToChange)
                PrintChanged(file, static_cast<unsigned>(std::atoi(argv[2])), argv[1]);
        }
    }
    return 0;
}
