// Reads image files and prints what each says of itself and checksums of its voxels, or why it was refused, and
// checksums of the files that it becomes when it is saved:
//   voxel_checksums SCRATCH-FOLDER CHANGES FILE-OR-FOLDER...
// In place of a file, "own" stands for files that it saves itself, of each voxel type and in each format.
// Small files alone are saved, and also read CHANGES times with one byte changed, always the same ones. The first line
// is about fresh memory, so that whoever compares two runs sees that it held other bytes in each.

#include "core/kepcore/kep_colourreader.h"
#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_fileaxes.h"
#include "core/kepcore/kep_framereader.h"
#include "core/kepcore/kep_image3d.h"
#include "core/kepcore/kep_imageinfo.h"
#include "tests/support/old_memory.h"
#include "tests/support/voxel_type.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using kep::Image3d;
using kep::RGB_generic;

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

/// A frame saved in each way, and checksums of the files.
template <typename T>
std::string SumSaved(const Image3d<T>& frame, const std::string& scratch) {
    std::string sums;
    for (const char* const suffix : {".tif", ".ics"})
        for (const bool compress : {false, true}) {
            const std::string saved = scratch + "/saved" + suffix;
            frame.SaveImage(saved.c_str(), kep::FF_BY_NAME, compress, nullptr);
            const std::string bytes = ReadBytes(saved);
            sums += ' ' + Print(Sum(bytes.data(), bytes.size()));
            fs::remove(saved);
        }
    return sums;
}

/// Checksums of each frame of a file with several, or of the one.
template <typename T>
std::string SumFrames(const std::string& name, kep::FrameReader& reader) {
    constexpr std::size_t most = 12;
    std::string sums;
    std::size_t count = 0;
    for (std::size_t time = 0; time < reader.GetAxes().times; ++time)
        for (std::size_t channel = 0; channel < reader.GetAxes().channels && count < most; ++channel, ++count) {
            Image3d<T> frame;
            reader.ReadFrame(channel, time, frame);
            sums += ' ' + Print(Sum(frame.begin(), frame.GetNumVoxels() * sizeof(T)));
        }
    if (reader.GetAxes().channels > 1) {
        Image3d<RGB_generic<unsigned short>> colours;
        kep::ColourReader(name.c_str(), {0, 1}).ReadFrame(0, colours);
        sums += ' ' + Print(Sum(colours.begin(), colours.GetNumVoxels() * sizeof(colours.GetVoxel(0))));
    }
    return sums;
}

std::string Describe(const kep::ImageInfo& info) {
    std::ostringstream text;
    text << info.format << ' ' << info.size.x << ' ' << info.size.y << ' ' << info.size.z << ' '
         << static_cast<int>(info.voxelType) << ' ' << info.storedType << ' ' << info.compression << ' '
         << info.fileSize << ' ' << info.dataFile << std::hexfloat;
    for (const kep::Vector3d<float>& place : {info.resolution.GetRes(), info.offset})
        text << ' ' << place.x << ' ' << place.y << ' ' << place.z;
    std::string entries;
    for (const auto& [key, value] : info.description)
        entries.append(key).append("=").append(value).append("\n");
    text << ' ' << Print(Sum(entries.data(), entries.size()));
    return std::move(text).str();
}

std::string Describe(const kep::FileAxes& axes) {
    std::ostringstream text;
    text << axes.channels << ' ' << axes.times << ' ' << axes.frameInterval.value_or(-1.0);
    for (const kep::ChannelInfo& channel : axes.channelInfos) {
        text << ' ' << channel.name;
        if (channel.colour)
            text << ' ' << int{channel.colour->red} << ' ' << int{channel.colour->green} << ' '
                 << int{channel.colour->blue};
    }
    if (axes.series)
        text << ' ' << axes.series->slices << ' ' << axes.series->channels << ' ' << axes.series->times;
    return std::move(text).str();
}

/// What an action returns, or why the file is refused.
template <typename Act>
std::string ResultOf(const Act& act) {
    try {
        return act();
    } catch (const kep::IOException& refusal) {
        return refusal.GetText();
    }
}

/// One line on a file: what it says of itself, its voxels as an image and as frames, or why each is refused.
void PrintResult(const std::string& what, const std::string& name) {
    std::string info;
    const std::string image = ResultOf([&] {
        const kep::ImageInfo found = kep::ReadImageInfo(name.c_str());
        info = Describe(found);
        return VisitVoxelType(found.voxelType, [&]<typename T>() { return SumVoxels<T>(name); });
    });
    const std::string frames = ResultOf([&] {
        kep::FrameReader reader(name.c_str());
        const std::string axes = Describe(reader.GetAxes());
        return axes + VisitVoxelType(reader.GetAxes().frame.voxelType,
                                     [&]<typename T>() { return SumFrames<T>(name, reader); });
    });
    std::printf("%s: %s; %s; %s\n", what.c_str(), info.c_str(), image.c_str(), frames.c_str());
}

/// The files that a file which can be read becomes when it is saved.
void PrintSaved(const std::string& name, const std::string& scratch) {
    const std::string sums = ResultOf([&] {
        return VisitVoxelType(kep::ReadImageInfo(name.c_str()).voxelType, [&]<typename T>() {
            return SumSaved(Image3d<T>(name.c_str(), nullptr, false, -1, nullptr, nullptr), scratch);
        });
    });
    std::printf("%s saved: %s\n", name.c_str(), sums.c_str());
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

/// Voxels that differ, and a description.
template <typename T>
Image3d<T> MakeFrame() {
    Image3d<T> frame;
    frame.MakeRoom(23, 11, 4);
    std::mt19937 random(5);
    for (T& voxel : frame.GetVoxelData()) {
        const auto level = static_cast<unsigned char>(random() & 0xFFU);
        if constexpr (requires { voxel.red; })
            voxel = {level, static_cast<unsigned char>(level / 2), 7};
        else
            voxel = static_cast<T>(level);
    }
    frame.SetResolution(kep::Resolution(10.0F, 9.5F, 2.0F));
    frame.SetOffset({1.0F, -2.5F, 0.125F});
    frame.SetDescription({{"author", "somebody"}, {"Software", "a program"}, {"note", "two\nlines"}});
    return frame;
}

/// Makes a folder of files in each format, packed and plain, of each voxel type.
fs::path MakeOwnFiles(const fs::path& scratch) {
    const fs::path folder = scratch / "own";
    fs::create_directories(folder);
    for (int type = 0; type < static_cast<int>(kep::VoxelType::Other); ++type)
        VisitVoxelType(static_cast<kep::VoxelType>(type), [&]<typename T>() {
            const Image3d<T> frame = MakeFrame<T>();
            for (const bool compress : {false, true})
                for (const char* const suffix : {".tif", ".ics"}) {
                    const std::string name = std::to_string(type) + (compress ? "_packed" : "") + suffix;
                    frame.SaveImage((folder / name).c_str(), kep::FF_BY_NAME, compress, nullptr);
                }
        });
    return folder;
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
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // the checker itself maps terabytes
    const rlimit limit{rlim_t{1} << 30U, rlim_t{1} << 30U};         // a changed byte may promise much
    ::setrlimit(RLIMIT_AS, &limit);
#endif
    PrintFreshMemory();
    for (int i = 3; i < argc; ++i) {
        const std::string from = argv[i];
        for (const fs::path& file : ListFiles(from == "own" ? MakeOwnFiles(argv[1]) : fs::path(from))) {
            PrintResult(file.string(), file.string());
            if (fs::file_size(file) > largestToChange)
                continue;
            PrintSaved(file.string(), argv[1]);
            PrintChanged(file, static_cast<unsigned>(std::atoi(argv[2])), argv[1]);
        }
    }
    return 0;
}
