#include "core/kepcore/ics/kep_icslayout.h"

#include "core/kepcore/frame/kep_extent.h"

namespace kep::detail {

SampleType GetIcsSampleType(const IcsHeader& header, const std::string& fileName) {
    const int bytes = header.bits / 8;
    switch (header.format) {
    case IcsFormat::Integer:
        if (bytes <= 8)
            return {header.isSigned ? NumberKind::Signed : NumberKind::Unsigned, bytes};
        ThrowNotSupported(fileName, std::to_string(header.bits) + "-bit integer");
    case IcsFormat::Real:
        if (bytes == 4 || bytes == 8)
            return {NumberKind::Float, bytes};
        ThrowNotSupported(fileName, std::to_string(header.bits) + "-bit float");
    case IcsFormat::Complex:
        break;
    }
    if (bytes != 8 && bytes != 16)
        ThrowNotSupported(fileName, std::to_string(header.bits) + "-bit complex");
    return {NumberKind::ComplexFloat, bytes / 2};
}

std::uint64_t IcsLayout::FindFrame(std::uint64_t channel, std::uint64_t time) const {
    std::uint64_t sample = time * timeStride;
    for (const Axis& axis : channelAxes) {
        sample += channel % axis.size * axis.stride;
        channel /= axis.size;
    }
    return sample;
}

IcsLayout FindIcsLayout(const IcsHeader& header, const std::string& fileName, FrameHeader& frame) {
    IcsLayout layout;
    frame.size = {1, 1, 1};
    for (const IcsAxis& axis : header.axes) {
        const std::uint64_t step = layout.samples;
        if (axis.name == "x") {
            frame.size.x = axis.size;
            layout.strides.x = step;
        } else if (axis.name == "y") {
            frame.size.y = axis.size;
            layout.strides.y = step;
        } else if (axis.name == "z") {
            frame.size.z = axis.size;
            layout.strides.z = step;
        } else if (axis.name == "t") {
            layout.times = axis.size;
            layout.timeStride = step;
        } else if (axis.size != 1) {
            layout.strides.colour = step;
            layout.channelAxes.push_back({axis.size, step});
            const auto more = Multiply({layout.channels, axis.size});
            if (!more)
                ThrowDamaged(fileName, "its header promises too many channels");
            layout.channels = *more;
        }
        const auto next = Multiply({step, axis.size});
        if (!next || *next > mostVoxelBytes)
            ThrowDamaged(fileName, "its header promises too many voxels");
        layout.samples = *next;
    }
    if (layout.samples * frame.sample.GetSampleBytes() > mostVoxelBytes)
        ThrowDamaged(fileName, "its header promises too many voxels");
    return layout;
}

IcsStrides TakeIcsLayout(const IcsLayout& layout, const std::string& fileName, FrameHeader& frame) {
    if (layout.times != 1 || (layout.channels != 1 && layout.channels != 3))
        ThrowManyFrames(fileName, layout.channels, layout.times);
    frame.components = static_cast<int>(layout.channels);
    if (frame.components == 3 && frame.sample.IsComplex())
        ThrowNotSupported(fileName, "colour of complex numbers");
    return layout.strides;
}

} // namespace kep::detail
