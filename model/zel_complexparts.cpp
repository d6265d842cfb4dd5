#include "model/zel_complexparts.h"

#include "model/zel_planes.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace zel {

namespace {

using Voxel = std::complex<float>;

void TakeReal(const Voxel* voxels, std::size_t count, float* values) {
    std::transform(voxels, voxels + count, values, [](const Voxel& v) { return v.real(); });
}

void TakeImaginary(const Voxel* voxels, std::size_t count, float* values) {
    std::transform(voxels, voxels + count, values, [](const Voxel& v) { return v.imag(); });
}

void ComputePhase(const Voxel* voxels, std::size_t count, float* values) {
    std::transform(voxels, voxels + count, values, [](const Voxel& v) { return std::atan2(v.imag(), v.real()); });
}

void ComputeAmplitude(const Voxel* voxels, std::size_t count, float* values) {
    std::transform(voxels, voxels + count, values,
                   [](const Voxel& v) { return std::sqrt(v.imag() * v.imag() + v.real() * v.real()); });
}

/// The voxels with the greatest values met so far.
struct Greatest {
    Voxel* voxels;
    float* values;

    void Start(std::size_t i, const Voxel& voxel, float value) const {
        voxels[i] = voxel;
        values[i] = value;
    }
    void Offer(std::size_t i, const Voxel& voxel, float value) const {
        if (value > values[i] || (std::isnan(values[i]) && !std::isnan(value)))
            Start(i, voxel, value);
    }
};

} // namespace

ComplexMode ShownPartOf(const zel_Mapper<Voxel>& mapper) {
    const auto* const shown = dynamic_cast<const zel_ComplexPartShown*>(&mapper);
    return shown != nullptr ? shown->GetShowMode() : Amplitude;
}

ComplexPart PartOf(ComplexMode mode) {
    switch (mode) {
    case Real:
        return TakeReal;
    case Imaginary:
        return TakeImaginary;
    case Phase:
        return ComputePhase;
    case Amplitude:
        return ComputeAmplitude;
    }
    return nullptr;
}

void ProjectComplex(zel_ProjectionType type, const kep::Image3d<Voxel>& frame, ComplexPart part,
                    kep::Image3d<Voxel>& projection) {
    const Plane* const plane = FindPlane(type);
    if (plane == nullptr)
        return;
    const kep::Vector3d<std::size_t> size = frame.GetSize();
    kep::Vector3d<std::size_t> flat = size;
    kep::Vector3d<float> offset = frame.GetOffset();
    At(flat, plane->third) = 1;
    At(offset, plane->third) = 0.0F;
    projection.MakeRoom(flat.x, flat.y, flat.z);
    projection.SetResolution(frame.GetResolution());
    projection.SetOffset(offset);

    std::vector<float> greatest(projection.GetNumVoxels());
    std::vector<float> values(size.x);
    const Greatest kept{projection.begin(), greatest.data()};
    for (std::size_t z = 0; z < size.z; ++z) {
        for (std::size_t y = 0; y < size.y; ++y) {
            const Voxel* const row = frame.GetVoxelAddr(0, y, z);
            part(row, size.x, values.data());
            for (std::size_t x = 0; x < size.x; ++x) {
                kep::Vector3d<std::size_t> at(x, y, z);
                const bool isFirst = At(at, plane->third) == 0;
                At(at, plane->third) = 0;
                const std::size_t i = projection.GetIndex(at.x, at.y, at.z);
                if (isFirst)
                    kept.Start(i, row[x], values[x]);
                else
                    kept.Offer(i, row[x], values[x]);
            }
        }
    }
}

} // namespace zel
