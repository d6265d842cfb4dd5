#include "core/kepcore/ics/kep_icsfiles.h"

#include "core/kepcore/convert/kep_text.h"
#include "core/kepcore/file/kep_path.h"
#include "core/kepcore/kep_exceptions.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

namespace kep::detail {

namespace {

/// How the data of an ".ids" file are packed. Some programs pack it and say so in the header, others unpack it and
/// leave the header as it was.
IcsCompression CompressionOf(const InputFile& file, IcsCompression promised) {
    std::array<unsigned char, 2> head{};
    if (promised == IcsCompression::None || file.ReadAt(0, head.data(), head.size()) < head.size() || head[0] != 0x1F)
        return IcsCompression::None;
    return head[1] == 0x8B ? IcsCompression::Gzip : head[1] == 0x9D ? IcsCompression::Compress : IcsCompression::None;
}

constexpr std::array<const char*, 3> dataSuffixes = {".ids", ".ids.gz", ".ids.Z"};

/// Finds the data of a header of version 1, which have its name with another suffix.
/// @return the name, and the number of its suffix; no name if there is none
std::pair<std::string, std::size_t> FindDataFile(const std::string& headerName) {
    namespace fs = std::filesystem;
    const std::string stem = RemoveIcsSuffix(headerName);
    std::error_code error;
    for (std::size_t i = 0; i < dataSuffixes.size(); ++i)
        if (fs::exists(stem + dataSuffixes[i], error))
            return {stem + dataSuffixes[i], i};

    // The suffix may be in capitals: one walk through the folder.
    const std::string folder = GetFolder(stem);
    const std::string start = stem.substr(folder.size());
    std::pair<std::string, std::size_t> found("", dataSuffixes.size());
    fs::directory_iterator entry(folder.empty() ? "." : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(start))
            continue;
        const std::string suffix = ToLowerAscii(name.substr(start.size()));
        for (std::size_t i = 0; i < found.second; ++i)
            if (suffix == ToLowerAscii(dataSuffixes[i]))
                found = {folder + name, i};
    }
    return found;
}

/// Opens the file with the voxels of a header. The header is the one that the user knows of, so it is named as well.
std::unique_ptr<InputFile> OpenDataFile(const std::string& headerName, const std::string& dataName) {
    try {
        return std::make_unique<InputFile>(dataName);
    } catch (const IOException&) {
        ThrowDamaged(headerName, "the file '" + GetBaseName(dataName) + "' with its voxels cannot be opened");
    }
}

} // namespace

IcsVoxelFile FindIcsVoxels(const InputFile& headerFile, const IcsHeader& header) {
    const std::string& name = headerFile.GetName();
    IcsVoxelFile found{nullptr, header.bytes, header.compression};
    if (header.version == 1) {
        const auto [dataName, suffix] = FindDataFile(name);
        if (dataName.empty())
            ThrowDamaged(name, "the .ids file with its voxels is missing");
        found.file = OpenDataFile(name, dataName);
        found.at = 0;
        found.compression = suffix == 0   ? CompressionOf(*found.file, header.compression)
                            : suffix == 1 ? IcsCompression::Gzip
                                          : IcsCompression::Compress;
    } else if (header.sourceFile) {
        const std::string& source = *header.sourceFile;
        if (source.find('/') != std::string::npos)
            ThrowDamaged(name, "its voxels are said to lie in another folder");
        found.file = OpenDataFile(name, GetFolder(name) + source);
        found.at = header.sourceOffset;
    }
    if (found.file && found.file->IsSame(headerFile) && found.at < header.bytes)
        ThrowDamaged(name, "its voxels are said to lie in its header");
    return found;
}

std::string RemoveIcsSuffix(const std::string& name) {
    constexpr std::string_view suffix = ".ics";
    return EndsWithIgnoringCase(name, suffix) ? name.substr(0, name.size() - suffix.size()) : name;
}

} // namespace kep::detail
