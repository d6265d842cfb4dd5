#include "mapping/zel_graymapping.h"
#include "mapping/zel_mapperfactory.h"
#include "tests/dialogs/channel_dialog_fixture.h"
#include "viewer/zel_events.h"
#include "viewer/zel_frame.h"
#include "viewer/zel_imagecanvas3d.h"

#include <wx/menu.h>
#include <wx/spinctrl.h>

#include <wx/weakref.h>

#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

/// A viewer for an image of 200 x 150 x 20 voxels, one pixel each, whose left half has one value and whose right half
/// another; two corner voxels, at the far end of the depth, have values that the extremes are wanted to have.
template <typename T>
class GrayDialogsTest : public GuiTest {
protected:
    using Texts = std::vector<std::string>;
    using Driver = std::function<void(wxDialog&)>;

    void Open(T left, T right, std::vector<T> corners = {}) {
        const kep::Resolution resolution(1, 1, 1);
        image = std::make_unique<mor::Image4d<T>>(nullptr, &resolution);
        image->MakeRoom({200, 150, 20}, 1);
        auto* voxel = image->GetFirstVoxelAddr(0);
        for (std::size_t i = 0; i < 200U * 150U * 20U; ++i)
            voxel[i] = i % 200 < 100 ? left : right;
        for (std::size_t i = 0; i < corners.size(); ++i)
            image->SetVoxel(i, 0, 19, 0, corners[i]);
        image->UpdateMinMaxValues();

        frame = new zel_Viewer3dFrame(nullptr, wxID_ANY, "dialogs", wxPoint(600, 100), wxSize(400, 400),
                                      wxDEFAULT_FRAME_STYLE);
        firstId = frame->GetNextMenuId() + 1;
        module = dynamic_cast<zel_GrayMappingModule<T>*>(zel_CreateMapperForType<T>(frame, *image));
        ASSERT_NE(nullptr, module);
        frame->AddExtensionModule(module, "&Mapping", true);
        auto* const canvas = new zel_ImageViewer3dCanvas<T>(frame, *module, image.get(), false, wxID_ANY,
                                                            wxDefaultPosition, wxDefaultSize);
        zel_CanvasSettings settings;
        canvas->GetSettings(settings);
        settings.cutPointer.style = 0;
        canvas->SetSettings(settings);
        frame->SetCanvas(canvas);
        frame->ResizeFrameIfRequired();
        ASSERT_TRUE(ShowAndWait(*frame));
        frame->Bind(zel_EVT_MAPPING_CHANGED, [this](zel_MappingEvent& event) {
            ++(event.IsCommitted() ? commits : previews);
            event.Skip();
        });
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }

    /// Chooses an entry of the menu that opens a dialog.
    void Choose(int entry, const Driver& drive) {
        answers.ExpectDriven([&drive](wxDialog& dialog) {
            dialog.Move(20, 20); // off the picture
            EXPECT_TRUE(WaitUntil([&] { return dialog.GetScreenPosition().x < 100; }));
            Settle(); // what was under it is painted again
            drive(dialog);
        });
        Choose(entry);
    }
    void Choose(int entry) { EXPECT_TRUE(frame->ProcessCommand(firstId + entry)); }
    bool IsMarked(int entry) {
        frame->GetMenuBar()->UpdateMenus();
        return frame->GetMenuBar()->IsChecked(firstId + entry);
    }
    /// The grays of the two halves, as they stand on the screen. Waits for nothing.
    std::vector<int> Grays() {
        const wxImage picture = Screen(*frame->GetCanvas()->GetDrWin(zel_PT_XY));
        std::vector<int> grays;
        for (const int x : {50, 150}) {
            const wxColour colour = ColourAt(picture, {x, 75});
            EXPECT_EQ(colour.Red(), colour.Green());
            EXPECT_EQ(colour.Red(), colour.Blue());
            grays.push_back(colour.Red());
        }
        return grays;
    }
    bool SoonGrays(int left, int right) {
        return WaitUntil([&] { return Grays() == (std::vector<int>{left, right}); });
    }
    static VariableMinMaxCtrl<T>& Input(const wxDialog& dialog) { return In<VariableMinMaxCtrl<T>>(dialog, 10005); }
    static Texts Fields(const wxDialog& dialog) {
        return {Input(dialog).GetLowText()->GetValue().utf8_string(),
                Input(dialog).GetHighText()->GetValue().utf8_string()};
    }
    std::unique_ptr<mor::Image4d<T>> image;
    zel_Viewer3dFrame* frame = nullptr;
    zel_GrayMappingModule<T>* module = nullptr;
    int firstId = 0;
    DialogAnswers answers;
    int commits = 0;
    int previews = 0;
};

using ByteDialogsTest = GrayDialogsTest<unsigned char>;
using WordDialogsTest = GrayDialogsTest<unsigned short>;
using IntDialogsTest = GrayDialogsTest<int>;
using FloatDialogsTest = GrayDialogsTest<float>;

TEST_F(ByteDialogsTest, ThePictureFollowsTheLevelsAndOkKeepsThem) {
    Open(50, 200);
    ASSERT_TRUE(SoonGrays(50, 200));
    Choose(zel_ME_LEVELS, [&](wxDialog& dialog) {
        EXPECT_EQ("Adjust Levels", dialog.GetTitle());
        EXPECT_EQ((Texts{"0", "255"}), Fields(dialog));
        EXPECT_EQ("Gray", In<wxChoice>(dialog, 10002).GetStringSelection());
        Triangles& row = *Input(dialog).GetTriangles();
        Drag(row, {PlaceOf(row, 255), PlaceOf(row, 230), PlaceOf(row, 200)});
        EXPECT_EQ((std::vector<int>{64, 255}), Grays()); // 50 * 255 / 200 = 63.75
        EXPECT_EQ(255, module->GetLevels().inMax);       // until OK
        Drag(row, {PlaceOf(row, 0), PlaceOf(row, 100)});
        EXPECT_EQ((std::vector<int>{0, 255}), Grays());
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ((TLevelsParams<unsigned char, unsigned char>{100, 200, 1.0, 0, 255}), module->GetLevels());
    EXPECT_EQ(zel_ME_LEVELS - 2, module->GetStretchMode());
    EXPECT_TRUE(IsMarked(zel_ME_LEVELS));
    EXPECT_FALSE(IsMarked(zel_ME_NO_STRETCH));
    EXPECT_EQ(4, previews); // at the start and for each of three moves
    EXPECT_EQ(1, commits);
    EXPECT_TRUE(SoonGrays(0, 255));
}

TEST_F(ByteDialogsTest, OutputLevelsAreSeenToo) {
    Open(50, 200);
    Choose(zel_ME_LEVELS, [&](wxDialog& dialog) {
        auto& output = In<VariableMinMaxCtrl<unsigned char>>(dialog, 10006);
        TypeInto(*output.GetLowText(), "255");
        Press(WXK_RETURN);
        TypeInto(*output.GetHighText(), "0");
        Press(WXK_RETURN);
        EXPECT_EQ((std::vector<int>{205, 55}), Grays()); // 255 - 50, 255 - 200
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ((TLevelsParams<unsigned char, unsigned char>{0, 255, 1.0, 255, 0}), module->GetLevels());
}

TEST_F(ByteDialogsTest, CancelledLevelsComeBackToTheStretchInForce) {
    Open(50, 200);
    Choose(zel_ME_LINEAR_STRETCH);
    ASSERT_TRUE(SoonGrays(0, 255));
    const auto before = module->GetLevels();
    for (const bool byKey : {false, true}) {
        Choose(zel_ME_LEVELS, [&](wxDialog& dialog) {
            EXPECT_EQ((Texts{"50", "200"}), Fields(dialog));
            TypeInto(*Input(dialog).GetLowText(), "0");
            Press(WXK_TAB);
            EXPECT_EQ((std::vector<int>{64, 255}), Grays());
            if (byKey)
                Press(WXK_ESCAPE);
            else
                Click(In(dialog, wxID_CANCEL));
        });
        EXPECT_EQ(before, module->GetLevels());
        EXPECT_EQ(zel_ME_LINEAR_STRETCH - 2, module->GetStretchMode());
        EXPECT_TRUE(IsMarked(zel_ME_LINEAR_STRETCH));
        EXPECT_FALSE(IsMarked(zel_ME_LEVELS));
        EXPECT_TRUE(SoonGrays(0, 255));
    }
}

TEST_F(ByteDialogsTest, ATextThatWasNeverCommittedIsNotSeenAfterEscape) {
    Open(50, 200);
    ASSERT_TRUE(SoonGrays(50, 200));
    Choose(zel_ME_LEVELS, [&](wxDialog& dialog) {
        TypeInto(*Input(dialog).GetHighText(), "200");
        Press(WXK_ESCAPE);
    });
    Settle();
    EXPECT_EQ((std::vector<int>{50, 200}), Grays());
    EXPECT_EQ(50, module->GetMappingTable().Get(50));
    EXPECT_EQ(1, previews); // the one at the start
}

TEST_F(ByteDialogsTest, UncheckingThePreviewLeavesThePicture) {
    Open(50, 200);
    Choose(zel_ME_LEVELS, [&](wxDialog& dialog) {
        Click(In(dialog, 10003));
        TypeInto(*Input(dialog).GetHighText(), "200");
        Press(WXK_RETURN);
        EXPECT_EQ((std::vector<int>{50, 200}), Grays());
        Click(In(dialog, 10003));
        EXPECT_EQ((std::vector<int>{64, 255}), Grays());
        Click(In(dialog, 10007)); // "Reset"
        EXPECT_EQ((std::vector<int>{50, 200}), Grays());
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ((TLevelsParams<unsigned char, unsigned char>{0, 255, 1.0, 0, 255}), module->GetLevels());
}

TEST_F(ByteDialogsTest, ThePictureFollowsTheThresholdsAndOkKeepsThem) {
    Open(50, 200);
    Choose(zel_ME_THRESHOLD, [&](wxDialog& dialog) {
        EXPECT_EQ("Adjust Thresholds", dialog.GetTitle());
        EXPECT_EQ((std::vector<int>{255, 255}), Grays()); // the whole range
        Triangles& row = *Input(dialog).GetTriangles();
        Drag(row, {PlaceOf(row, 0), PlaceOf(row, 51)});
        EXPECT_EQ((std::vector<int>{0, 255}), Grays());
        Drag(row, {PlaceOf(row, 51), PlaceOf(row, 50)});
        EXPECT_EQ((std::vector<int>{255, 255}), Grays());
        Drag(row, {PlaceOf(row, 255), PlaceOf(row, 199)});
        EXPECT_EQ((std::vector<int>{255, 0}), Grays());
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ((ThresParams<unsigned char>{50, 199}), module->GetThresholds());
    EXPECT_EQ(zel_ME_THRESHOLD - 2, module->GetStretchMode());
    EXPECT_TRUE(IsMarked(zel_ME_THRESHOLD));
    EXPECT_TRUE(SoonGrays(255, 0));
}

TEST_F(ByteDialogsTest, CancelledThresholdsLeaveARampEvenInAnEqualisedPicture) {
    Open(50, 200);
    Choose(zel_ME_EQUALIZATION);
    // The counters up to 50 are half of all voxels: 255 / 2 in integers; up to 200 all of them.
    ASSERT_TRUE(SoonGrays(127, 255));
    Choose(zel_ME_THRESHOLD, [&](wxDialog& dialog) { Click(In(dialog, wxID_CANCEL)); });
    EXPECT_TRUE(SoonGrays(50, 200));
    EXPECT_EQ(zel_ME_EQUALIZATION - 2, module->GetStretchMode());
    EXPECT_TRUE(IsMarked(zel_ME_EQUALIZATION));
    EXPECT_FALSE(IsMarked(zel_ME_THRESHOLD));
    EXPECT_EQ((ThresParams<unsigned char>{0, 255}), module->GetThresholds());
}

TEST_F(ByteDialogsTest, EachDialogEndsWithItsCall) {
    Open(50, 200);
    const std::size_t children = frame->GetChildren().size();
    for (const int entry : {zel_ME_LEVELS, zel_ME_THRESHOLD, zel_ME_LEVELS, zel_ME_RANGE, zel_ME_BITDEPTH})
        for (const int end : {wxID_OK, wxID_CANCEL}) {
            wxWeakRef<wxDialog> open;
            Choose(entry, [&](wxDialog& dialog) {
                open = &dialog;
                EXPECT_EQ(frame, dialog.GetParent());
                const long style = wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxCLIP_CHILDREN;
                if (entry == zel_ME_LEVELS || entry == zel_ME_THRESHOLD) {
                    EXPECT_EQ(style, dialog.GetWindowStyle() & style);
                }
                Click(In(dialog, end));
                EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
            });
            EXPECT_EQ(nullptr, open.get());
            EXPECT_EQ(children, frame->GetChildren().size());
        }
    frame->Refresh();
    Settle(); // nobody reads what the dialogs left
}

TEST_F(ByteDialogsTest, ANewRangeLimitsTheStretches) {
    Open(50, 200);
    Choose(zel_ME_RANGE, [&](wxDialog& dialog) {
        EXPECT_EQ("Set Range", dialog.GetTitle());
        EXPECT_EQ("0", In(dialog, 10001).GetLabel());
        EXPECT_EQ("255", In(dialog, 10002).GetLabel());
        TypeInto(In<wxTextCtrl>(dialog, 10004), "100");
        TypeInto(In<wxTextCtrl>(dialog, 10005), "225");
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(100, module->GetRangeMin());
    EXPECT_EQ(225, module->GetRangeMax());
    EXPECT_TRUE(SoonGrays(0, 204)); // (200 - 100) * 255 / 125
    EXPECT_EQ(1, commits);
    Choose(zel_ME_LEVELS, [&](wxDialog& dialog) {
        EXPECT_EQ(100, Input(dialog).GetLowText()->GetLowBound());
        EXPECT_EQ(225, Input(dialog).GetHighText()->GetHighBound());
        EXPECT_EQ(126, Input(dialog).GetTriangles()->GetCount());
        Press(WXK_ESCAPE);
    });
    Choose(zel_ME_RANGE, [&](wxDialog& dialog) {
        EXPECT_EQ("100", In<wxTextCtrl>(dialog, 10004).GetValue());
        EXPECT_EQ("225", In<wxTextCtrl>(dialog, 10005).GetValue());
        TypeInto(In<wxTextCtrl>(dialog, 10004), "3");
        Press(WXK_ESCAPE);
    });
    EXPECT_EQ(100, module->GetRangeMin());
    EXPECT_EQ(3, commits); // a cancelled command ends in the event too
}

TEST_F(WordDialogsTest, ParametersOutsideTheRangeAreHeldWithinIt) {
    Open(500, 4000);
    Choose(zel_ME_BITDEPTH, [](wxDialog& dialog) {
        for (wxWindow* const child : dialog.GetChildren())
            if (auto* const number = dynamic_cast<wxSpinCtrl*>(child))
                number->SetValue(12);
        Click(In(dialog, wxID_OK));
    });
    ASSERT_EQ(4095, module->GetRangeMax());
    Choose(zel_ME_THRESHOLD, [](wxDialog& dialog) {
        EXPECT_EQ((Texts{"0", "4095"}), Fields(dialog));
        Press(WXK_ESCAPE);
    });
    EXPECT_EQ((ThresParams<unsigned short>{0, 65535}), module->GetThresholds()); // the module's own stay
    Choose(zel_ME_THRESHOLD, [](wxDialog& dialog) { Click(In(dialog, wxID_OK)); });
    EXPECT_EQ((ThresParams<unsigned short>{0, 4095}), module->GetThresholds());
}

TEST_F(IntDialogsTest, RangeOfIntegers) {
    Open(-500, 1000);
    Choose(zel_ME_RANGE, [&](wxDialog& dialog) {
        EXPECT_EQ("-500", In(dialog, 10001).GetLabel());
        EXPECT_EQ("1000", In(dialog, 10002).GetLabel());
        TypeInto(In<wxTextCtrl>(dialog, 10004), "-400");
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(-400, module->GetRangeMin());
    EXPECT_EQ(1000, module->GetRangeMax());
    EXPECT_TRUE(SoonGrays(0, 255));
}

TEST_F(FloatDialogsTest, WhatNobodyTouchedIsAcceptedToTheLastDigit) {
    for (const float width : {0.9697F, 0.001F}) {
        const float low = 0.0163F;
        const float high = low + width;
        Open(low + width / 4, low + width / 2, {low, high});
        Choose(zel_ME_THRESHOLD, [&](wxDialog& dialog) {
            EXPECT_EQ(255, module->GetMappingTable().Get(low)) << "the preview";
            EXPECT_EQ(255, module->GetMappingTable().Get(high));
            EXPECT_EQ((std::vector<int>{255, 255}), Grays());
            Click(In(dialog, wxID_OK));
        });
        EXPECT_EQ((ThresParams<float>{low, high}), module->GetThresholds());
        Choose(zel_ME_LEVELS, [&](wxDialog& dialog) {
            Click(In(dialog, 10007)); // "Reset"
            Click(In(dialog, wxID_OK));
        });
        EXPECT_EQ((TLevelsParams<float, unsigned char>{low, high, 1.0, 0, 255}), module->GetLevels());
        Choose(zel_ME_RANGE, [&](wxDialog& dialog) { Click(In(dialog, wxID_OK)); });
        EXPECT_EQ(low, module->GetRangeMin());
        EXPECT_EQ(high, module->GetRangeMax());
        frame->Destroy();
        Pump();
    }
    Open(0.5F, 1.5F);
}

TEST_F(FloatDialogsTest, RangeAndLevelsOfFloats) {
    Open(0.5F, 1.5F, {0.0F, 2.0F});
    Choose(zel_ME_RANGE, [&](wxDialog& dialog) {
        EXPECT_EQ("0.000000", In(dialog, 10001).GetLabel());
        EXPECT_EQ("2.000000", In(dialog, 10002).GetLabel());
        EXPECT_EQ("2.000000", In<wxTextCtrl>(dialog, 10005).GetValue());
        TypeInto(In<wxTextCtrl>(dialog, 10005), "1.5");
        Press(WXK_RETURN);
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
    });
    EXPECT_EQ(0.0F, module->GetRangeMin());
    EXPECT_EQ(1.5F, module->GetRangeMax());
    Choose(zel_ME_LEVELS, [&](wxDialog& dialog) {
        TypeInto(*Input(dialog).GetHighText(), "1.25");
        Press(WXK_RETURN);
        EXPECT_EQ(255, Grays()[1]);
        TypeInto(*In<VariableMinMaxCtrl<float>>(dialog, 10005).GetGammaText(), "2");
        Press(WXK_RETURN);
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ((TLevelsParams<float, unsigned char>{0.0F, 1.25F, 2.0, 0, 255}), module->GetLevels());
}

} // namespace
