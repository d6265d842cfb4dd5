// What the mapping costs: pictures, a change of stretch on the screen, and opening a sequence. Needs a display.

#include "bench/support/comparison.h"
#include "bench/support/sample_frames.h"
#include "bench/viewer/bare_windows.h"
#include "core/kepcore/kep_hugepages.h"
#include "factory/zel_viewerfactory.h"
#include "mapping/zel_complexmapping.h"
#include "mapping/zel_graymapping.h"
#include "mapping/zel_mapperfactory.h"
#include "mapping/zel_rgbmapping.h"

#include <wx/evtloop.h>
#include <wx/menu.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace {

using namespace zel;
using Word = unsigned short;
using Image = mor::Image4d<Word>;

std::unique_ptr<Image> MakeSequence(std::size_t frames) {
    const kep::Resolution resolution(1, 1, 1);
    auto image = std::make_unique<Image>(nullptr, &resolution);
    const auto sample = GetSampleFrame<Word>();
    image->MakeRoom(sample->GetSize(), frames);
    for (std::size_t t = 0; t < frames; ++t)
        image->GetVoxelData(t) = sample->GetVoxelData();
    return image;
}

zel_Viewer3dFrame* OpenViewer(Image& image) {
    return zel_CreateImage3dFrame(&image, false, nullptr, wxID_ANY, "bench", wxDefaultPosition, wxDefaultSize,
                                  wxDEFAULT_FRAME_STYLE);
}

/// A picture of 1000 x 800 voxels through the module.
void AddPicture(const std::string& name, int palette) {
    AddComparison(name, [palette] {
        const auto image = MakeSequence(1);
        const std::shared_ptr<zel_MappingModule<Word>> module(zel_CreateMapperForType<Word>(nullptr, *image));
        for (const int entry : {static_cast<int>(zel_ME_PERCENTIL_STRETCH), palette}) {
            wxCommandEvent choose(wxEVT_MENU, entry); // without a menu ids start at 0
            dynamic_cast<zel_GrayMappingModule<Word>&>(*module).OnMapping(choose);
        }
        const auto buffer = std::make_shared<ColourBuffer>(1000, 800);
        const auto voxels = GetSampleFrame<Word>();
        constexpr std::size_t bytes = 1000 * 800 * 3;
        const auto map = [=] {
            module->Map(voxels->GetVoxelAddr(0, 0, 20), *buffer);
            benchmark::ClobberMemory();
        };
        return Comparison{.work = map, .yardstick = MakeCopy(bytes), .limit = 4, .bytes = bytes};
    });
}

constexpr std::size_t pictureVoxels = 1000 * 800;
constexpr std::size_t pictureBytes = pictureVoxels * 3;

/// A picture of voxels of any type through a module that was made from itself.
template <typename T>
std::function<void()> MakeMapping(const std::vector<T>& voxels, int entry) {
    mor::Image4d<T> image;
    image.MakeRoom(1000, 800, 1, 1);
    std::copy(voxels.begin(), voxels.end(), image[0]->begin());
    image.UpdateMinMaxValues();
    const std::shared_ptr<zel_MappingModule<T>> module(zel_CreateMapperForType<T>(nullptr, image));
    wxCommandEvent choose(wxEVT_MENU, entry);
    choose.SetInt(1);
    if constexpr (HistogramSet<T>::channelCount == 3)
        dynamic_cast<zel_RGBMappingModule<Word>&>(*module).OnMapping(choose);
    else
        dynamic_cast<zel_ComplexMappingModule<float>&>(*module).OnMapping(choose);
    const auto buffer = std::make_shared<ColourBuffer>(1000, 800);
    return [=] {
        module->Map(voxels.data(), *buffer);
        benchmark::ClobberMemory();
    };
}

/// A slice of the sample in three colours: the second and the third are moved along x.
std::vector<kep::RGB_generic<Word>> GetColours() {
    const auto sample = GetSampleFrame<Word>();
    const Word* const from = sample->GetVoxelAddr(0, 0, 20);
    std::vector<kep::RGB_generic<Word>> colours;
    for (std::size_t i = 0; i < pictureVoxels; ++i)
        colours.emplace_back(from[i], from[i + 40], from[i + 80]);
    return colours;
}

using Complex = std::complex<float>;

/// The sample as a wave whose phase turns along x.
const std::vector<Complex>& GetWave() {
    static const std::vector<Complex> wave = [] {
        const auto sample = GetSampleFrame<Word>();
        const Word* const from = sample->GetVoxelAddr(0, 0, 20);
        std::vector<Complex> voxels;
        for (std::size_t i = 0; i < pictureVoxels; ++i)
            voxels.push_back(std::polar(static_cast<float>(from[i]), static_cast<float>(i % 1000) * 0.1F));
        return voxels;
    }();
    return wave;
}

/// The bare computation of a part, and the mapping of numbers that need none.
template <typename Compute>
std::function<void()> MakeBareLoop(const Compute& compute) {
    const auto values = std::make_shared<std::vector<float>>(pictureVoxels);
    const auto real = MakeMapping(GetWave(), zel_firstPartEntry + Real);
    return [=] {
        std::transform(GetWave().begin(), GetWave().end(), values->begin(), compute);
        benchmark::ClobberMemory();
        real();
    };
}

void AddParts() {
    AddComparison("Map RGB16", [] {
        return Comparison{.work = MakeMapping(GetColours(), zel_ME_PERCENTIL_STRETCH),
                          .yardstick = MakeCopy(pictureBytes),
                          .limit = 5,
                          .bytes = pictureBytes};
    });
    for (const auto& [name, part] : {std::pair{"real", Real}, std::pair{"imaginary", Imaginary}}) {
        AddComparison(std::string("Map complex, ") + name, [part = part] {
            return Comparison{.work = MakeMapping(GetWave(), zel_firstPartEntry + part),
                              .yardstick = MakeCopy(pictureBytes),
                              .limit = 6,
                              .bytes = pictureBytes};
        });
    }
    AddComparison("Map complex, phase", [] {
        return Comparison{.work = MakeMapping(GetWave(), zel_firstPartEntry + Phase),
                          .yardstick = MakeBareLoop([](Complex v) { return std::atan2(v.imag(), v.real()); }),
                          .unit = "bare atan2 and real part",
                          .limit = 1.2,
                          .bytes = pictureBytes};
    });
    AddComparison("Map complex, amplitude", [] {
        return Comparison{
            .work = MakeMapping(GetWave(), zel_firstPartEntry + Amplitude),
            .yardstick = MakeBareLoop([](Complex v) { return std::sqrt(v.imag() * v.imag() + v.real() * v.real()); }),
            .unit = "bare sqrt and real part",
            .limit = 1.2,
            .bytes = pictureBytes};
    });
}

/// A viewer whose three windows have 1000 x 800 pixels together, and bare windows of the same sizes.
class Stage {
public:
    Stage() : m_image(MakeSequence(1)), m_frame(OpenViewer(*m_image)) {
        m_frame->GetMenuBar()->Check(zel_CMD_AUTO_ADJUST_FRAME_SIZE, false);
        ShowAndRest(*m_frame);
        m_frame->SetClientSize(1000, 800);
        Pump(200);
        m_frame->GetCanvas()->ZoomIn();
        PumpUntilQuiet();
        m_bare = std::make_unique<BareWindows>(*m_frame->GetCanvas());
        m_firstId = dynamic_cast<zel_MappingModule<Word>&>(*m_frame->GetEventHandler()).GetMenuId(0);
    }

    /// Two entries in turns, as from the menu.
    void Choose(int entry, int other) {
        m_frame->ProcessCommand(m_firstId + (m_turn ? entry : other));
        m_turn = !m_turn;
        m_frame->GetCanvas()->Update();
    }
    BareWindows& GetBare() { return *m_bare; }

private:
    std::unique_ptr<Image> m_image;
    zel_Viewer3dFrame* m_frame;
    std::unique_ptr<BareWindows> m_bare;
    int m_firstId = 0;
    bool m_turn = false;
};

void AddChange(const std::string& name, int entry, int other) {
    AddComparison(name, [=] {
        static Stage stage;
        return Comparison{.work = [=] { stage.Choose(entry, other); },
                          .yardstick = [] { stage.GetBare().Blit(); },
                          .unit = "blits",
                          .limit = 5,
                          .bytes = stage.GetBare().GetPixels() * 3,
                          .processorTime = true};
    });
}

/// Ten frames of 512 x 512 x 64, 320 MiB.
const std::shared_ptr<Image>& GetLongSequence() {
    static const std::shared_ptr<Image> image = MakeSequence(10);
    return image;
}

std::size_t GetFrameBytes() {
    return GetLongSequence()->GetFrameSize() * sizeof(Word);
}

void ReadSequence() {
    for (std::size_t t = 0; t < GetLongSequence()->GetNumFrames(); ++t)
        ReadOnce(GetLongSequence()->GetFirstVoxelAddr(t), GetFrameBytes());
}

/// A copy in memory that the system gives anew, in pages as large as those of frames.
void CopySequence() {
    std::vector<std::unique_ptr<unsigned char[]>> frames;
    for (std::size_t t = 0; t < GetLongSequence()->GetNumFrames(); ++t) {
        frames.push_back(std::make_unique_for_overwrite<unsigned char[]>(GetFrameBytes()));
        kep::AdviseHugePages(frames.back().get(), GetFrameBytes());
        std::memcpy(frames.back().get(), GetLongSequence()->GetFirstVoxelAddr(t), GetFrameBytes());
        benchmark::DoNotOptimize(frames.back().get());
    }
}

void AddOpening(const std::string& name, std::function<void()> work, std::function<void()> yardstick,
                const std::string& unit, double limit) {
    AddComparison(
        name,
        [=] {
            GetLongSequence();
            return Comparison{
                .work = work, .yardstick = yardstick, .unit = unit, .limit = limit, .bytes = 10 * GetFrameBytes()};
        },
        3.0);
}

[[maybe_unused]] const bool added = [] {
    AddPicture("Map uint16, gray", zel_PE_GRAY);
    AddPicture("Map uint16, palette", zel_PE_PERIODIC);
    AddParts();
    AddChange("stretch to repainted windows", zel_ME_LINEAR_STRETCH, zel_ME_NO_STRETCH);
    AddChange("equalisation to repainted windows", zel_ME_EQUALIZATION, zel_ME_PERCENTIL_STRETCH);
    AddChange("palette to repainted windows", zel_PE_LABELS, zel_PE_PERIODIC);
    AddOpening(
        "open 320 MiB: histogram",
        [] {
            const std::unique_ptr<zel_ExtensionModule> made(zel_CreateMapperForType<Word>(nullptr, *GetLongSequence()));
        },
        ReadSequence, "passes", 3);
    AddOpening(
        "open 320 MiB: temporary copy", [] { const Image copy(*GetLongSequence()); }, CopySequence, "fresh copies",
        1.5);
    AddOpening(
        "open 320 MiB: all of it",
        [] {
            OpenViewer(*GetLongSequence())->Destroy();
            wxEventLoopBase::GetActive()->ProcessIdle();
        },
        [] {
            ReadSequence();
            CopySequence();
        },
        "pass and copy", 2);
    return true;
}();

} // namespace
