#pragma once

// Private to the library: the frames of an ICS file with several channels or time points, in whichever order its axes
// run.

#include "core/kepcore/file/kep_file.h"
#include "core/kepcore/ics/kep_icsbyteorder.h"
#include "core/kepcore/ics/kep_icsdata.h"
#include "core/kepcore/ics/kep_icslayout.h"

#include <cstdint>
#include <memory>

namespace kep::detail {

/// The bytes of all voxels of a file by their places, whichever way they were packed.
class IcsStream {
public:
    /// As OpenIcsData.
    IcsStream(std::shared_ptr<const InputFile> from, IcsCompression packing, std::uint64_t start, std::uint64_t all);

    /// Going back in packed data unpacks them from the beginning.
    /// @throws IOException damaged file
    void ReadAt(std::uint64_t place, std::byte* to, std::size_t count);
    /// Reads packed data to their end, the first time that it is called: only there it shows whether they are whole and
    /// as they were.
    void Check();

private:
    void Restart();
    void Read(std::byte* to, std::size_t count);
    void SkipTo(std::uint64_t place);

    std::shared_ptr<const InputFile> file;
    IcsCompression compression;
    std::uint64_t at;
    std::uint64_t bytes;
    std::unique_ptr<IcsData> data; ///< none after a failure
    std::uint64_t position = 0;    ///< of what `data` delivers next
    bool isChecked = false;
};

/// @param header  of each frame, complete
std::unique_ptr<FrameSet> MakeIcsFrames(FrameHeader&& header, FrameAxes&& axes, const IcsLayout& layout,
                                        const IcsByteOrder& order, IcsStream&& stream);

} // namespace kep::detail
