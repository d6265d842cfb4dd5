#include "mapping/zel_complexmapping.h"
#include "mapping/zel_rgbmapping.h"
#include "tests/mapping/viewer_fixture.h"
#include "tests/support/text_of.h"

#include <limits>

using namespace zel;
using namespace zel::test;

namespace {

template <typename T>
zel_Viewer3dFrame* Open(mor::Image4d<T>* image, bool owned, wxWindow* parent = nullptr, wxSize size = wxDefaultSize) {
    return zel_CreateImage3dFrame<T>(image, owned, parent, 4711, "a title", wxPoint(30, 40), size,
                                     wxDEFAULT_FRAME_STYLE);
}

/// A voxel frame that tells when it goes.
class WatchedFrame : public kep::Image3d<unsigned char> {
public:
    explicit WatchedFrame(bool& gone) : m_gone(gone) {
        SetResolution(kep::Resolution(1, 1, 1));
        MakeRoom(5, 4, 3);
    }
    ~WatchedFrame() override { m_gone = true; }

private:
    bool& m_gone;
};

std::unique_ptr<mor::Image4d<unsigned char>> Watched(bool& gone) {
    const kep::Resolution resolution(1, 1, 1);
    auto image = std::make_unique<mor::Image4d<unsigned char>>(nullptr, &resolution);
    image->MakeRoom(5, 4, 3, 0);
    image->InsertFrame(new WatchedFrame(gone), "watched", -1);
    return image;
}

void DestroyAll() {
    while (!wxTopLevelWindows.empty()) {
        wxTopLevelWindows.GetFirst()->GetData()->Destroy();
        Pump();
    }
}

using ViewerFactory = GuiTest;

template <typename T>
T VoxelOf(std::size_t x) {
    if constexpr (std::is_arithmetic_v<T>)
        return static_cast<T>(x);
    else if constexpr (HistogramSet<T>::channelCount == 3)
        return T(static_cast<decltype(T::red)>(x), 0, 0);
    else
        return T(static_cast<float>(x), 0.0F);
}

/// @tparam Module  the mapping module that the type has
template <typename T, typename Module>
void ExpectViewer(const char* typeName) {
    const auto image = MakeImage<T>({200, 150, 40}, 3, [](auto x, auto, auto, auto) { return VoxelOf<T>(x); });
    auto* const frame = Open(image.get(), false);
    EXPECT_FALSE(frame->IsShown());
    EXPECT_EQ(frame->GetTitle(), "a title");
    EXPECT_EQ(frame->GetId(), 4711);
    EXPECT_EQ(frame->GetName(), wxFrameNameStr);
    EXPECT_EQ(frame->GetParent(), nullptr);
    ASSERT_EQ(frame->GetMenuBar()->GetMenuCount(), 3U);
    EXPECT_EQ(frame->GetMenuBar()->GetMenuLabel(0), "&Sequence");
    EXPECT_EQ(frame->GetMenuBar()->GetMenuLabel(1), "&View");
    EXPECT_EQ(frame->GetMenuBar()->GetMenuLabel(2), "&Mapping");
    auto* const canvas = dynamic_cast<zel_ImageViewer3dCanvas<T>*>(frame->GetCanvas());
    ASSERT_NE(canvas, nullptr);
    EXPECT_EQ(canvas->GetImageTypeName(), typeName);
    EXPECT_EQ(canvas->GetImage(), image.get());
    EXPECT_EQ(canvas->GetImageCount(), 3);
    auto* const module = dynamic_cast<Module*>(frame->GetEventHandler());
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(&canvas->GetMapper(), static_cast<zel_Mapper<T>*>(module));
    EXPECT_EQ(module->GetFrame(), frame);
    const auto& histograms = module->GetHistograms();
    if constexpr (HistogramSet<T>::channelCount == 1)
        EXPECT_EQ(histograms.Get().GetSum(), 3U * 200 * 150 * 40);
    else
        EXPECT_EQ(histograms.Get(1).GetSum(), 3U * 200 * 150 * 40);
    EXPECT_TRUE(ShowAndWait(*frame));
    // 200 + 40 and 150 + 40, and 6 around each window
    EXPECT_TRUE(WaitUntil([&] { return frame->GetClientSize() == wxSize(252, 202); })) << frame->GetClientSize().x;
    frame->Destroy();
    Pump();
}

} // namespace

TEST_F(ViewerFactory, MakesFrameModuleAndCanvasForEachType) {
    LogCatcher log; // what colour and complex images can't do
    ExpectViewer<unsigned char, zel_GrayMappingModule<unsigned char>>("GRAY8");
    ExpectViewer<unsigned short, zel_GrayMappingModule<unsigned short>>("GRAY16");
    ExpectViewer<float, zel_GrayMappingModule<float>>("float");
    ExpectViewer<kep::RGB_generic<unsigned char>, zel_RGBMappingModule<unsigned char>>("RGB");
    ExpectViewer<kep::RGB_generic<unsigned short>, zel_RGBMappingModule<unsigned short>>("RGB16");
    ExpectViewer<std::complex<float>, zel_ComplexMappingModule<float>>("complex");
}

TEST_F(ViewerFactory, AnySizeEndsAtThatOfTheImage) {
    const auto image = MakeImage<unsigned char>({200, 150, 40}, 1, [](auto x, auto, auto, auto) { return x; });
    for (const wxSize size : {wxDefaultSize, wxSize(1500, 1100), wxSize(230, 210)}) {
        auto* const frame = Open(image.get(), false, nullptr, size);
        EXPECT_TRUE(ShowAndWait(*frame));
        EXPECT_TRUE(WaitUntil([&] { return frame->GetClientSize() == wxSize(252, 202); }))
            << size.x << ": " << frame->GetClientSize().x << " by " << frame->GetClientSize().y;
        frame->Destroy();
        Pump();
    }
}

TEST_F(ViewerFactory, ALargeImageIsLimitedToTheDisplay) {
    const auto image = MakeImage<unsigned char>({2500, 1500, 2}, 1, [](auto, auto, auto, auto) { return 1; });
    auto* const frame = Open(image.get(), false);
    EXPECT_TRUE(ShowAndWait(*frame));
    const wxSize display = wxGetClientDisplayRect().GetSize();
    EXPECT_TRUE(WaitUntil([&] { return frame->GetSize().x <= display.x && frame->GetSize().y <= display.y; }));
    EXPECT_GT(frame->GetSize().x, display.x / 2);
    frame->Destroy();
}

TEST_F(ViewerFactory, TheCanvasDeletesTheImageThatItOwns) {
    bool gone = false;
    auto* const frame = Open(Watched(gone).release(), true);
    EXPECT_TRUE(ShowAndWait(*frame));
    EXPECT_FALSE(gone);
    frame->Destroy();
    Pump();
    EXPECT_TRUE(gone);
}

TEST_F(ViewerFactory, TheHostKeepsTheImageThatIsItsOwn) {
    bool gone = false;
    {
        const auto image = Watched(gone);
        auto* const frame = Open(image.get(), false);
        EXPECT_TRUE(ShowAndWait(*frame));
        frame->Destroy();
        Pump();
        EXPECT_FALSE(gone);
        EXPECT_EQ(image->GetVoxel(4, 3, 2, 0), image->GetImage(0)->GetVoxel(4, 3, 2));
    }
    EXPECT_TRUE(gone);
}

TEST_F(ViewerFactory, AViewerThatIsNeverShownGoesAsWell) {
    bool gone = false;
    Open(Watched(gone).release(), true)->Destroy();
    Pump();
    EXPECT_TRUE(gone);
}

TEST_F(ViewerFactory, AViewerGoesWithItsParent) {
    bool gone = false;
    auto* const parent = new wxFrame(nullptr, wxID_ANY, "host");
    auto* const frame = Open(Watched(gone).release(), true, parent);
    EXPECT_EQ(frame->GetParent(), parent);
    EXPECT_TRUE(ShowAndWait(*frame));
    parent->Destroy();
    Pump();
    EXPECT_TRUE(gone);
}

TEST_F(ViewerFactory, SeveralViewersLiveSideBySide) {
    const auto image =
        MakeImage<unsigned short>({60, 50, 9}, 2, [](auto x, auto y, auto, auto) { return 100 * x + y; });
    auto* const first = Open(image.get(), false);
    auto* const second = Open(image.get(), false);
    EXPECT_TRUE(ShowAndWait(*first));
    EXPECT_TRUE(ShowAndWait(*second));
    EXPECT_TRUE(first->ProcessCommand(6039 + zel_PE_LABELS));
    EXPECT_EQ(dynamic_cast<zel_GrayMappingModule<unsigned short>&>(*first->GetEventHandler()).GetPaletteMode(), 10);
    EXPECT_EQ(dynamic_cast<zel_GrayMappingModule<unsigned short>&>(*second->GetEventHandler()).GetPaletteMode(), 8);
    first->Destroy();
    Pump();
    EXPECT_TRUE(second->ProcessCommand(6039 + zel_PE_PERIODIC));
    second->GetCanvas()->Update();
    second->Destroy();
}

TEST_F(ViewerFactory, TheMappingKnowsTheVoxelsAsTheyAreNow) {
    // The extremes that the image keeps are old; those of the copy that the mapping is made from are not.
    const auto image = MakeImage<float>({9, 8, 7}, 1, [](auto x, auto, auto, auto) { return x; });
    image->SetVoxel(0, 0, 0, 0, -50.0F);
    auto* const frame = Open(image.get(), false);
    const auto& module = dynamic_cast<zel_GrayMappingModule<float>&>(*frame->GetEventHandler());
    EXPECT_EQ(module.GetRangeMin(), -50.0F);
    EXPECT_EQ(module.GetRangeMax(), 8.0F);
    EXPECT_EQ(image->GetCachedMinValue(), 0.0F);
    frame->Destroy();
}

TEST_F(ViewerFactory, FailuresReachTheHostWhichKeepsTheImage) {
    const auto constant = MakeImage<float>({4, 4, 4}, 2, [](auto, auto, auto, auto) { return 1.5F; });
    EXPECT_EQ(TextOf([&] { Open(constant.get(), true); }),
              "Consistency check failed. Constant images are not supported! (Value=1.500000)");
    mor::Image4d<unsigned char> empty;
    EXPECT_EQ(TextOf([&] { Open(&empty, true); }), "Consistency check failed. Empty images are not supported!");
    const auto inconsistent = MakeImage<unsigned char>({4, 4, 4}, 2, [](auto x, auto, auto, auto) { return x; });
    inconsistent->GetImage(1)->SetOffset({1, 2, 3});
    EXPECT_EQ(TextOf([&] { Open(inconsistent.get(), true); }),
              "Image4d, copy constructor: Source image is not consistent!");
    EXPECT_EQ(constant->GetVoxel(3, 3, 3, 1), 1.5F);
    Pump();
    EXPECT_EQ(wxTopLevelWindows.size(), 3U) << "the half-made frames, and no notice";
    DestroyAll();
}

TEST_F(ViewerFactory, AHalfMadeFrameGoesWithItsParent) {
    auto* const parent = new wxFrame(nullptr, wxID_ANY, "host");
    mor::Image4d<float> empty;
    EXPECT_THROW(Open(&empty, false, parent), kep::InternalException);
    parent->Destroy();
    Pump();
    EXPECT_TRUE(wxTopLevelWindows.empty());
}
