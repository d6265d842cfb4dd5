#include "host/opening.h"

#include "histogram/zel_readinghistograms.h"
#include "host/info.h"
#include "host/synthetic.h"
#include "host/vortex.h"
#include "host/voxelsize.h"
#include "image/zel_framereading.h"

#include <wx/filefn.h>
#include <wx/log.h>

#include <utility>

namespace zelviewer {

namespace {

/// A file name as the library takes it. It turns it back by the same conversion.
wxString ToLibrary(const std::string& name) {
    wxString converted(name.c_str(), *wxConvFileName);
    if (name != static_cast<const char*>(converted.fn_str()))
        throw Failure(name + ": The file's name is not valid in the present locale.");
    return converted;
}

/// Calls read() for a file.
/// @throws Failure for what `read` throws; Cancelled
template <typename Read>
void ReadNamed(const std::string& file, const Read& read) {
    const FileInHand inHand(file);
    try {
        read();
    } catch (const kep::ReadingStopped&) {
        throw Cancelled("Reading was cancelled.");
    } catch (const kep::LibException& error) {
        throw Failure(NameAndReason(file, error));
    } catch (const std::bad_alloc&) {
        throw Failure(file + ": Not enough memory.");
    }
}

/// Reads a file as the one frame that it holds.
template <typename T>
void AppendWhole(mor::Image4d<T>& image, const wxString& name, bool binary) {
    wxArrayString names;
    names.Add(name, image.GetNumFrames() + 1); // the last of them is read
    if (image.GetNumFrames() == 0)
        image.ReadSequence_First(names, binary);
    else
        image.ReadSequence_Next(names, binary);
}

/// What windows call a time point of a file.
wxString NameOfFrame(const wxString& file, std::size_t time, std::size_t times) {
    return times == 1 ? file : file + wxString::Format(", %zu of %zu", time + 1, times);
}

/// Reads one or several channels of each time point.
template <typename T>
void AppendFrames(mor::Image4d<T>& image, const std::string& file, const ShownFile& shown, bool binary) {
    const wxString name = ToLibrary(file);
    const auto append = [&](const auto& read) {
        for (std::size_t t = 0; t < shown.times; ++t) {
            wxLogMessage("%s", "I_Reading: " + NameOfFrame(name, t, shown.times));
            mor::AppendFrame<T>(image, read(t), NameOfFrame(name, t, shown.times));
        }
    };
    if constexpr (IsColourVoxel<T>) {
        if (shown.channels.size() > 1) {
            kep::ColourReader reader(file.c_str(), shown.channels);
            append([&reader](std::size_t t) {
                auto frame = std::make_unique<kep::Image3d<T>>();
                reader.ReadFrame(t, *frame);
                return frame;
            });
            return;
        }
    }
    kep::FrameReader reader(file.c_str());
    append([&](std::size_t t) { return mor::ReadFrame<T>(reader, shown.channels.front(), t, binary); });
}

} // namespace

void Refuse(const ChannelQuestion& question) {
    throw Failure(question.file + ": " + HowToChoose(question.channels.size(), question.most));
}

OpeningPlan PlanOpening(const Options& options) {
    OpeningPlan plan;
    std::uint64_t voxels = 0;
    std::optional<kep::ImageInfo> first;
    for (const std::string& name : options.files) {
        try {
            const FileContents file = ReadContents(name);
            ShownFile shown = PlanFile(file, {options.channels, options.type, options.binary});
            if (shown.choices > 0 && !plan.question)
                plan.question = {name, NamesOfChannels(*file.axes), shown.choices};
            plan.type = !first ? shown.type : WiderType(plan.type, shown.type);
            if (!first)
                first = file.info;
            std::string difference = DifferenceOf(options.files.front(), *first, file.info);
            if (difference.empty() && !plan.files.empty())
                difference = DifferenceOf(options.files.front(), plan.files.front(), shown);
            if (!difference.empty())
                throw Failure(difference);
            voxels += std::uint64_t{file.info.size.x} * file.info.size.y * file.info.size.z * shown.times;
            plan.frames += shown.times;
            plan.files.push_back(std::move(shown));
        } catch (const kep::LibException& error) {
            throw Failure(NameAndReason(name, error));
        } catch (const Failure& failure) {
            throw Failure(name + ": " + failure.what());
        }
    }
    if (options.type)
        plan.type = *options.type;
    plan.bytes = voxels * WithVoxelType(plan.type, [](auto type) { return sizeof(typename decltype(type)::type); });
    return plan;
}

template <typename T>
ReadSequence<T> ReadFiles(const Options& options, const OpeningPlan& plan, ReadingProgress& progress) {
    auto image = std::make_unique<mor::Image4d<T>>();
    const zel::ReadingHistograms<T> counts;
    const kep::ReadingWatch watch(
        [&](const kep::ReadingState& state) { return progress.Report(image->GetNumFrames(), state); });
    for (std::size_t i = 0; i < options.files.size(); ++i)
        ReadNamed(options.files[i], [&] {
            if (plan.files[i].isOneImage)
                AppendWhole(*image, ToLibrary(options.files[i]), options.binary);
            else
                AppendFrames(*image, options.files[i], plan.files[i], options.binary);
        });
    if (options.resolution && image->GetResolution().IsDefined())
        PrintMessage(options.files.front() + ": The file tells its voxel size; --resolution is not used.");
    image->SetResolution(CompleteResolution(image->GetResolution(), options.resolution));
    const bool isCounted = counts.Hold(*image);
    return {std::move(image), isCounted ? std::optional(counts.Get()) : std::nullopt};
}

template <typename T>
ReadSequence<T> ReadFiles(const Options& options, const OpeningPlan& plan) {
    ReadingProgress progress(plan.frames, plan.bytes, !options.LeavesByItself());
    return ReadFiles<T>(options, plan, progress);
}

template <typename T>
std::unique_ptr<Labels> ReadLabels(const Options& options, const mor::Image4d<T>& image) {
    if (options.labels.size() != image.GetNumFrames())
        throw Failure("--labels needs one file for each frame: " + std::to_string(image.GetNumFrames()) + ", not " +
                      std::to_string(options.labels.size()) + ".");
    wxArrayString names;
    for (const std::string& name : options.labels)
        names.Add(ToLibrary(name));
    const std::uint64_t bytes = std::uint64_t{image.GetFrameSize()} * options.labels.size() * sizeof(unsigned short);
    ReadingProgress progress(options.labels.size(), bytes, !options.LeavesByItself());
    auto labels = std::make_unique<Labels>(options.components);
    const kep::ReadingWatch watch(
        [&](const kep::ReadingState& state) { return progress.Report(labels->GetNumFrames(), state); });
    for (const std::string& name : options.labels)
        ReadNamed(name, [&] {
            if (labels->GetNumFrames() == 0)
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
    template ReadSequence<T> ReadFiles(const Options&, const OpeningPlan&, ReadingProgress&);                          \
    template ReadSequence<T> ReadFiles(const Options&, const OpeningPlan&);                                            \
    template std::unique_ptr<Labels> ReadLabels(const Options&, const mor::Image4d<T>&);
KEP_DISPLAY_TYPES(ZEL_INSTANTIATE)
#undef ZEL_INSTANTIATE

namespace {

/// A sequence of frames that were made here.
/// @param what  what they show, for their names
template <typename T>
std::unique_ptr<mor::Image4d<T>> SequenceOf(std::vector<std::unique_ptr<kep::Image3d<T>>> frames, const char* what) {
    auto image = std::make_unique<mor::Image4d<T>>();
    for (auto& frame : frames)
        mor::AppendFrame<T>(*image, std::move(frame),
                            wxString::Format("%s, %zu of %zu", what, image->GetNumFrames() + 1, frames.size()));
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
