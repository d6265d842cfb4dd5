// The table of all writers that need no display. A new one is one entry.

#include "host/film.h"
#include "host/meshexport.h"
#include "host/message.h"
#include "host/picturesave.h"
#include "host/screenshot.h"
#include "host/settingsfile.h"
#include "image/zel_labeledimage4d.h"
#include "model/zel_histogram.h"
#include "model/zel_meshfile.h"
#include "model/zel_viewfile.h"
#include "tests/faults/writer.h"
#include "tests/support/frames.h"
#include "tests/support/pictures.h"
#include "tests/support/scratch_folder.h"
#include "tests/volume/ply_reader.h"

#include <wx/imaggif.h>
#include <wx/mstream.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace zel::test {

namespace {

using Frame = kep::Image3d<unsigned short>;
using LabelFrame = kep::LabeledImage3d<unsigned short, unsigned short>;

constexpr kep::Vector3d<std::size_t> size{90, 50, 3};

/// Noise that no packing makes small, so that files take several writes.
unsigned short Noise(std::size_t x, std::size_t y, std::size_t z, std::size_t t = 0) {
    auto hash = static_cast<std::uint32_t>(1 + x + size.x * (y + size.y * (z + size.z * t)));
    hash = (hash ^ hash >> 16U) * 0x85EBCA6BU;
    hash = (hash ^ hash >> 13U) * 0xC2B2AE35U;
    return static_cast<unsigned short>(hash ^ hash >> 16U);
}

Frame NoiseFrame(std::size_t t = 0) {
    Frame frame;
    frame.MakeRoom(size.x, size.y, size.z);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i) {
        const kep::Vector3d<std::size_t> at = frame.GetPos(i);
        frame.SetVoxel(i, Noise(at.x, at.y, at.z, t));
    }
    frame.SetDescription({{"note", "kept"}});
    return frame;
}

/// Two labels, 3 and 7, of a few voxels each.
Frame TwoLabels() {
    Frame frame;
    frame.MakeRoom(12, 9, 5);
    frame.Fill(0);
    for (std::size_t x = 2; x < 5; ++x) {
        frame.SetVoxel(x, 3, 2, 3);
        frame.SetVoxel(x + 5, 5, 2, 7);
    }
    return frame;
}

template <typename T>
kep::Image3d<T> Read(const std::string& path) {
    return kep::Image3d<T>(path.c_str(), nullptr, false, -1, nullptr, nullptr);
}

/// Runs what saves. @return what it throws for users, as text
template <typename Act>
std::string TextOfFailure(const Act& save) {
    try {
        save();
    } catch (const kep::IOException& failure) {
        return failure.GetText();
    } catch (const zelviewer::Failure& failure) {
        return failure.what();
    }
    return {};
}

bool Holds(const std::string& path, const Frame& frame) {
    const Frame read = Read<unsigned short>(path);
    return read.GetSize() == frame.GetSize() && std::equal(read.begin(), read.end(), frame.begin());
}

Writer Image(std::string name, const std::string& ending, bool compress) {
    const bool isIcs = ending == ".ics";
    return {std::move(name), isIcs ? "core/kepcore/ics/kep_icswrite.cpp" : "core/kepcore/tiff/kep_tiffwrite.cpp",
            ending,
            [compress] {
                return [compress, frame = NoiseFrame()](const std::string& path) {
                    return TextOfFailure([&] { frame.SaveImage(path.c_str(), kep::FF_BY_NAME, compress, nullptr); });
                };
            },
            [](const std::string& path) { return Holds(path, NoiseFrame()); }};
}

Writer LabelImage() {
    return {"Labels", "core/kepcore/tiff/kep_tiffwrite.cpp", ".tif",
            [] {
                auto labels = std::make_shared<LabelFrame>();
                labels->CreateRegionsOfLabels(TwoLabels());
                return [labels](const std::string& path) {
                    return TextOfFailure([&] { labels->SaveImage(path.c_str(), kep::FF_LABELED); });
                };
            },
            [](const std::string& path) { return Holds(path, TwoLabels()); }};
}

/// Saves the frames 0 and 1 of a sequence, which ends in the number and the suffix.
template <typename Sequence>
std::string SaveSequence(const Sequence& sequence, const std::string& path, const std::string& suffix) {
    const std::string prefix = path.substr(0, path.size() - suffix.size() - 1);
    return TextOfFailure([&] { sequence.SaveSequence(prefix.c_str(), 1, suffix.c_str(), 0, 1); });
}

Writer ImageSequence() {
    return {.name = "Sequence",
            .source = "core/kepcore/ics/kep_icswrite.cpp",
            .ending = "0.ics",
            .prepare =
                [] {
                    auto image = std::shared_ptr(MakeImage<unsigned short>(size, 2, Noise));
                    return [image](const std::string& path) { return SaveSequence(*image, path, ".ics"); };
                },
            .isRead = [](const std::string& path) { return Holds(path, NoiseFrame()); },
            .moreEndings = {"1.ics"},
            .formatsTexts = true};
}

Writer LabelSequence() {
    return {.name = "LabelSequence",
            .source = "core/kepcore/tiff/kep_tiffwrite.cpp",
            .ending = "0.tif",
            .prepare =
                [] {
                    auto labels = std::make_shared<mor::LabeledImage4d<unsigned short, unsigned short>>();
                    labels->MakeRoom(TwoLabels().GetSize(), 0);
                    for (int t = 0; t < 2; ++t) {
                        auto frame = std::make_unique<LabelFrame>();
                        frame->CreateRegionsOfLabels(TwoLabels());
                        labels->InsertFrame(frame.get(), "frame", -1);
                        frame.release(); // it is in the sequence now
                    }
                    return [labels](const std::string& path) { return SaveSequence(*labels, path, ".tif"); };
                },
            .isRead = [](const std::string& path) { return Holds(path, TwoLabels()); },
            .moreEndings = {"1.tif"},
            .formatsTexts = true};
}

Histogram<int> LongHistogram() {
    Histogram<int> histogram;
    histogram.Init(0, 9999, 10000);
    for (std::size_t i = 0; i < histogram.size(); ++i)
        histogram[i] = i * i * 12345;
    return histogram;
}

Writer HistogramFile() {
    return {.name = "Histogram",
            .source = "histogram/zel_histogramfile.cpp",
            .ending = ".txt",
            .prepare =
                [] {
                    return [histogram = LongHistogram()](const std::string& path) {
                        return std::string(histogram.Save(wxString::FromUTF8(path)) ? "" : "not saved");
                    };
                },
            .isRead =
                [](const std::string& path) {
                    Histogram<int> read;
                    return read.Load(wxString::FromUTF8(path)) && read == LongHistogram();
                },
            .tellsWhy = false};
}

VolumePose OtherPose() {
    VolumePose pose;
    pose.eyeDistance = -2.5F;
    pose.planeOffset = 0.25;
    return pose;
}

Writer ViewFile() {
    return {"ViewFile", "model/zel_viewfile.cpp", ".zelview",
            [] { return [](const std::string& path) { return TextOfFailure([&] { SavePose(path, OtherPose()); }); }; },
            [](const std::string& path) {
                VolumePose pose;
                return LoadPose(path, pose) && pose == OtherPose();
            }};
}

Writer Mesh() {
    return {"Mesh", "model/zel_meshfile.cpp", ".ply",
            [] {
                auto frame = std::make_shared<Frame>(NoiseFrame());
                auto generator = std::make_shared<IsosurfaceGenerator>();
                for (unsigned short& voxel : *frame)
                    voxel = voxel % 2;
                generator->GenerateSurfaces(frame->begin(), {{1, 0}}, size.x, size.y, size.z, 1, 1, 1);
                return [frame, generator](const std::string& path) {
                    return TextOfFailure([&] { SaveMesh(path, generator->GetSurfaces().at(0), *frame); });
                };
            },
            [](const std::string& path) { return ReadPly(path).triangles.size() > 10000; }};
}

wxImage PicturePattern() {
    wxImage picture(60, 40, false);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 60; ++x) {
            const auto noise = Noise(static_cast<std::size_t>(x), static_cast<std::size_t>(y), 0);
            picture.SetRGB(x, y, static_cast<unsigned char>(noise), static_cast<unsigned char>(noise >> 8),
                           static_cast<unsigned char>(x));
        }
    return picture;
}

wxImage ReadPicture(const std::string& path, wxBitmapType type) {
    zelviewer::HavePng();
    const std::string bytes = ReadBytes(path);
    wxMemoryInputStream stream(bytes.data(), bytes.size());
    wxImage picture;
    if (type == wxBITMAP_TYPE_GIF)
        wxGIFHandler().LoadFile(&picture, stream, false, 1); // the second one
    else
        picture.LoadFile(stream, type);
    return picture;
}

Writer Picture() {
    return {.name = "Picture",
            .source = "host/screenshot.cpp",
            .ending = ".png",
            .prepare =
                [] {
                    return [picture = PicturePattern()](const std::string& path) {
                        return TextOfFailure([&] { zelviewer::WritePng(picture, path); });
                    };
                },
            .isRead =
                [](const std::string& path) {
                    const wxImage picture = ReadPicture(path, wxBITMAP_TYPE_PNG), expected = PicturePattern();
                    return picture.IsOk() && picture.GetSize() == expected.GetSize() &&
                           std::equal(expected.GetData(), expected.GetData() + 60 * 40 * 3, picture.GetData());
                },
            .toolkitWrites = true};
}

/// Changes its entry each time, between 1 and 0, as a change that is none writes nothing.
std::string ChangeSettings(const std::string& path) {
    return zelviewer::SettingsFile(path).Change(
        [](wxFileConfig& config) { config.Write("/new/key", 1 - config.Read("/new/key", 0L)); });
}

Writer Settings(std::string name, std::string old, std::vector<std::string> more) {
    return {
        .name = std::move(name),
        .source = "host/settingsfile.cpp",
        .ending = ".conf",
        .prepare = [] { return &ChangeSettings; },
        .isRead = [](const std::string& path) { return zelviewer::SettingsFile(path).Read()->HasEntry("/new/key"); },
        .old = std::move(old),
        .moreEndings = std::move(more),
        .makesFolders = true,
        .toolkitWrites = true};
}

constexpr const char* pngStart = "\x89PNG\r\n\x1A\nan older picture";
constexpr const char* gifStart = "GIF89a, an older film";
constexpr const char* tiffStart = "II*, an older gallery";
constexpr const char* plyStart = "ply\nan older mesh";

Writer Meshes() {
    return {.name = "MeshExport",
            .source = "model/zel_meshfile.cpp",
            .ending = "3.ply",
            .prepare =
                [] {
                    auto folder = std::make_shared<ScratchFolder>();
                    std::filesystem::permissions(folder->GetPath(), std::filesystem::perms(0755));
                    const std::string labels = Save(TwoLabels(), *folder / "labels.tif");
                    return [folder, labels](const std::string& path) {
                        zelviewer::MeshExport order;
                        order.labels = {labels};
                        order.resolution = {1, 1, 1};
                        order.prefix = path.substr(0, path.size() - 5);
                        order.replaces = true;
                        return TextOfFailure([&] { ExportMeshes(order); });
                    };
                },
            .isRead = [](const std::string& path) { return !ReadPly(path).triangles.empty(); },
            .old = plyStart,
            .moreEndings = {"7.ply"}};
}

/// The program's own pictures, made without a window of the files of two frames.
Writer ProgramPictures(std::string name, std::string source, std::string ending, std::string old,
                       const std::function<void(zelviewer::SaveOptions&, const std::string&)>& ask, wxBitmapType type) {
    return {.name = std::move(name),
            .source = std::move(source),
            .ending = std::move(ending),
            .prepare =
                [ask] {
                    auto folder = std::make_shared<ScratchFolder>();
                    std::filesystem::permissions(folder->GetPath(), std::filesystem::perms(0755));
                    zelviewer::Options options;
                    for (std::size_t t = 0; t < 2; ++t)
                        options.files.push_back(Save(NoiseFrame(t), *folder / (std::to_string(t) + ".tif")));
                    options.force = true;
                    return [folder, options, ask](const std::string& path) {
                        zelviewer::Options asked = options;
                        ask(asked.save, path);
                        return TextOfFailure([&] { SavePictures(asked); });
                    };
                },
            .isRead =
                [type](const std::string& path) {
                    if (type == wxBITMAP_TYPE_TIFF)
                        return Read<kep::RGB_generic<unsigned char>>(path).GetSizeX() == 2 * size.x + 10;
                    return ReadPicture(path, type).GetWidth() == static_cast<int>(size.x + 10 + size.z);
                },
            .old = std::move(old),
            .formatsTexts = true};
}

std::vector<Writer> PictureWriters() {
    using Save = zelviewer::SaveOptions;
    std::vector<Writer> writers = {
        ProgramPictures(
            "ProgramView", "host/screenshot.cpp", ".png", pngStart,
            [](Save& save, const std::string& path) { save.view = path; }, wxBITMAP_TYPE_PNG),
        ProgramPictures(
            "ProgramViews", "host/screenshot.cpp", "0.png", pngStart,
            [](Save& save, const std::string& path) {
                save.view = path.substr(0, path.size() - 5) + "X.png";
                save.frames = {0, 1, 1};
            },
            wxBITMAP_TYPE_PNG),
        ProgramPictures(
            "ProgramGallery", "core/kepcore/tiff/kep_tiffwrite.cpp", ".tif", tiffStart,
            [](Save& save, const std::string& path) { save.gallery = path; }, wxBITMAP_TYPE_TIFF),
        ProgramPictures(
            "ProgramFilm", "host/film.cpp", ".gif", gifStart,
            [](Save& save, const std::string& path) { save.film = path; }, wxBITMAP_TYPE_GIF)};
    writers[1].moreEndings = {"1.png"};
    writers[2].old[3] = '\0'; // the format's mark ends so
    return writers;
}

std::vector<Writer> MakeTable() {
    std::vector<Writer> writers = {
        Image("PlainTiff", ".tif", false),
        Image("PackedTiff", ".tif", true),
        Image("PlainIcs", ".ics", false),
        Image("PackedIcs", ".ics", true),
        LabelImage(),
        ImageSequence(),
        LabelSequence(),
        HistogramFile(),
        ViewFile(),
        Mesh(),
        Meshes(),
        Picture(),
        Settings("Settings", "[old]\nkey=1\n", {}),
        Settings("DamagedSettings", "[old\nkey", {".conf.damaged"}),
    };
    for (Writer& writer : PictureWriters())
        writers.push_back(std::move(writer));
    return writers;
}

} // namespace

const std::vector<Writer>& AllWriters() {
    static const std::vector<Writer> writers = MakeTable();
    return writers;
}

} // namespace zel::test
