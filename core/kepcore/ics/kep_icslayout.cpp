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

IcsStrides TakeIcsLayout(const IcsHeader& header, const std::string& fileName, FrameHeader& frame) {
    IcsStrides strides;
    std::uint64_t step = 1; // in samples
    std::uint64_t channels = 1;
    frame.size = {1, 1, 1};
    for (const IcsAxis& axis : header.axes) {
        if (axis.name == "x") {
            frame.size.x = axis.size;
            strides.x = step;
        } else if (axis.name == "y") {
            frame.size.y = axis.size;
            strides.y = step;
        } else if (axis.name == "z") {
            frame.size.z = axis.size;
            strides.z = step;
        } else if (axis.name == "t") {
            if (axis.size != 1)
                ThrowNotOneFrame(fileName, axis.size, "time points");
        } else if (axis.size != 1) {
            strides.colour = step;
            const auto more = Multiply({channels, axis.size});
            if (!more)
                ThrowDamaged(fileName, "its header promises too many channels");
            channels = *more;
        }
        const auto next = Multiply({step, axis.size});
        if (!next || *next > mostVoxelBytes)
            ThrowDamaged(fileName, "its header promises too many voxels");
        step = *next;
    }
    if (channels != 1 && channels != 3)
        ThrowChannels(fileName, channels);
    frame.components = static_cast<int>(channels);
    if (step * frame.sample.GetSampleBytes() > mostVoxelBytes)
        ThrowDamaged(fileName, "its header promises too many voxels");
    if (frame.components == 3 && frame.sample.IsComplex())
        ThrowNotSupported(fileName, "colour of complex numbers");
    return strides;
}

} // namespace kep::detail
