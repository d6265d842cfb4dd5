// When the labelled canvas asks its overlayer for what.

#include "overlay/zel_labeledimagecanvas3d.h"
#include "tests/mapping/viewer_fixture.h"

#include <algorithm>
#include <map>
#include <new>
#include <set>

using namespace zel;
using namespace zel::test;

namespace {

using Label = unsigned short;
using Log = std::vector<std::string>;

/// Writes down what it is asked. The labels of a frame are all one voxel, or none.
class NotingOverlayer : public zel_Overlayer<Label, bool> {
public:
    NotingOverlayer() { m_voxel.MakeRoom(1, 1, 1); }
    void Overlay(std::size_t buffer, ColourBuffer& picture) const override {
        log.push_back("overlay " + std::to_string(buffer) + " in " + std::to_string(picture.width) + " by " +
                      std::to_string(picture.height));
    }
    bool SetPosition(bool, const wxString&, const wxRect*) override { return false; }
    bool LoadOverlay(bool whole, const kep::Vector3d<std::size_t>& size, const kep::Vector3d<float>& offset,
                     const kep::Resolution& resolution) override {
        EXPECT_FALSE(whole);
        EXPECT_EQ(offset, kep::Vector3d<float>(3, 0, 0));
        EXPECT_EQ(resolution, kep::Resolution(1, 1, 1));
        log.push_back("load " + Text(size));
        return false;
    }
    bool IsEmpty(bool, std::size_t frame) const override { return emptyFrames.count(frame) != 0; }
    std::size_t Buffer_Create(zel_OverlayWindowType type) override {
        log.push_back("create " + std::to_string(type));
        return 10U + static_cast<std::size_t>(type);
    }
    void Buffer_SetDim(std::size_t buffer, const kep::Vector3d<std::size_t>& size, const kep::Vector3d<float>& offset,
                       const kep::Vector3d<float>& resolution) override {
        EXPECT_EQ(resolution, kep::Vector3d<float>(1, 1, 1));
        offsets[buffer] = offset;
        log.push_back("place " + std::to_string(buffer) + " on " + Text(size));
    }
    void Buffer_Render(std::size_t buffer, std::size_t frame) override {
        log.push_back("render " + std::to_string(buffer) + " of " + std::to_string(frame));
    }
    const kep::LabeledImage3d<Label, bool>* GetLabeledImage(bool, bool, std::size_t frame) const override {
        return IsEmpty(false, frame) ? nullptr : &m_voxel;
    }
    Label Buffer_GetValue(std::size_t, const kep::Vector3d<std::size_t>&) const override { return 0; }

    static std::string Text(const kep::Vector3d<std::size_t>& size) {
        return std::to_string(size.x) + " " + std::to_string(size.y) + " " + std::to_string(size.z);
    }

    mutable Log log;
    std::set<std::size_t> emptyFrames;
    std::map<std::size_t, kep::Vector3d<float>> offsets;

private:
    kep::LabeledImage3d<Label, bool> m_voxel;
};

class CountingMapper : public zel_Mapper<unsigned char> {
public:
    void Map(const unsigned char* data, ColourBuffer& buffer) const override {
        ++maps;
        for (int i = 0; i < buffer.width * buffer.height; ++i)
            buffer.data[i] = {data[i], data[i], data[i]};
    }
    mutable int maps = 0;
};

class OpenCanvas : public zel_LabeledImageViewer3dCanvas<unsigned char, Label, bool> {
public:
    using Base = zel_LabeledImageViewer3dCanvas<unsigned char, Label, bool>;
    using Base::Base;
    using Base::IsColourDirty;
    using Base::IsDataDirty;
    using Base::IsOverlayDirty;
    using Base::SetOverlayDirty;
    void UpdateIsosurface() override { ++isosurfaces; }
    int isosurfaces = 0;
};

constexpr zel_ProjectionType types[] = {zel_PT_XY, zel_PT_XZ, zel_PT_YZ};

class LabeledCanvas : public GuiTest {
protected:
    /// 9 x 8 x 5 voxels of one micron, from x = 3 on.
    void Open(std::size_t frames = 1) {
        image = MakeImage<unsigned char>({9, 8, 5}, frames, [](auto x, auto, auto, auto) { return x; });
        image->SetOffset({3, 0, 0});
        frame = new wxFrame(nullptr, wxID_ANY, "title");
        canvas =
            new OpenCanvas(frame, mapper, overlayer, image.get(), false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
        HideDecorations(*canvas);
        ASSERT_TRUE(ShowAndWait(*frame));
        ASSERT_TRUE(ResizeClient(*frame, {300, 280}));
        Settle();
    }
    /// Waits until the windows that are shown have painted what has changed.
    void Settle() {
        Pump();
        ASSERT_TRUE(WaitUntil([&] {
            canvas->Update();
            return std::all_of(std::begin(types), std::end(types), [&](zel_ProjectionType type) {
                const bool hasLabels = !overlayer.IsEmpty(false, static_cast<std::size_t>(canvas->GetTime()));
                return !canvas->IsDrWinShown(type) || canvas->IsMapperDetached() ||
                       !(canvas->IsDataDirty(type) || canvas->IsColourDirty(type) ||
                         (hasLabels && canvas->IsOverlayDirty(type)));
            });
        }));
        Pump();
    }
    void TearDown() override {
        if (frame != nullptr)
            frame->Destroy();
        GuiTest::TearDown();
    }
    /// What was asked since, in the order of the windows XY, XZ, YZ, whichever was painted first.
    Log TakeLog() {
        Log log = std::exchange(overlayer.log, {});
        const auto windowOf = [](const std::string& line) { return (line[line.find(' ') + 2] - '1') % 3; };
        std::stable_sort(log.begin(), log.end(),
                         [&](const std::string& a, const std::string& b) { return windowOf(a) < windowOf(b); });
        return log;
    }
    /// What an act makes the overlayer do until all windows are painted.
    template <typename Act>
    Log AskedBy(const Act& act) {
        overlayer.log.clear();
        mapper.maps = 0;
        act();
        Settle();
        return TakeLog();
    }
    void SendChanged(bool reload) {
        zel_OverlayingEvent event(reload, reload);
        canvas->OverlayingChanged(event);
    }

    CountingMapper mapper;
    NotingOverlayer overlayer;
    std::unique_ptr<mor::Image4d<unsigned char>> image;
    wxFrame* frame = nullptr;
    OpenCanvas* canvas = nullptr;
};

const Log onlyOverlays{"overlay 11 in 9 by 8", "overlay 12 in 9 by 5", "overlay 13 in 8 by 5"};
const Log resampled{
    "place 11 on 9 8 1", "place 14 on 9 8 1", "render 11 of 0", "overlay 11 in 9 by 8",
    "place 12 on 9 1 5", "place 15 on 9 1 5", "render 12 of 0", "overlay 12 in 9 by 5",
    "place 13 on 1 8 5", "place 16 on 1 8 5", "render 13 of 0", "overlay 13 in 8 by 5",
};

} // namespace

TEST_F(LabeledCanvas, MakesSixBuffersInTheOrderOfTheirTypes) {
    frame = new wxFrame(nullptr, wxID_ANY, "title");
    canvas = new OpenCanvas(frame, mapper, overlayer, nullptr, true, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    EXPECT_EQ(overlayer.log, (Log{"create 1", "create 2", "create 3", "create 4", "create 5", "create 6"}));
    EXPECT_EQ(&canvas->GetOverlayer(), &overlayer);
    for (const zel_ProjectionType type : types)
        EXPECT_TRUE(canvas->IsOverlayDirty(type));
}

TEST_F(LabeledCanvas, RendersACutWhenItIsResampled) {
    Open();
    EXPECT_EQ(AskedBy([&] { canvas->MakeDirtyAndRefresh(zel_PT_ALL); }), resampled);
    EXPECT_EQ(overlayer.offsets[11], kep::Vector3d<float>(3, 0, 2.5F)) << "the middle of 5 layers";
    EXPECT_EQ(overlayer.offsets[14], overlayer.offsets[11]);
    EXPECT_EQ(overlayer.offsets[12], kep::Vector3d<float>(3, 4.5F, 0));
    EXPECT_EQ(overlayer.offsets[13], kep::Vector3d<float>(7.5F, 0, 0));
    EXPECT_EQ(AskedBy([&] { canvas->Refresh(false); }), Log{}) << "any other paint only blits";
    for (const zel_ProjectionType type : types)
        EXPECT_FALSE(canvas->IsOverlayDirty(type));
    EXPECT_EQ(AskedBy([&] { PressKey(*canvas->GetDrWin(zel_PT_XY), WXK_PAGEDOWN); }),
              (Log{"place 11 on 9 8 1", "place 14 on 9 8 1", "render 11 of 0", "overlay 11 in 9 by 8"}))
        << "the window whose cut moves";
}

TEST_F(LabeledCanvas, RepaintsAChangedOverlayWithoutResampling) {
    Open();
    EXPECT_EQ(AskedBy([&] { SendChanged(false); }), onlyOverlays);
    EXPECT_EQ(mapper.maps, 3) << "mapped again, as the old colours are painted over";
    EXPECT_EQ(AskedBy([&] {
                  zel_MappingEvent event;
                  canvas->MappingChanged(event);
              }),
              onlyOverlays)
        << "and so after a change of the mapping";
    canvas->SetOverlayDirty(zel_PT_XZ, true);
    EXPECT_EQ(AskedBy([&] { canvas->Refresh(false); }), Log{"overlay 12 in 9 by 5"});
    EXPECT_EQ(mapper.maps, 1);
}

TEST_F(LabeledCanvas, RendersAProjectionWhenItIsColoured) {
    Open();
    const Log coloured{"render 14 of 0",       "overlay 14 in 9 by 8", "render 15 of 0",
                       "overlay 15 in 9 by 5", "render 16 of 0",       "overlay 16 in 8 by 5"};
    Log placed;
    for (const char* window : {"1", "2", "3"}) {
        const auto size = window[0] == '1' ? "9 8 1" : window[0] == '2' ? "9 1 5" : "1 8 5";
        const auto i = static_cast<std::size_t>(window[0] - '1');
        const std::string projection = std::to_string(14 + i);
        placed.push_back(std::string("place 1") + window + " on " + size);
        placed.push_back("place " + projection + " on " + size);
        placed.push_back(coloured[2 * i]);
        placed.push_back(coloured[2 * i + 1]);
    }
    EXPECT_EQ(AskedBy([&] { canvas->ChangeContent(zel_PC_AUTOFOCUS, zel_PT_ALL); }), placed);
    EXPECT_EQ(overlayer.offsets[14], kep::Vector3d<float>(3, 0, 0));
    EXPECT_EQ(overlayer.offsets[16], kep::Vector3d<float>(0, 0, 0));
    EXPECT_EQ(AskedBy([&] { SendChanged(false); }), coloured);
    EXPECT_EQ(AskedBy([&] { canvas->ChangeContent(zel_PC_CUT, zel_PT_ALL); }), resampled);
}

TEST_F(LabeledCanvas, ReloadAsksTheOverlayerAndResamples) {
    Open();
    Log log = AskedBy([&] { SendChanged(true); });
    const auto load = std::find(log.begin(), log.end(), "load 9 8 5");
    ASSERT_NE(load, log.end());
    log.erase(load);
    EXPECT_EQ(log, resampled);
}

TEST_F(LabeledCanvas, AFrameWithoutLabelsIsDrawnAsByTheTypedCanvas) {
    overlayer.emptyFrames = {1};
    Open(3);
    EXPECT_EQ(AskedBy([&] { canvas->ShowNextImage(); }), Log{});
    EXPECT_EQ(mapper.maps, 3);
    for (const zel_ProjectionType type : types) {
        EXPECT_TRUE(canvas->IsOverlayDirty(type)) << "stays set";
        EXPECT_FALSE(canvas->IsColourDirty(type));
    }
    EXPECT_EQ(AskedBy([&] { canvas->Refresh(false); }), Log{});
    EXPECT_EQ(mapper.maps, 0) << "and brings no colour stage with every paint";
    EXPECT_EQ(AskedBy([&] { SendChanged(false); }), Log{});
    EXPECT_EQ(mapper.maps, 0);
    Log next;
    for (const std::string& line : resampled)
        next.push_back(line.substr(0, 6) == "render" ? line.substr(0, line.size() - 1) + "2" : line);
    EXPECT_EQ(AskedBy([&] { canvas->ShowNextImage(); }), next) << "the next frame has labels again";
}

TEST_F(LabeledCanvas, LabelsThatComeLaterAreRenderedWithoutResamplingTheImage) {
    overlayer.emptyFrames = {0};
    Open();
    EXPECT_EQ(AskedBy([&] { canvas->MakeDirtyAndRefresh(zel_PT_ALL); }), Log{});
    overlayer.emptyFrames.clear();
    EXPECT_EQ(AskedBy([&] { SendChanged(false); }), resampled);
    EXPECT_EQ(AskedBy([&] { SendChanged(false); }), onlyOverlays) << "once";
}

TEST_F(LabeledCanvas, TimeAndDataMakeOverlaysStale) {
    Open(2);
    canvas->OnDataChange();
    for (const zel_ProjectionType type : types)
        EXPECT_TRUE(canvas->IsOverlayDirty(type));
    EXPECT_EQ(canvas->isosurfaces, 0);
    Settle();
    canvas->OnTimeChange();
    for (const zel_ProjectionType type : types)
        EXPECT_TRUE(canvas->IsOverlayDirty(type));
    EXPECT_EQ(canvas->isosurfaces, 1);
}

TEST_F(LabeledCanvas, AHiddenWindowIsDoneWhenItIsShown) {
    Open();
    canvas->ShowDrWin(zel_PT_XZ, false);
    Settle();
    const Log log = AskedBy([&] { SendChanged(false); });
    EXPECT_EQ(std::count_if(log.begin(), log.end(), [](const auto& line) { return line.find(" 12 ") != line.npos; }),
              0);
    EXPECT_TRUE(canvas->IsOverlayDirty(zel_PT_XZ));
    canvas->ShowDrWin(zel_PT_XZ, true);
    Settle();
    EXPECT_FALSE(canvas->IsOverlayDirty(zel_PT_XZ));
}

TEST_F(LabeledCanvas, WithoutAnImageOnlyRefreshes) {
    frame = new wxFrame(nullptr, wxID_ANY, "title");
    canvas = new OpenCanvas(frame, mapper, overlayer, nullptr, false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    ASSERT_TRUE(ShowAndWait(*frame));
    overlayer.log.clear();
    SendChanged(true);
    SendChanged(false);
    canvas->OnTimeChange();
    canvas->OnDataChange();
    canvas->Update();
    EXPECT_EQ(overlayer.log, Log{});
}

TEST_F(LabeledCanvas, LeavesAnOverlayerAloneThatMayBeGone) {
    Open();
    canvas->DetachMapper();
    EXPECT_EQ(AskedBy([&] {
                  SendChanged(true);
                  SendChanged(false);
                  canvas->MakeDirtyAndRefresh(zel_PT_ALL);
                  canvas->OnTimeChange();
                  canvas->ToggleAxisReverse(0);
              }),
              Log{});
}

TEST_F(LabeledCanvas, KeepsTheImageOfACallerWhoseOverlayerThrows) {
    class Throwing : public NotingOverlayer {
    public:
        std::size_t Buffer_Create(zel_OverlayWindowType type) override {
            if (type == zel_OverlayWindowAutofocusYZ)
                throw std::bad_alloc();
            return 0;
        }
    } throwing;
    const auto owned = MakeImage<unsigned char>({3, 2, 1}, 1, [](auto x, auto, auto, auto) { return x; });
    frame = new wxFrame(nullptr, wxID_ANY, "title");
    EXPECT_THROW(OpenCanvas(frame, mapper, throwing, owned.get(), true, wxID_ANY, wxDefaultPosition, wxDefaultSize),
                 std::bad_alloc);
    EXPECT_EQ(owned->GetVoxel(2, 1, 0, 0), 2);
}
