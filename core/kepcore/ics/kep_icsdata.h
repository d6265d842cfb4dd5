#pragma once

// Private to the library: the voxels of an ICS file as the bytes that they are, whichever way they were packed.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsheader.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace kep::detail {

class IcsData {
public:
    IcsData() = default;
    IcsData(const IcsData&) = delete;
    IcsData& operator=(const IcsData&) = delete;
    virtual ~IcsData() = default;

    /// Delivers the next bytes. @throws IOException damaged file; after that it must not be asked again
    virtual void Read(std::byte* to, std::size_t bytes) = 0;
    /// Called behind the last byte: nothing may follow, and the checksum must be right. @throws IOException
    virtual void Finish() = 0;
    /// Lets Read go on at another place, counted from the first voxel.
    /// @return false, with nothing done, where the data are packed and have no places
    virtual bool MoveTo(std::uint64_t place);
};

/// Opens the voxels, and refuses at once a file that cannot hold as many.
/// @param at     place in the file where they begin
/// @param bytes  of all voxels, unpacked
/// @throws IOException damaged file
std::unique_ptr<IcsData> OpenIcsData(std::shared_ptr<const InputFile> file, IcsCompression compression,
                                     std::uint64_t at, std::uint64_t bytes);

} // namespace kep::detail
