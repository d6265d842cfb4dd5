#include "host/picturesave.h"

#include "host/film.h"
#include "host/firstmapping.h"
#include "host/message.h"
#include "host/opening.h"
#include "host/outputs.h"
#include "host/planepainter.h"
#include "host/screenshot.h"
#include "host/voxelsize.h"
#include "model/zel_composition.h"
#include "model/zel_proportions.h"

#include <wx/image.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <new>
#include <utility>

namespace zelviewer {

namespace {

using zel::Sheet;

/// A view of a whole image, and the sizes of its windows.
struct WholeView {
    zel::View view;
    zel::PerPlane<zel::Size> windows;
};

/// @param scale  pixels per micron
WholeView ShowWhole(const zel::ImageGeometry& image, const kep::Vector3d<float>& scale) {
    constexpr int largest = 1 << 28; // far beyond any memory; sums of four of them are no larger than an int
    WholeView whole;
    whole.view.Open(image);
    whole.view.options.baseScale = whole.view.scale = scale;
    zel::Size area; // in which each window gets what it wants: half of it at the most
    for (const zel::Plane& plane : zel::planes) {
        const zel::Size full = whole.view.GetFullSize(plane);
        if (full.x > largest || full.y > largest)
            throw kep::LibException("The picture would be too large.");
        area = {std::max(area.x, 2 * full.x), std::max(area.y, 2 * full.y)};
    }
    constexpr int margins = 2;
    const auto windows = whole.view.Arrange({area.x + margins, area.y + margins}, 0);
    for (const zel::Plane& plane : zel::planes)
        whole.windows[plane.type] = {(*windows)[plane.type].width, (*windows)[plane.type].height};
    return whole;
}

/// The scale of a view, as a window has it.
kep::Vector3d<float> ScaleOfView(const Options& options, const std::string& name, const kep::Resolution& resolution) {
    if (options.voxels)
        return resolution.GetUsable().GetRes();
    const zel::OpeningScale opening = zel::ChooseScale(resolution);
    if (!opening.proportional)
        PrintMessage(name + ": " + notProportional);
    return opening.scale;
}

template <typename T>
Sheet MakeView(const SaveOptions& save, const WholeView& whole, PlanePainter<T>& painter, std::size_t frame) {
    zel::PerPlane<zel::PictureSource> pictures;
    for (const zel::Plane& plane : zel::planes) {
        const zel::Size window = whole.windows[plane.type];
        pictures[plane.type] = save.windows[plane.type] ? painter.Paint(whole.view, plane, window, frame)
                                                        : zel::PictureSource{nullptr, window};
    }
    return zel::ComposeView(pictures, save.windows, save.border);
}

zel::GalleryOptions GalleryOf(const SaveOptions& save, std::size_t sliceCount) {
    const Range slices = save.slices.value_or(Range{0, static_cast<int>(sliceCount) - 1, 1});
    if (static_cast<std::size_t>(slices.last) >= sliceCount)
        throw Failure("--slices: There is no slice " + std::to_string(slices.last) + ", they are numbered from 0 to " +
                      std::to_string(sliceCount - 1) + ".");
    const auto count = static_cast<int>(slices.GetCount());
    zel::GalleryOptions gallery;
    gallery.first = slices.first;
    gallery.last = slices.first + count * slices.step - 1; // a sheet has room for whole steps only
    gallery.step = slices.step;
    gallery.byRows = save.rows.has_value();
    gallery.count = save.rows      ? *save.rows
                    : save.columns ? *save.columns
                                   : static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count))));
    gallery.spacing = save.spacing;
    return gallery;
}

template <typename T>
Sheet MakeGallery(const zel::GalleryOptions& gallery, WholeView& whole, PlanePainter<T>& painter, std::size_t frame) {
    const zel::Plane& plane = *zel::FindPlane(zel::zel_PT_XY);
    const zel::Size tile = whole.windows[plane.type];
    return zel::ComposeGallery(gallery, tile, [&](int slice) {
        zel::View& view = whole.view;
        view.MoveCutThrough(plane, view.boundingBox.offset.z + (static_cast<float>(slice) + 0.5F) * view.cutStep.z);
        return painter.Paint(view, plane, tile, frame);
    });
}

/// Writes a sheet in the format that the name's ending asks for.
void Write(Sheet& sheet, const std::string& name) {
    constexpr std::string_view png = ".png";
    std::string ending = name.substr(name.size() - std::min(name.size(), png.size()));
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    if (ending != png) {
        sheet.SaveImage(name.c_str(), kep::FF_BY_NAME, true, nullptr);
        return;
    }
    static_assert(sizeof(zel::Colour) == 3);
    WritePng(wxImage(static_cast<int>(sheet.GetSizeX()), static_cast<int>(sheet.GetSizeY()),
                     reinterpret_cast<unsigned char*>(sheet.begin()), true),
             name);
}

/// Calls what makes and writes one file, and names the file in what it throws.
template <typename Save>
void NameFailures(const std::string& name, const Save& save) {
    try {
        save();
    } catch (const kep::LibException& failure) {
        throw Failure(NameAndReason(name, failure));
    } catch (const std::bad_alloc&) {
        throw Failure(name + ": Not enough memory.");
    }
}

template <typename T>
void SaveFrames(const Options& options, const std::string& name, const mor::Image4d<T>& image,
                std::unique_ptr<Labels> labels, std::function<bool(double)> progress = {},
                const zel::HistogramSet<T>* counted = nullptr) {
    const SaveOptions& save = options.save;
    if (const std::string missing = save.FindMissingFrame(image.GetNumFrames()); !missing.empty())
        throw Failure(missing);
    std::unique_ptr<zel::zel_MappingModule<T>> mapping;
    WholeView whole;
    NameFailures(name, [&] {
        mapping = MakeMapping(image, {options.stretch, options.part, std::move(progress)}, counted);
        const kep::Resolution& resolution = image.GetResolution();
        whole = ShowWhole({image.GetOffset(), image.GetSize(), resolution},
                          save.gallery ? resolution.GetUsable().GetRes() : ScaleOfView(options, name, resolution));
    });
    if (const auto constant = DescribeConstant(image))
        PrintMessage(name + ": " + *constant);
    const zel::GalleryOptions gallery = save.gallery ? GalleryOf(save, image.GetSizeZ()) : zel::GalleryOptions{};
    PlanePainter<T> painter(image, *mapping, std::move(labels));
    std::vector<std::string> inputs = options.files;
    inputs.insert(inputs.end(), options.labels.begin(), options.labels.end());
    const OutputRules rules(inputs, options.force);
    const auto write = [&](const std::string& target, const auto& make) {
        // Seen again now, for files that were put there since.
        if (const std::string refusal = rules.RefusalOf(target, save.GetEndings()); !refusal.empty())
            throw Failure(refusal);
        NameFailures(target, make);
    };
    const Range frames = save.GetFrames(image.GetNumFrames());
    Film film;
    for (std::size_t i = 0; i < frames.GetCount(); ++i) {
        const auto t = static_cast<std::size_t>(frames.GetNumber(i));
        const std::string target = save.GetFileName(frames.GetNumber(i));
        if (save.film)
            NameFailures(target, [&] { film.Add(MakeView(save, whole, painter, t)); });
        else
            write(target, [&] {
                Sheet sheet = save.view ? MakeView(save, whole, painter, t) : MakeGallery(gallery, whole, painter, t);
                Write(sheet, target);
            });
    }
    if (save.film)
        write(*save.film, [&] { film.Save(*save.film, save.picturesASecond); });
}

void SaveSynthetic(const Options& options) {
    if (options.type == DisplayType::Complex)
        SaveFrames(options, "The synthetic wave", *OpenVortex(), nullptr);
    else
        SaveFrames(options, "The synthetic cells", *OpenSyntheticCells().image, nullptr);
}

} // namespace

void SavePictures(const Options& options) {
    if (options.files.empty()) {
        SaveSynthetic(options);
        return;
    }
    const std::string& name = options.files.front();
    const OpeningPlan plan = PlanOpening(options);
    if (const std::string conflict = FindConflict(options, plan.type); !conflict.empty())
        throw Failure(name + ": " + conflict);
    if (plan.question)
        Refuse(*plan.question);
    if (const std::string missing = options.save.FindMissingFrame(plan.frames); !missing.empty())
        throw Failure(missing);
    WithVoxelType(plan.type, [&](auto type) {
        using T = typename decltype(type)::type;
        ReadingProgress progress(plan.frames, plan.bytes, false);
        const ReadSequence<T> read = ReadFiles<T>(options, plan, progress);
        auto labels = options.labels.empty() ? nullptr : ReadLabels<T>(options, *read.image);
        const auto counting = [&progress](double done) { return progress.Report("Counting gray levels", done); };
        SaveFrames<T>(options, name, *read.image, std::move(labels), counting,
                      read.histograms ? &*read.histograms : nullptr);
    });
}

} // namespace zelviewer
