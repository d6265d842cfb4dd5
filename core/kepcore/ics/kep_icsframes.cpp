#include "core/kepcore/ics/kep_icsframes.h"

#include "core/kepcore/ics/kep_icsframe.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kep::detail {

namespace {

/// One frame of several.
class ChosenFrame final : public FrameSource {
public:
    /// @param sample  the frame's first one in the file
    ChosenFrame(const FrameHeader& frame, const IcsStrides& fileStrides, const IcsByteOrder& order, IcsStream& from,
                std::uint64_t sample)
        : header(frame), strides(fileStrides), byteOrder(order), stream(from), first(sample) {
        const Vector3d<std::size_t>& size = header.size;
        sliceSpan = (size.x - 1) * strides.x + (size.y - 1) * strides.y + 1;
        frameSpan = sliceSpan + (size.z - 1) * strides.z;
        const bool isRow = size.x == 1 || strides.x == 1;
        isSlicePlain = isRow && (size.y == 1 || strides.y == size.x);
    }

    const FrameHeader& GetHeader() const override { return header; }

    void ReadSlices(std::size_t count, std::byte* to) override {
        const std::size_t bytes = header.GetSliceBytes();
        const bool isRunPlain = isSlicePlain && (header.size.z == 1 || strides.z == sliceSpan);
        if (isRunPlain) {
            stream.ReadAt((first + next * strides.z) * GetSampleBytes(), to, count * bytes);
        } else {
            for (std::size_t i = 0; i < count; ++i)
                ReadSlice(next + i, to + i * bytes);
        }
        byteOrder.Apply(to, count * bytes);
        next += count;
        if (next == header.size.z)
            stream.Check();
    }

private:
    std::size_t GetSampleBytes() const { return header.sample.GetSampleBytes(); }

    void ReadSlice(std::size_t z, std::byte* to) {
        const std::uint64_t slice = z * strides.z;
        const bool isApart = header.size.z == 1 || strides.z >= sliceSpan;
        if (isApart && isSlicePlain) {
            stream.ReadAt((first + slice) * GetSampleBytes(), to, header.GetSliceBytes());
        } else if (isApart) {
            Fill((first + slice), sliceSpan);
            GatherSlice(buffer.get(), strides, header, to);
        } else { // slices lie within each other, so they are read together
            if (!buffer)
                Fill(first, frameSpan);
            GatherSlice(buffer.get() + slice * GetSampleBytes(), strides, header, to);
        }
    }

    /// The memory stays untouched until data come: a packed file may promise more than it holds.
    void Fill(std::uint64_t sample, std::uint64_t samples) {
        if (!buffer)
            buffer = std::make_unique_for_overwrite<std::byte[]>(samples * GetSampleBytes());
        stream.ReadAt(sample * GetSampleBytes(), buffer.get(), samples * GetSampleBytes());
    }

    FrameHeader header;
    IcsStrides strides;
    IcsByteOrder byteOrder;
    IcsStream& stream;
    std::uint64_t first;
    std::uint64_t sliceSpan = 1; ///< samples from the first to the last one of a slice, with what lies between
    std::uint64_t frameSpan = 1;
    bool isSlicePlain = false; ///< nothing lies between, and x is fastest
    std::unique_ptr<std::byte[]> buffer;
    std::size_t next = 0;
};

class IcsFrames final : public FrameSet {
public:
    IcsFrames(FrameHeader&& frame, FrameAxes&& frameAxes, const IcsLayout& fileLayout, const IcsByteOrder& order,
              IcsStream&& from)
        : header(std::move(frame)),
          axes(std::move(frameAxes)),
          layout(fileLayout),
          byteOrder(order),
          stream(std::move(from)) {}

    const FrameHeader& GetHeader() const override { return header; }
    const FrameAxes& GetAxes() const override { return axes; }

    std::unique_ptr<FrameSource> Open(std::size_t channel, std::size_t time) override {
        return std::make_unique<ChosenFrame>(header, layout.strides, byteOrder, stream,
                                             layout.FindFrame(channel, time));
    }

private:
    FrameHeader header;
    FrameAxes axes;
    IcsLayout layout;
    IcsByteOrder byteOrder;
    IcsStream stream;
};

} // namespace

IcsStream::IcsStream(std::shared_ptr<const InputFile> from, IcsCompression packing, std::uint64_t start,
                     std::uint64_t all)
    : file(std::move(from)), compression(packing), at(start), bytes(all) {
    Restart();
}

void IcsStream::Restart() {
    data = OpenIcsData(file, compression, at, bytes);
    position = 0;
}

/// Reads what comes next. After a failure nobody knows what that would be, so the next call begins anew.
void IcsStream::Read(std::byte* to, std::size_t count) {
    std::unique_ptr<IcsData> open = std::move(data);
    open->Read(to, count);
    position += count;
    data = std::move(open);
}

void IcsStream::ReadAt(std::uint64_t place, std::byte* to, std::size_t count) {
    SkipTo(place);
    Read(to, count);
}

void IcsStream::SkipTo(std::uint64_t place) {
    if (!data)
        Restart();
    if (data->MoveTo(place)) {
        position = place;
        return;
    }
    if (place < position)
        Restart();
    std::vector<std::byte> skipped(static_cast<std::size_t>(std::min<std::uint64_t>(place - position, 1U << 18U)));
    while (position < place) {
        const std::size_t part = static_cast<std::size_t>(std::min<std::uint64_t>(place - position, skipped.size()));
        Read(skipped.data(), part);
    }
}

void IcsStream::Check() {
    if (isChecked || compression == IcsCompression::None)
        return;
    SkipTo(bytes);
    std::unique_ptr<IcsData> open = std::move(data);
    open->Finish();
    isChecked = true;
    data = std::move(open);
}

std::unique_ptr<FrameSet> MakeIcsFrames(FrameHeader&& header, FrameAxes&& axes, const IcsLayout& layout,
                                        const IcsByteOrder& order, IcsStream&& stream) {
    return std::make_unique<IcsFrames>(std::move(header), std::move(axes), layout, order, std::move(stream));
}

} // namespace kep::detail
