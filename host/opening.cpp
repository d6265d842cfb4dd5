#include "host/opening.h"

#include "host/info.h"
#include "host/message.h"
#include "host/proportions.h"
#include "host/readingprogress.h"
#include "host/synthetic.h"
#include "host/vortex.h"

#include <wx/filefn.h>

#include <optional>

namespace zelviewer {

namespace {

/// File names as the library takes them. It turns them back by the same conversion.
wxArrayString ToArray(const std::vector<std::string>& names) {
    wxArrayString array;
    for (const std::string& name : names) {
        const wxString converted(name.c_str(), *wxConvFileName);
        if (name != static_cast<const char*>(converted.fn_str()))
            throw Failure(name + ": The file's name is not valid in the present locale.");
        array.Add(converted);
    }
    return array;
}

/// Calls read(t) for each file.
/// @throws Failure for what `read` throws, and when the user cancels
template <typename Read>
void ReadOneByOne(const std::vector<std::string>& files, ReadingProgress& progress, const Read& read) {
    for (std::size_t t = 0; t < files.size(); ++t) {
        if (!progress.Report(t))
            throw Failure("Reading was cancelled.");
        const FileInHand inHand(files[t]);
        try {
            read(t);
        } catch (const kep::LibException& error) {
            throw Failure(NameAndReason(files[t], error));
        } catch (const std::bad_alloc&) {
            throw Failure(files[t] + ": Not enough memory.");
        }
    }
}

} // namespace

OpeningPlan PlanOpening(const Options& options) {
    OpeningPlan plan;
    std::uint64_t voxels = 0;
    std::optional<kep::ImageInfo> first;
    for (const std::string& name : options.files) {
        try {
            const kep::ImageInfo info = kep::ReadImageInfo(name.c_str());
            const DisplayType type = DisplayTypeFor(info.voxelType);
            plan.type = !first ? type : WiderType(plan.type, type);
            if (!first)
                first = info;
            if (const std::string difference = DifferenceOf(options.files.front(), *first, info); !difference.empty())
                throw Failure(name + ": " + difference);
            voxels += std::uint64_t{info.size.x} * info.size.y * info.size.z;
        } catch (const kep::LibException& error) {
            throw Failure(NameAndReason(name, error));
        }
    }
    if (options.binary)
        plan.type = DisplayType::Gray8;
    if (options.type)
        plan.type = *options.type;
    plan.bytes = voxels * WithVoxelType(plan.type, [](auto type) { return sizeof(typename decltype(type)::type); });
    return plan;
}

template <typename T>
std::unique_ptr<mor::Image4d<T>> ReadFiles(const Options& options, const OpeningPlan& plan) {
    const wxArrayString names = ToArray(options.files);
    ReadingProgress progress(options.files.size(), plan.bytes, !options.LeavesByItself());
    auto image = std::make_unique<mor::Image4d<T>>();
    ReadOneByOne(options.files, progress, [&](std::size_t t) {
        if (t == 0)
            image->ReadSequence_First(names, options.binary);
        else
            image->ReadSequence_Next(names, options.binary);
    });
    if (options.resolution && image->GetResolution().IsDefined())
        PrintMessage(options.files.front() + ": The file tells its voxel size; --resolution is not used.");
    image->SetResolution(CompleteResolution(image->GetResolution(), options.resolution));
    return image;
}

template <typename T>
std::unique_ptr<Labels> ReadLabels(const Options& options, const mor::Image4d<T>& image) {
    const wxArrayString names = ToArray(options.labels);
    const std::uint64_t bytes = std::uint64_t{image.GetFrameSize()} * options.labels.size() * sizeof(unsigned short);
    ReadingProgress progress(options.labels.size(), bytes, !options.LeavesByItself());
    auto labels = std::make_unique<Labels>(options.components);
    ReadOneByOne(options.labels, progress, [&](std::size_t t) {
        if (t == 0)
            labels->template ReadSequence_First<unsigned short>(names, nullptr);
        else
            labels->ReadSequence_Next(names);
    });
    labels->SetResolution(CompleteResolution(labels->GetResolution(), image.GetResolution().GetRes()));
    if (labels->GetSize() != image.GetSize() || labels->GetResolution() != image.GetResolution() ||
        labels->GetOffset() != image.GetOffset())
        throw Failure(options.labels.front() + ": The labels differ from the image in size, voxel size or offset.");
    return labels;
}

#define ZEL_INSTANTIATE(T)                                                                                             \
    template std::unique_ptr<mor::Image4d<T>> ReadFiles(const Options&, const OpeningPlan&);                           \
    template std::unique_ptr<Labels> ReadLabels(const Options&, const mor::Image4d<T>&);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

namespace {

/// A sequence of frames that were made here.
/// @param what  what they show, for their names
template <typename T>
std::unique_ptr<mor::Image4d<T>> SequenceOf(std::vector<std::unique_ptr<kep::Image3d<T>>> frames, const char* what) {
    const kep::Image3d<T>& first = *frames.front();
    auto image = std::make_unique<mor::Image4d<T>>(&first.GetOffset(), &first.GetResolution());
    image->MakeRoom(first.GetSize(), 0);
    for (auto& frame : frames) {
        const std::size_t number = image->GetNumFrames() + 1;
        image->InsertFrame(frame.get(), wxString::Format("%s, %zu of %zu", what, number, frames.size()), -1);
        frame.release(); // the sequence has taken it
    }
    return image;
}

} // namespace

LabeledCells OpenSyntheticCells() {
    std::vector<SyntheticFrame> cells = MakeSyntheticCells();
    const kep::Image3d<unsigned short>& first = *cells.front().intensity;
    auto labels = std::make_unique<Labels>(false, &first.GetOffset(), &first.GetResolution());
    labels->MakeRoom(first.GetSize(), cells.size());
    std::vector<std::unique_ptr<kep::Image3d<unsigned short>>> frames;
    for (SyntheticFrame& cell : cells) {
        labels->GetImage(frames.size())->CreateRegionsOfLabels(*cell.labels);
        cell.labels.reset(); // it was copied
        frames.push_back(std::move(cell.intensity));
    }
    return {SequenceOf(std::move(frames), "Synthetic cells"), std::move(labels)};
}

std::unique_ptr<mor::Image4d<std::complex<float>>> OpenVortex() {
    return SequenceOf(MakeVortex(), "Synthetic wave");
}

} // namespace zelviewer
