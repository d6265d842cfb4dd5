#include "core/kepcore/ics/kep_icsframe.h"

#include "core/kepcore/convert/kep_bytes.h"

#include <utility>

namespace kep::detail {

namespace {

class IcsFrame final : public FrameSource {
public:
    IcsFrame(FrameHeader frame, const IcsStrides& fileStrides, const IcsByteOrder& order,
             std::unique_ptr<IcsData> packed)
        : header(std::move(frame)), strides(fileStrides), byteOrder(order), data(std::move(packed)) {
        way = ChooseWay();
    }

    const FrameHeader& GetHeader() const override { return header; }

    void ReadSlices(std::size_t count, std::byte* to) override {
        const std::size_t bytes = header.GetSliceBytes();
        if (way == Way::AsTheyAre && byteOrder.IsNative()) {
            data->Read(to, count * bytes);
        } else {
            for (std::size_t i = 0; i < count; ++i) {
                ReadSlice(next + i, to + i * bytes);
                byteOrder.Apply(to + i * bytes, bytes);
            }
        }
        next += count;
        if (next == header.size.z)
            data->Finish();
    }

private:
    /// How slices come out of the file.
    enum class Way {
        AsTheyAre,   ///< they lie in the file as they are wanted
        SliceWise,   ///< the bytes of a slice lie together, but in another order
        PlaneWise,   ///< each component is a volume of its own, slice behind slice, and places can be read
        FromTheWhole ///< the bytes of a slice are spread over the file
    };

    Way ChooseWay() {
        const std::uint64_t components = static_cast<std::uint64_t>(header.components);
        const std::uint64_t plane = header.size.x * header.size.y;
        const auto lies = [](std::uint64_t size, std::uint64_t stride, std::uint64_t wanted) {
            return size == 1 || stride == wanted; // along one voxel there is nowhere to go
        };
        if (lies(header.size.z, strides.z, plane * components)) {
            const bool wanted = lies(components, strides.colour, 1) && lies(header.size.x, strides.x, components) &&
                                lies(header.size.y, strides.y, components * header.size.x);
            return wanted ? Way::AsTheyAre : Way::SliceWise;
        }
        if (strides.z == plane && strides.colour == plane * header.size.z && data->MoveTo(0))
            return Way::PlaneWise;
        return Way::FromTheWhole;
    }

    void ReadSlice(std::size_t z, std::byte* to) {
        const std::size_t sampleBytes = header.sample.GetSampleBytes();
        switch (way) {
        case Way::AsTheyAre:
            data->Read(to, header.GetSliceBytes());
            return;
        case Way::SliceWise:
            data->Read(TakeBuffer(header.GetSliceBytes()), header.GetSliceBytes());
            GatherSlice(buffer.get(), strides, header, to);
            return;
        case Way::PlaneWise:
            ReadPlanes(z, to);
            return;
        case Way::FromTheWhole:
            if (!buffer) {
                const std::size_t whole = header.GetSliceBytes() * header.size.z;
                data->Read(TakeBuffer(whole), whole);
            }
            GatherSlice(buffer.get() + z * strides.z * sampleBytes, strides, header, to);
            return;
        }
    }

    void ReadPlanes(std::size_t z, std::byte* to) {
        const std::size_t sampleBytes = header.sample.GetSampleBytes();
        const std::size_t plane = header.size.x * header.size.y;
        const auto components = static_cast<std::size_t>(header.components);
        std::byte* planes = TakeBuffer(header.GetSliceBytes());
        for (std::size_t c = 0; c < components; ++c) {
            data->MoveTo((c * strides.colour + z * strides.z) * sampleBytes);
            data->Read(planes + c * plane * sampleBytes, plane * sampleBytes);
        }
        IcsStrides together = strides;
        together.colour = plane;
        GatherSlice(planes, together, header, to);
    }

    /// The memory stays untouched until data come: a packed file may promise more than it holds.
    std::byte* TakeBuffer(std::size_t bytes) {
        if (!buffer)
            buffer = std::make_unique_for_overwrite<std::byte[]>(bytes);
        return buffer.get();
    }

    FrameHeader header;
    IcsStrides strides;
    IcsByteOrder byteOrder;
    std::unique_ptr<IcsData> data;
    Way way = Way::AsTheyAre;
    std::unique_ptr<std::byte[]> buffer;
    std::size_t next = 0;
};

} // namespace

void GatherSlice(const std::byte* from, const IcsStrides& strides, const FrameHeader& frame, std::byte* to) {
    const auto components = static_cast<std::size_t>(frame.components);
    const std::size_t sampleBytes = frame.sample.GetSampleBytes();
    for (std::size_t y = 0; y < frame.size.y; ++y) {
        for (std::size_t c = 0; c < components; ++c)
            CopyApart(sampleBytes, from + (y * strides.y + c * strides.colour) * sampleBytes, strides.x, frame.size.x,
                      to + (y * frame.size.x * components + c) * sampleBytes, components);
    }
}

std::unique_ptr<FrameSource> MakeIcsFrame(FrameHeader&& header, const IcsStrides& strides, const IcsByteOrder& order,
                                          std::unique_ptr<IcsData> data) {
    return std::make_unique<IcsFrame>(std::move(header), strides, order, std::move(data));
}

} // namespace kep::detail
