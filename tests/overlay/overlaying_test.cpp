// Overlayer, buffers, rendering and blending, without a window.

#include "overlay/zel_basicoverlayingmodule.h"
#include "overlay/zel_overlayingevents.h"
#include "tests/overlay/label_images.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

using namespace zel;
using namespace zel::test;

namespace {

using Label = unsigned short;
using Colour = kep::RGB_generic<unsigned char>;
using Rows = std::vector<std::vector<int>>;
using Size3 = kep::Vector3d<std::size_t>;

constexpr zel_OverlayWindowType allTypes[] = {
    zel_OverlayWindowWhole,       zel_OverlayWindowCutXY,       zel_OverlayWindowCutXZ,      zel_OverlayWindowCutYZ,
    zel_OverlayWindowAutofocusXY, zel_OverlayWindowAutofocusXZ, zel_OverlayWindowAutofocusYZ};

/// A module whose colours name label and buffer, and that notes what it was asked.
template <typename V>
class OpenModule : public zel_BasicOverlayingModule<Label, V> {
public:
    explicit OpenModule(LabelImage<V>* image, bool owns = false)
        : zel_BasicOverlayingModule<Label, V>(nullptr, image, owns) {}
    using zel_BasicOverlayingModule<Label, V>::ComputeBoundary;
    using zel_BasicOverlayingModule<Label, V>::GetLabelColour;

    /// A buffer of one voxel a micron whose window sees from `offset` on.
    std::size_t Make(zel_OverlayWindowType type, Size3 size, kep::Vector3d<float> offset = {}) {
        const std::size_t buffer = this->Buffer_Create(type);
        this->Buffer_SetDim(buffer, size, offset, {1, 1, 1});
        return buffer;
    }
    /// A layer row by row; boundaries come out as 1000 more than their label.
    Rows Layer(std::size_t buffer, std::size_t layer) const {
        const zel_OverlayBuffer<Label>& labels = *this->GetBuffer(buffer);
        Rows rows(labels.GetHeight(), std::vector<int>(labels.GetWidth()));
        const Label* voxel = labels.GetLayer(layer).begin();
        for (auto& row : rows)
            for (int& value : row) {
                value = (*voxel & 0x7FFF) + ((*voxel & 0x8000) != 0 ? 1000 : 0);
                ++voxel;
            }
        return rows;
    }
};

class NamedColours : public OpenModule<unsigned char> {
public:
    using OpenModule<unsigned char>::OpenModule;

protected:
    Colour GetLabelColour(Label label, std::size_t buffer) const override {
        return {static_cast<unsigned char>(label), static_cast<unsigned char>(buffer), 255};
    }
};

/// 1 + x + 10 y + 100 z, in a frame below 9 x 9 x 9.
Label Named(std::size_t x, std::size_t y, std::size_t z, std::size_t) {
    return static_cast<Label>(1 + x + 10 * y + 100 * z);
}

std::vector<Colour> Painted(const zel_Overlayer<Label, unsigned char>& overlayer, std::size_t buffer, int width,
                            int height, Colour under = {40, 40, 40}) {
    ColourBuffer picture(width, height);
    const auto count = static_cast<std::size_t>(width * height);
    std::fill_n(picture.data, count, under);
    overlayer.Overlay(buffer, picture);
    return {picture.data, picture.data + count};
}

} // namespace

TEST(OverlayBuffer, ChoosesItsAxesByItsWindowType) {
    struct Case {
        int type;
        std::size_t width, height;
    };
    for (const auto& [type, width, height] :
         {Case{0, 7, 5}, {1, 7, 5}, {2, 7, 3}, {3, 5, 3}, {4, 7, 5}, {5, 7, 3}, {6, 5, 3}}) {
        zel_OverlayBuffer<Label> buffer(static_cast<zel_OverlayWindowType>(type));
        EXPECT_EQ(buffer.GetWindowType(), type);
        EXPECT_EQ(buffer.GetWidth(), 0U) << "without room";
        EXPECT_EQ(buffer.GetHeight(), 0U);
        EXPECT_EQ(buffer.GetLayersCount(), 0U);
        buffer.GetLayer(1).MakeRoom(2, 2, 2);
        EXPECT_EQ(buffer.GetWidth(), 0U) << "layer 0 decides";
        buffer.GetLayer(0).MakeRoom(7, 5, 3);
        EXPECT_EQ(buffer.GetWidth(), width) << type;
        EXPECT_EQ(buffer.GetHeight(), height) << type;
        buffer.SetLayersCount(2);
        const zel_OverlayBuffer<Label> copy = buffer; // NOLINT: that it is one
        EXPECT_EQ(copy.GetLayersCount(), 2U);
        EXPECT_EQ(copy.GetWidth(), width);
        EXPECT_NE(copy.GetLayer(0).begin(), buffer.GetLayer(0).begin());
    }
}

TEST(Overlayer, StartsOffAndCovering) {
    OpenModule<bool> module(nullptr);
    EXPECT_FALSE(module.GetOverlaying());
    EXPECT_EQ(module.GetTransparency(), 0.0F);
    module.SetOverlaying(true);
    module.SetTransparency(0.3F);
    EXPECT_TRUE(module.GetOverlaying());
    EXPECT_EQ(module.GetTransparency(), 0.3F);
}

namespace {

/// An overlayer of a host's that has no palette.
class BareOverlayer : public zel_Overlayer<Label, bool> {
public:
    void Overlay(std::size_t, ColourBuffer&) const override {}
    bool SetPosition(bool, const wxString&, const wxRect*) override { return true; }
    bool LoadOverlay(bool, const Size3&, const kep::Vector3d<float>&, const kep::Resolution&) override { return true; }
    bool IsEmpty(bool, std::size_t) const override { return true; }
    std::size_t Buffer_Create(zel_OverlayWindowType) override { return 0; }
    void Buffer_SetDim(std::size_t, const Size3&, const kep::Vector3d<float>&, const kep::Vector3d<float>&) override {}
    void Buffer_Render(std::size_t, std::size_t) override {}
    const kep::LabeledImage3d<Label, bool>* GetLabeledImage(bool, bool, std::size_t) const override { return nullptr; }
    Label Buffer_GetValue(std::size_t, const Size3&) const override { return 0; }
    using zel_Overlayer<Label, bool>::SetPalette;
};

} // namespace

TEST(Overlayer, HasNoPaletteAtFirstAndKeepsACopyOfTheLastOne) {
    BareOverlayer overlayer;
    EXPECT_EQ(overlayer.GetPalette(), nullptr);
    EXPECT_EQ(overlayer.GetPaletteSize(), 0U);
    const BareOverlayer copy = overlayer; // NOLINT: shallow, but neither has a palette
    EXPECT_EQ(copy.GetPalette(), nullptr);
    overlayer.SetPalette({{1, 2, 3}, {4, 5, 6}});
    overlayer.SetPalette({{7, 8, 9}});
    EXPECT_EQ(overlayer.GetPaletteSize(), 1U);
    EXPECT_EQ(overlayer.GetPalette()[0], Colour(7, 8, 9));
}

TEST(OverlayingPalette, IsThe14ColoursOrTheUsers) {
    OpenModule<unsigned char> module(nullptr);
    EXPECT_TRUE(module.IsDefaultPalette());
    EXPECT_EQ(module.GetColour(), wxColour(255, 0, 0));
    EXPECT_EQ(module.GetMenu(), nullptr);
    ASSERT_EQ(module.GetPaletteSize(), 14U);
    const Colour some[] = {{255, 255, 255}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 0, 255}};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(module.GetPalette()[i], some[i]);
    EXPECT_EQ(module.GetPalette()[13], Colour(128, 128, 128));
    EXPECT_EQ(module.GetLabelColour(13, 0), Colour(128, 128, 128));
    EXPECT_EQ(module.GetLabelColour(14, 0), Colour(255, 255, 255)) << "label modulo 14";
    EXPECT_EQ(module.GetLabelColour(65535, 3), Colour(255, 0, 0)) << "65535 = 4681 * 14 + 1";

    module.SetColour(wxColour(10, 20, 30));
    EXPECT_EQ(module.GetPaletteSize(), 14U) << "no new palette by that";
    module.SetPal();
    EXPECT_EQ(module.GetPaletteSize(), 14U) << "nor while the default one is in use";
    EXPECT_EQ(module.GetColour(), wxColour(10, 20, 30));
}

TEST(OverlayingEvents, AreTwoTypesThatCloneWhatTheyCarry) {
    const zel_OverlayingEvent reload(true, true);
    const std::unique_ptr<wxEvent> clone(reload.Clone());
    EXPECT_TRUE(dynamic_cast<zel_OverlayingEvent&>(*clone).GetReload());
    EXPECT_TRUE(dynamic_cast<zel_OverlayingEvent&>(*clone).GetDataChanged());
    const zel_OverlayingEvent half(true, false);
    EXPECT_TRUE(half.GetDataChanged());
    EXPECT_FALSE(half.GetReload());

    auto cause = std::make_unique<wxCommandEvent>(wxEVT_MENU, 6070);
    cause->SetString("why");
    zel_OverlayingCommandEvent event(*cause);
    int module = 0;
    event.SetClientData(&module);
    cause.reset();
    const std::unique_ptr<wxEvent> eventClone(event.Clone());
    const auto& told = dynamic_cast<zel_OverlayingCommandEvent&>(*eventClone);
    EXPECT_NE(told.GetCommandEvent(), event.GetCommandEvent());
    EXPECT_EQ(told.GetCommandEvent()->GetId(), 6070);
    EXPECT_EQ(told.GetCommandEvent()->GetString(), "why");
    EXPECT_EQ(told.GetClientData(), &module);
    EXPECT_EQ(told.GetId(), 0);
    EXPECT_EQ(reload.GetId(), 0);
    EXPECT_EQ(told.GetEventType(), wxEventType(zel_EVT_OVERLAYING_COMMAND));
    EXPECT_NE(reload.GetEventType(), told.GetEventType());
}

TEST(BasicOverlaying, WithoutLabelsHasNone) {
    LabelImage<unsigned char> none;
    for (LabelImage<unsigned char>* image : {static_cast<LabelImage<unsigned char>*>(nullptr), &none}) {
        OpenModule<unsigned char> module(image);
        module.SetOverlaying(true);
        EXPECT_TRUE(module.IsEmpty(false, 0));
        EXPECT_TRUE(module.IsEmpty(true, 7));
        EXPECT_EQ(module.GetLabeledImage(false, false, 0), nullptr);
        for (const zel_OverlayWindowType type : allTypes) {
            const std::size_t buffer = module.Make(type, {1, 1, 1});
            module.Buffer_Render(buffer, 0);
            EXPECT_EQ(module.GetBuffer(buffer)->GetLayersCount(), 0U);
            EXPECT_EQ(Painted(module, buffer, 1, 1), (std::vector<Colour>{{40, 40, 40}}));
        }
        EXPECT_FALSE(module.SetPosition(true, "name", nullptr));
        EXPECT_FALSE(module.LoadOverlay(false, {1, 1, 1}, {}, {}));
    }
}

TEST(BasicOverlaying, KnowsItsFrames) {
    const auto labels = MakeLabels<bool>({3, 2, 2}, 2, Named);
    labels->GetImage(1)->DisposeData();
    const OpenModule<bool> module(labels.get());
    EXPECT_FALSE(module.IsEmpty(false, 0));
    EXPECT_TRUE(module.IsEmpty(false, 1)) << "without voxels";
    EXPECT_TRUE(module.IsEmpty(false, 2)) << "beyond the last";
    EXPECT_EQ(module.GetLabeledImage(true, false, 0), labels->GetImage(0));
    EXPECT_EQ(module.GetLabeledImage(false, true, 1), labels->GetImage(1));
    EXPECT_EQ(module.GetLabeledImage(false, false, 2), nullptr);
    EXPECT_EQ(module.GetHighestBit(), 32768);
}

TEST(BasicOverlaying, NumbersItsBuffers) {
    OpenModule<bool> module(nullptr);
    for (std::size_t i = 0; i < 7; ++i)
        EXPECT_EQ(module.Buffer_Create(allTypes[i]), i);
    EXPECT_EQ(module.GetBuffer(5)->GetWindowType(), zel_OverlayWindowAutofocusXZ);
    EXPECT_EQ(module.GetBuffer(7), nullptr);
    module.Buffer_Render(7, 0);
    module.SetOverlaying(true);
    ColourBuffer picture(1, 1);
    module.Overlay(7, picture);
    EXPECT_EQ(picture.data[0], Colour());
    module.Buffer_SetDim(3, {1, 4, 6}, {1, 2, 3}, {4, 5, 6});
    for (const std::size_t layer : {0U, 1U}) {
        const auto& image = module.GetBuffer(3)->GetLayer(layer);
        EXPECT_EQ(image.GetSize(), (Size3{1, 4, 6}));
        EXPECT_EQ(image.GetOffset(), (kep::Vector3d<float>(1, 2, 3)));
        EXPECT_EQ(image.GetResolution(), kep::Resolution(4, 5, 6));
    }
}

TEST(BasicOverlaying, CutsTheLabelsAsTheWindowsDo) {
    const auto labels = MakeLabels<unsigned short>(
        {4, 3, 5}, 2, [](auto x, auto y, auto z, auto t) { return t == 0 ? 0 : Named(x, y, z, t); });
    OpenModule<unsigned short> module(labels.get());
    // All labels differ, so all voxels are on boundaries: 1000 more.
    const std::size_t xy = module.Make(zel_OverlayWindowCutXY, {3, 2, 1}, {1, 1, 2.5F});
    module.Buffer_Render(xy, 1);
    EXPECT_EQ(module.Layer(xy, 0), (Rows{{1212, 1213, 1214}, {1222, 1223, 1224}}));
    const std::size_t xz = module.Make(zel_OverlayWindowCutXZ, {2, 1, 3}, {0, 1.5F, 1});
    module.Buffer_Render(xz, 1);
    EXPECT_EQ(module.Layer(xz, 0), (Rows{{1111, 1112}, {1211, 1212}, {1311, 1312}}));
    const std::size_t yz = module.Make(zel_OverlayWindowCutYZ, {1, 3, 2}, {3.5F, 0, 3});
    module.Buffer_Render(yz, 1);
    EXPECT_EQ(module.Layer(yz, 0), (Rows{{1304, 1314, 1324}, {1404, 1414, 1424}}));
    for (const std::size_t buffer : {xy, xz, yz})
        EXPECT_EQ(module.GetBuffer(buffer)->GetLayersCount(), 1U);
    EXPECT_EQ(module.Buffer_GetValue(yz, {0, 2, 1}), 424) << "without the bit";
    module.Buffer_Render(xy, 0);
    EXPECT_EQ(module.Layer(xy, 0), (Rows{{0, 0, 0}, {0, 0, 0}}));
}

TEST(BasicOverlaying, MarksBoundariesInThePicture) {
    // A block of 5 x 5 in the picture, of which the window sees 7 x 5 pixels, doubled in x.
    const auto labels = MakeLabels<bool>(
        {6, 6, 1}, 1, [](auto x, auto y, auto, auto) { return x >= 1 && x < 4 && y >= 1 && y < 5 ? 9 : 0; });
    OpenModule<bool> module(labels.get());
    const std::size_t buffer = module.Buffer_Create(zel_OverlayWindowCutXY);
    module.Buffer_SetDim(buffer, {12, 6, 1}, {0, 0, 0.5F}, {2, 1, 1});
    module.Buffer_Render(buffer, 0);
    EXPECT_EQ(module.Layer(buffer, 0), (Rows{{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
                                             {0, 0, 1009, 1009, 1009, 1009, 1009, 1009, 0, 0, 0, 0},
                                             {0, 0, 1009, 9, 9, 9, 9, 1009, 0, 0, 0, 0},
                                             {0, 0, 1009, 9, 9, 9, 9, 1009, 0, 0, 0, 0},
                                             {0, 0, 1009, 1009, 1009, 1009, 1009, 1009, 0, 0, 0, 0},
                                             {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}}));
    EXPECT_EQ(module.Buffer_GetValue(buffer, {2, 1, 0}), 9);
    EXPECT_EQ(module.Buffer_GetValue(buffer, {3, 2, 0}), 9);
    EXPECT_EQ(module.Buffer_GetValue(buffer, {0, 0, 0}), 0);
}

TEST(BasicOverlaying, PlacesLabelsOfAnotherGridByMicrons) {
    // Labels of 2 microns a voxel that begin at x = 2: the window's pixels are 1 micron.
    const auto labels = MakeLabels<bool>({2, 1, 1}, 1, [](auto x, auto, auto, auto) { return 1 + x; });
    labels->SetResolution({0.5F, 0.5F, 0.5F});
    labels->SetOffset({2, 0, 0});
    OpenModule<bool> module(labels.get());
    const std::size_t buffer = module.Make(zel_OverlayWindowCutXY, {8, 1, 1});
    module.Buffer_Render(buffer, 0);
    EXPECT_EQ(module.Layer(buffer, 0), (Rows{{0, 0, 1001, 1001, 1002, 1002, 0, 0}}));
}

TEST(BasicOverlaying, ProjectsOnceForEachFrameAndPlane) {
    const auto volume = [](auto x, auto y, auto z, auto t) { return x == 1 && y == 2 && z == 3 ? 5 + t : 0; };
    const auto labels = MakeLabels<unsigned char>({3, 4, 5}, 2, volume);
    OpenModule<unsigned char> module(labels.get());
    const std::size_t xy = module.Make(zel_OverlayWindowAutofocusXY, {3, 4, 1});
    const std::size_t xz = module.Make(zel_OverlayWindowAutofocusXZ, {3, 1, 5});
    const std::size_t yz = module.Make(zel_OverlayWindowAutofocusYZ, {1, 4, 5});
    const auto one = [](std::size_t width, std::size_t height, std::size_t x, std::size_t y, int label) {
        Rows rows(height, std::vector<int>(width));
        rows[y][x] = label;
        return rows;
    };
    for (const std::size_t buffer : {xy, xz, yz}) {
        module.Buffer_Render(buffer, 0);
        EXPECT_EQ(module.GetBuffer(buffer)->GetLayersCount(), 2U);
    }
    for (const std::size_t layer : {0U, 1U}) {
        EXPECT_EQ(module.Layer(xy, layer), one(3, 4, 1, 2, 5));
        EXPECT_EQ(module.Layer(xz, layer), one(3, 5, 1, 3, 5));
        EXPECT_EQ(module.Layer(yz, layer), one(4, 5, 2, 3, 5));
    }
    FillLabels(*labels, 0, [](auto, auto, auto, auto) { return 8; });
    FillLabels(*labels, 1, [](auto, auto, auto, auto) { return 8; });
    module.Buffer_Render(xy, 0);
    EXPECT_EQ(module.Layer(xy, 0), one(3, 4, 1, 2, 5)) << "computed before, and kept";
    module.Buffer_Render(xy, 1);
    EXPECT_EQ(module.Layer(xy, 0), Rows(4, {8, 8, 8})) << "this frame was not";
    EXPECT_EQ(module.Layer(xy, 1), (Rows{{8, 8, 8}, {8, 0, 8}, {8, 0, 8}, {8, 8, 8}})) << "outlines";
    module.Buffer_Render(xz, 0);
    EXPECT_EQ(module.Layer(xz, 1), one(3, 5, 1, 3, 5)) << "each plane has its own";
    module.Buffer_Render(xy, 0);
    EXPECT_EQ(module.Layer(xy, 1), one(3, 4, 1, 2, 5));
}

TEST(BasicOverlaying, AFrameBeyondTheLastLeavesTheBufferAsItIs) {
    const auto labels = MakeLabels<unsigned char>({3, 2, 4}, 1, Named);
    OpenModule<unsigned char> module(labels.get());
    for (const zel_OverlayWindowType type : allTypes) {
        const std::size_t buffer = module.Make(type, {1, 1, 1});
        module.Buffer_Render(buffer, 0);
        const Rows before = module.Layer(buffer, 0);
        const std::size_t count = module.GetBuffer(buffer)->GetLayersCount();
        EXPECT_GE(count, 1U);
        module.Buffer_Render(buffer, 1);
        module.Buffer_Render(buffer, 1000000);
        EXPECT_EQ(module.Layer(buffer, 0), before) << type;
        EXPECT_EQ(module.GetBuffer(buffer)->GetLayersCount(), count);
    }
}

TEST(BasicOverlaying, TakesFramesThatAreAddedLater) {
    const auto labels = MakeLabels<unsigned char>({2, 2, 2}, 1, [](auto, auto, auto, auto) { return 3; });
    OpenModule<unsigned char> module(labels.get());
    const std::size_t buffer = module.Make(zel_OverlayWindowAutofocusXY, {2, 2, 1});
    module.Buffer_Render(buffer, 0);
    labels->MakeRoom({2, 2, 2}, 3);
    FillLabels(*labels, 2, [](auto, auto, auto, auto) { return 4; });
    EXPECT_FALSE(module.IsEmpty(false, 2));
    module.Buffer_Render(buffer, 2);
    EXPECT_EQ(module.Layer(buffer, 0), (Rows{{4, 4}, {4, 4}}));
    module.Buffer_Render(buffer, 0);
    EXPECT_EQ(module.Layer(buffer, 0), (Rows{{3, 3}, {3, 3}}));
}

TEST(BasicOverlaying, CopiesAWholeFrameIntoTwoLayers) {
    const auto labels = MakeLabels<unsigned char>({2, 2, 2}, 1, Named);
    OpenModule<unsigned char> module(labels.get());
    const std::size_t buffer = module.Make(zel_OverlayWindowWhole, {2, 2, 2});
    module.Buffer_Render(buffer, 0);
    EXPECT_EQ(module.GetBuffer(buffer)->GetLayersCount(), 2U);
    for (const std::size_t layer : {0U, 1U})
        EXPECT_EQ(module.GetBuffer(buffer)->GetLayer(layer).GetVoxel(1, 1, 1), 112) << "no boundaries here";
}

TEST(BasicOverlaying, BuffersWithoutRoomAreLeftAlone) {
    const auto labels = MakeLabels<unsigned char>({2, 2, 2}, 1, Named);
    OpenModule<unsigned char> module(labels.get());
    module.SetOverlaying(true);
    for (const zel_OverlayWindowType type : allTypes) {
        const std::size_t buffer = module.Buffer_Create(type);
        module.ComputeBoundary(buffer);
        module.Buffer_Render(buffer, 0);
        module.Buffer_SetDim(buffer, {0, 1, 5}, {}, {1, 1, 1});
        module.Buffer_Render(buffer, 0);
        EXPECT_EQ(Painted(module, buffer, 2, 1), std::vector<Colour>(2, {40, 40, 40})) << "the smaller count";
        ColourBuffer nothing(0, 0);
        module.Overlay(buffer, nothing);
    }
}

TEST(BasicOverlaying, PaintsWhileItIsOn) {
    const auto labels =
        MakeLabels<unsigned char>({5, 3, 1}, 1, [](auto x, auto, auto, auto) { return x == 0 ? 0 : 2; });
    NamedColours module(labels.get());
    module.Make(zel_OverlayWindowAutofocusXY, {5, 3, 1});
    const std::size_t buffer = module.Make(zel_OverlayWindowCutXY, {5, 3, 1});
    module.SetOverlaying(true);
    constexpr Colour under{40, 40, 40}, label{2, 1, 255};
    EXPECT_EQ(Painted(module, buffer, 5, 3), std::vector<Colour>(15, under)) << "nothing rendered yet";
    module.Buffer_Render(buffer, 0);
    module.SetOverlaying(false);
    EXPECT_EQ(Painted(module, buffer, 5, 3), std::vector<Colour>(15, under));
    module.SetOverlaying(true);
    EXPECT_EQ(Painted(module, buffer, 5, 3), (std::vector<Colour>{under, label, label, label, label, //
                                                                  under, label, label, label, label, //
                                                                  under, label, label, label, label}));
    module.SetTransparency(0.5F); // 20 + 1, 20 + 0.5, 20 + 127.5
    const Colour mixed{21, 20, 147};
    EXPECT_EQ(Painted(module, buffer, 5, 3), (std::vector<Colour>{under, label, label, label, label, //
                                                                  under, label, mixed, mixed, label, //
                                                                  under, label, label, label, label}));
    EXPECT_EQ(Painted(module, buffer, 5, 1), (std::vector<Colour>{under, label, label, label, label}))
        << "a smaller picture";
    const auto larger = Painted(module, buffer, 5, 4);
    EXPECT_EQ(larger[14], label);
    EXPECT_EQ(std::vector<Colour>(larger.begin() + 15, larger.end()), std::vector<Colour>(5, under))
        << "a larger one ends where the labels do";
}

TEST(BasicOverlaying, PaintsAProjectionFromItsTwoLayers) {
    const auto labels = MakeLabels<unsigned char>({3, 3, 2}, 1, [](auto, auto, auto, auto) { return 7; });
    NamedColours module(labels.get());
    const std::size_t buffer = module.Make(zel_OverlayWindowAutofocusXY, {3, 3, 1});
    module.Buffer_Render(buffer, 0);
    module.SetOverlaying(true);
    constexpr Colour under{40, 40, 40}, label{7, 0, 255};
    module.SetTransparency(1.0F);
    EXPECT_EQ(Painted(module, buffer, 3, 3)[4], under) << "outlines alone";
    EXPECT_EQ(Painted(module, buffer, 3, 3)[1], label);
    module.SetTransparency(0.25F); // 10 + 5.25, 10, 10 + 191.25
    EXPECT_EQ(Painted(module, buffer, 3, 3)[4], Colour(15, 10, 201));
    EXPECT_EQ(Painted(module, buffer, 3, 3)[1], label) << "mixed with itself: 1.75 + 5.25";
    module.SetTransparency(0.0F);
    EXPECT_EQ(Painted(module, buffer, 3, 3), std::vector<Colour>(9, label));
}

namespace {

class WatchedLabels : public kep::LabeledImage3d<Label, bool> {
public:
    explicit WatchedLabels(bool& gone) : m_gone(gone) { MakeRoom(2, 2, 2); }
    ~WatchedLabels() override { m_gone = true; }

private:
    bool& m_gone;
};

std::unique_ptr<LabelImage<bool>> Watched(bool& gone) {
    auto labels = MakeLabels<bool>({2, 2, 2}, 1, Named);
    delete std::exchange(labels->GetVoxelData()[0], new WatchedLabels(gone));
    return labels;
}

} // namespace

TEST(BasicOverlaying, DeletesTheLabelsThatItOwns) {
    bool gone = false;
    std::make_unique<OpenModule<bool>>(Watched(gone).release(), true).reset();
    EXPECT_TRUE(gone);
    gone = false;
    const auto kept = Watched(gone);
    {
        OpenModule<bool> module(kept.get(), true);
        module.SetOwnsImage(false);
    }
    EXPECT_FALSE(gone);
    std::make_unique<OpenModule<bool>>(kept.get(), false).reset();
    EXPECT_FALSE(gone);
}
