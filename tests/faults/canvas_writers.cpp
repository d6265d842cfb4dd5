// The table of the writers that need a display: what the canvas saves, and tells of in the log. A new one is one entry.

#include "model/zel_composition.h"
#include "tests/faults/writer.h"
#include "tests/support/log_catcher.h"
#include "tests/support/pictures.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/frame.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace zel::test {

namespace {

using Canvas = zel_ImageViewer3dCanvas<unsigned short>;

constexpr kep::Vector3d<std::size_t> size{60, 40, 5};

unsigned short Noise(std::size_t x, std::size_t y, std::size_t z, std::size_t t) {
    auto hash = static_cast<std::uint32_t>(1 + x + size.x * (y + size.y * (z + size.z * t)));
    hash = (hash ^ hash >> 16U) * 0x85EBCA6BU;
    hash = (hash ^ hash >> 13U) * 0xC2B2AE35U;
    return static_cast<unsigned short>(hash ^ hash >> 16U);
}

/// A canvas in a frame that is never shown.
struct Window {
    Window() : frame(new wxFrame(nullptr, wxID_ANY, "hidden")) {
        canvas = new Canvas(frame, mapper, image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
        HideDecorations(*canvas);
        frame->SetClientSize(300, 280);
        canvas->SetSize(300, 280);
    }
    ~Window() { delete frame; }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    PlainMapper<unsigned short> mapper;
    std::unique_ptr<mor::Image4d<unsigned short>> image = MakeImage<unsigned short>(size, 1, Noise);
    wxFrame* frame;
    Canvas* canvas = nullptr; ///< the frame's
};

using SaveFromCanvas = void (*)(Canvas& canvas, const std::string& path);

/// @param save  of which the log tells
Writer OfCanvas(std::string name, std::string ending, SaveFromCanvas save,
                std::function<bool(const std::string&)> isRead) {
    const bool isIcs = ending == ".ics";
    const auto prepare = [save] {
        return [save, window = std::make_shared<Window>()](const std::string& path) {
            const LogCatcher log;
            save(*window->canvas, path);
            std::string told;
            for (const LogCatcher::Entry& entry : log.GetEntries())
                told += entry.level <= wxLOG_Error ? entry.text : "";
            return told;
        };
    };
    return {std::move(name), isIcs ? "core/kepcore/ics/kep_icswrite.cpp" : "core/kepcore/tiff/kep_tiffwrite.cpp",
            std::move(ending), prepare, std::move(isRead)};
}

void SaveData(Canvas& canvas, const std::string& path) {
    canvas.Save3dData(wxString(path.c_str(), *wxConvFileName));
}

bool IsData(const std::string& path) {
    const kep::Image3d<unsigned short> frame(path.c_str(), nullptr, false, -1, nullptr, nullptr);
    const auto image = MakeImage<unsigned short>(size, 1, Noise);
    return frame.GetSize() == image->GetSize() &&
           std::equal(frame.begin(), frame.end(), std::as_const(*image).GetImage(0)->begin());
}

bool IsSheet(const std::string& path, std::size_t width, std::size_t height) {
    const Sheet sheet(path.c_str(), nullptr, false, -1, nullptr, nullptr);
    return sheet.GetSize() == kep::Vector3d<std::size_t>(width, height, 1);
}

std::vector<Writer> MakeTable() {
    return {
        OfCanvas("CanvasTiff", ".tif", &SaveData, &IsData),
        OfCanvas("CanvasIcs", ".ics", &SaveData, &IsData),
        OfCanvas(
            "CanvasView", ".tif",
            [](Canvas& canvas, const std::string& path) { canvas.SaveActualView(path.c_str(), 3, zel_PT_ALL); },
            [](const std::string& path) { return IsSheet(path, size.x + 3 + size.z, size.y + 3 + size.z); }),
        OfCanvas(
            "CanvasGallery", ".ics",
            [](Canvas& canvas, const std::string& path) { canvas.SaveGalleryView(path.c_str(), 1, 4, 1, true, 2, 1); },
            [](const std::string& path) { return IsSheet(path, 2 * (size.x + 1) - 1, 2 * (size.y + 1) - 1); }),
    };
}

} // namespace

const std::vector<Writer>& AllWriters() {
    static const std::vector<Writer> writers = MakeTable();
    return writers;
}

} // namespace zel::test
