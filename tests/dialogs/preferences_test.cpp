#include "tests/dialogs/control_list.h"
#include "tests/dialogs/preferences_fixture.h"

using namespace zel;
using namespace zel::test;

namespace {

class PreferencesTest : public PreferencesFixture {};

std::vector<std::string> ControlsOfPlacement(int corner, const std::string& selected, int offset) {
    return {std::to_string(corner) + " radio box Corner: [TL|TR|BL|BR] 2 columns, " + selected,
            "- Offset by (pixels):  x:", std::to_string(corner + 1) + " spin -500 to 500, " + std::to_string(offset),
            "-   y:", std::to_string(corner + 2) + " spin -500 to 500, " + std::to_string(offset)};
}

const std::vector<std::string> textControls{"box Text parameters", "10025 Colour", "10026 Font"};

void Append(std::vector<std::string>& all, const std::vector<std::string>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

TEST_F(PreferencesTest, ControlsOfAllPages) {
    const PreferencesDialog dialog(frame, &settings, &colours);
    EXPECT_EQ("Screen options dialog", dialog.GetTitle());
    EXPECT_EQ(wxDEFAULT_DIALOG_STYLE, dialog.GetWindowStyle() & ~wxTAB_TRAVERSAL) << "which the toolkit adds";
    std::vector<std::string> expected{"10000 notebook", "page Screen", "box Resolution  (pixels / micron)"};
    Append(expected, {"10003 X axis:", "10004 field", "10003 Y axis:", "10005 field", "10003 Z axis:", "10006 field"});
    Append(expected, {"box Aspect ratio", "10003 X axis:", "10007 field", "10003 Y axis:", "10008 field",
                      "10003 Z axis:", "10009 field"});
    Append(expected, {"page Cut pointer",
                      "10001 radio box Pointer type [None|On sides|On sides with circle |Dotted cross|Dashed "
                      "cross|Solid cross] 1 columns, On sides",
                      "box Pointer colour", "10002 No image", "10002 Change..."});
    Append(expected, {"page Annotation"});
    int id = 10010;
    for (const char* const plane : {"XY", "XZ", "YZ"}) {
        Append(expected, {std::string("box ") + plane + " projection",
                          std::to_string(id) + " Annotation text:", std::to_string(id + 1) + " field"});
        Append(expected, ControlsOfPlacement(id + 2, "TL", 5));
        id += 5;
    }
    Append(expected, textControls);
    Append(expected, {"page Scale bar", "box Scale bar parameters", "10027 Length (microns):", "10028 field",
                      "10029 Width (pixels):", "10030 spin 0 to 99, 2", "10031 Bar colour"});
    Append(expected, ControlsOfPlacement(10032, "BL", 10));
    Append(expected, textControls);
    Append(expected, {"page Time bar", "box Time bar parameters", "10035 Length (pixels):", "10036 spin 1 to 500, 50",
                      "10037 Width (pixels):", "10038 spin 0 to 99, 2", "10039 Bar colour"});
    Append(expected, ControlsOfPlacement(10040, "BR", 10));
    Append(expected, textControls);
    Append(expected, {"5100 OK", "5101 Cancel"});
    EXPECT_EQ(expected, ListControls(dialog));
    for (const int field : {10011, 10016, 10021})
        EXPECT_EQ("Empty text disables this annotation.", In(dialog, field).GetToolTipText());
    EXPECT_EQ("Width 0px disables the scale bar.", In(dialog, 10030).GetToolTipText());
    EXPECT_EQ("Width 0px disables the time bar.", In(dialog, 10038).GetToolTipText());
}

TEST_F(PreferencesTest, OpensWithTheRecord) {
    settings.cutPointer = {4, wxColour(10, 200, 30)};
    settings.annotation = {"top", "", "side", 1, 2, 3, {1, -2}, {-3, 4}, {500, -500}, *wxRED, settings.annotation.font};
    settings.scaleBar = {2.5F, 7, *wxRED, 1, {-11, 12}};
    settings.timeBar = {70, 0, *wxRED, 2, {13, -14}};
    Run([](wxDialog& dialog) {
        EXPECT_EQ("2.000000 2.000000 1.000000 1.000000 1.000000 0.500000",
                  TextIn(dialog, 10004) + " " + TextIn(dialog, 10005) + " " + TextIn(dialog, 10006) + " " +
                      TextIn(dialog, 10007) + " " + TextIn(dialog, 10008) + " " + TextIn(dialog, 10009));
        EXPECT_EQ("top", TextIn(dialog, 10011));
        EXPECT_EQ("", TextIn(dialog, 10016));
        EXPECT_EQ("side", TextIn(dialog, 10021));
        EXPECT_EQ("2.500000", TextIn(dialog, 10028));
        const int selections[][2] = {{10001, 4}, {10012, 1}, {10017, 2}, {10022, 3}, {10032, 1}, {10040, 2}};
        for (const auto& [id, selection] : selections)
            EXPECT_EQ(selection, In<wxRadioBox>(dialog, id).GetSelection()) << id;
        const int numbers[][2] = {{10013, 1},    {10014, -2}, {10018, -3},  {10019, 4},  {10023, 500},
                                  {10024, -500}, {10030, 7},  {10033, -11}, {10034, 12}, {10036, 70},
                                  {10038, 0},    {10041, 13}, {10042, -14}};
        for (const auto& [id, number] : numbers)
            EXPECT_EQ(number, In<wxSpinCtrl>(dialog, id).GetValue()) << id;
        const wxWindow& sample = In<wxStaticText>(dialog, 10002);
        EXPECT_EQ(wxColour(10, 200, 30), sample.GetBackgroundColour());
        EXPECT_EQ(wxColour(10, 200, 30), sample.GetForegroundColour());
        Press(WXK_ESCAPE);
    });
}

TEST_F(PreferencesTest, TheSampleIsSeenInItsColour) {
    settings.cutPointer.colour = wxColour(10, 200, 30);
    Run([](wxDialog& dialog) {
        ShowPage(dialog, "Cut pointer");
        PassFrames(1);
        wxWindow& sample = In<wxStaticText>(dialog, 10002);
        const wxSize size = sample.GetSize();
        const wxPoint middle = dialog.ScreenToClient(
            sample.GetParent()->ClientToScreen(sample.GetPosition() + wxPoint(size.x / 2, size.y / 2)));
        EXPECT_EQ(wxColour(10, 200, 30), ColourAt(Screen(dialog), middle));
        Press(WXK_ESCAPE);
    });
}

TEST_F(PreferencesTest, AScaleIsShownAsRatioWhenTheFieldIsLeft) {
    const int code = Run([this](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10005), "4");
        EXPECT_EQ("1.000000", TextIn(dialog, 10008));
        Press(WXK_TAB);
        EXPECT_EQ("2.000000", TextIn(dialog, 10008));
        EXPECT_EQ(2.0F, settings.baseScale.y);
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ((kep::Vector3d<float>(2, 4, 1)), settings.baseScale);
}

TEST_F(PreferencesTest, EachFieldHasItsOther) {
    settings.baseScale = {0.5F, 2, 4};
    struct Case {
        int left, other;
        const char* text;
        const char* follows;
    };
    // Against 0.5 of the record, whatever stands in the field of x.
    const Case cases[] = {{10004, 10007, "3", "6.000000"},      {10005, 10008, "3", "6.000000"},
                          {10006, 10009, "-1.25", "-2.500000"}, {10007, 10004, "8", "4.000000"},
                          {10008, 10005, "7", "3.500000"},      {10009, 10006, "1e1", "5.000000"}};
    Run([&](wxDialog& dialog) {
        for (const Case& step : cases) {
            std::vector<std::string> before;
            for (int id = 10004; id <= 10009; ++id)
                before.push_back(TextIn(dialog, id));
            TypeInto(In<wxTextCtrl>(dialog, step.left), step.text);
            Focus(In(dialog, wxID_CANCEL));
            EXPECT_TRUE(WaitUntil([&] { return TextIn(dialog, step.other) == step.follows; }))
                << step.left << ": " << TextIn(dialog, step.other);
            for (int id = 10004; id <= 10009; ++id)
                EXPECT_TRUE(id == step.left || id == step.other ||
                            before[static_cast<std::size_t>(id - 10004)] == TextIn(dialog, id))
                    << id;
        }
        EXPECT_EQ((kep::Vector3d<float>(0.5F, 2, 4)), settings.baseScale);
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ((kep::Vector3d<float>(4, 3.5F, 5)), settings.baseScale);
}

TEST_F(PreferencesTest, ATextThatIsNoNumberChangesNoOtherField) {
    Run([](wxDialog& dialog) {
        for (const auto& [left, other] : {std::pair{10008, 10005}, {10005, 10008}})
            for (const char* const text : {"", "1-2", "-"}) {
                const std::string before = TextIn(dialog, other);
                TypeInto(In<wxTextCtrl>(dialog, left), text);
                Focus(In(dialog, wxID_CANCEL));
                Settle();
                EXPECT_EQ(before, TextIn(dialog, other));
                EXPECT_EQ(text, TextIn(dialog, left));
            }
        Press(WXK_ESCAPE);
    });
}

TEST_F(PreferencesTest, TheRatiosAreNotStored) {
    const int code = Run([](wxDialog& dialog) {
        In<wxTextCtrl>(dialog, 10008).ChangeValue("abc");
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ((kep::Vector3d<float>(2, 2, 1)), settings.baseScale);
}

TEST_F(PreferencesTest, AScaleOfZeroHasInfiniteRatios) {
    settings.baseScale = {0, 2, 1};
    Run([](wxDialog& dialog) {
        EXPECT_EQ("1.000000", TextIn(dialog, 10007));
        EXPECT_EQ("inf", TextIn(dialog, 10008));
        TypeInto(In<wxTextCtrl>(dialog, 10006), "3");
        Focus(In(dialog, 10008));
        Focus(In(dialog, wxID_CANCEL)); // through a ratio that was not touched
        Settle();
        EXPECT_EQ("inf", TextIn(dialog, 10009));
        EXPECT_EQ("2.000000", TextIn(dialog, 10005));
        Press(WXK_ESCAPE);
    });
}

TEST_F(PreferencesTest, GoingThroughTheFieldsRoundsNothing) {
    // Small numbers that six decimals do not hold; a scale by which the sixth decimal of a ratio counts in the fourth
    // of another scale; and 3/128, in the middle between two texts: divided by 9.7 and multiplied again it is less.
    const kep::Vector3d<float> scales[] = {
        {0.0123456789F, 0.0078125F, 3.3333333F}, {100, 33.333333F, 1e-7F}, {9.7F, 0.0234375F, 1}};
    for (const kep::Vector3d<float>& scale : scales) {
        settings.baseScale = scale;
        const int code = Run([](wxDialog& dialog) {
            Focus(In(dialog, 10004));
            for (int i = 0; i < 6; ++i)
                Press(WXK_TAB);
            EXPECT_EQ(wxID_OK, wxWindow::FindFocus()->GetId()) << "all fields were left";
            Click(In(dialog, wxID_OK));
        });
        EXPECT_EQ(wxID_OK, code);
        EXPECT_EQ(scale, settings.baseScale);
    }
}

TEST_F(PreferencesTest, ATypedScaleSurvivesAVisitToItsRatio) {
    settings.baseScale = {100, 50, 1};
    Run([](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10005), "33.333333");
        TypeInto(In<wxTextCtrl>(dialog, 10006), "0.0123456789");
        Focus(In(dialog, 10008));
        EXPECT_EQ("0.333333", TextIn(dialog, 10008));
        Focus(In(dialog, 10009));
        EXPECT_EQ("0.000123", TextIn(dialog, 10009));
        Focus(In(dialog, wxID_OK));
        Settle();
        EXPECT_EQ("33.333333", TextIn(dialog, 10005));
        EXPECT_EQ("0.0123456789", TextIn(dialog, 10006));
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ((kep::Vector3d<float>(100, 33.333333F, 0.0123456789F)), settings.baseScale);
}

TEST_F(PreferencesTest, ARatioMendsAScaleThatIsNoNumber) {
    Run([](wxDialog& dialog) {
        TypeInto(In<wxTextCtrl>(dialog, 10006), "1-2");
        Focus(In(dialog, 10009));
        EXPECT_EQ("1-2", TextIn(dialog, 10006));
        Focus(In(dialog, wxID_CANCEL));
        EXPECT_TRUE(WaitUntil([&] { return TextIn(dialog, 10006) == "1.000000"; }));
        Press(WXK_ESCAPE);
    });
}

TEST_F(PreferencesTest, ChoicesAndNumbersAreStoredAtOnce) {
    struct Choice {
        const char* page;
        int id, chosen;
        const int& stored;
    };
    const Choice choices[] = {{"Cut pointer", 10001, 5, settings.cutPointer.style},
                              {"Annotation", 10012, 3, settings.annotation.positionXY},
                              {"Annotation", 10017, 1, settings.annotation.positionXZ},
                              {"Annotation", 10022, 2, settings.annotation.positionYZ},
                              {"Scale bar", 10032, 0, settings.scaleBar.position},
                              {"Time bar", 10040, 1, settings.timeBar.position}};
    struct Number {
        const char* page;
        int id;
        const int& stored;
    };
    zel_ProjectionAnnotationStyle& annotation = settings.annotation;
    annotation.offsetXY = {1, 2};
    annotation.offsetXZ = {3, 4};
    annotation.offsetYZ = {5, 6};
    const Number numbers[] = {
        {"Annotation", 10013, annotation.offsetXY.x},      {"Annotation", 10014, annotation.offsetXY.y},
        {"Annotation", 10018, annotation.offsetXZ.x},      {"Annotation", 10019, annotation.offsetXZ.y},
        {"Annotation", 10023, annotation.offsetYZ.x},      {"Annotation", 10024, annotation.offsetYZ.y},
        {"Scale bar", 10030, settings.scaleBar.thickness}, {"Scale bar", 10033, settings.scaleBar.offset.x},
        {"Scale bar", 10034, settings.scaleBar.offset.y},  {"Time bar", 10036, settings.timeBar.length},
        {"Time bar", 10038, settings.timeBar.thickness},   {"Time bar", 10041, settings.timeBar.offset.x},
        {"Time bar", 10042, settings.timeBar.offset.y}};
    const int code = Run([&](wxDialog& dialog) {
        for (const Choice& choice : choices) {
            ShowPage(dialog, choice.page);
            ClickChoice(In<wxRadioBox>(dialog, choice.id), choice.chosen);
            EXPECT_EQ(choice.chosen, choice.stored) << choice.id;
        }
        for (const Number& number : numbers) {
            ShowPage(dialog, number.page);
            const int before = number.stored;
            Focus(In(dialog, number.id));
            Press(WXK_UP);
            EXPECT_EQ(before + 1, number.stored) << number.id;
        }
        Click(In(dialog, wxID_CANCEL));
    });
    EXPECT_EQ(wxID_CANCEL, code);
    EXPECT_EQ(wxPoint(2, 3), annotation.offsetXY);
    EXPECT_EQ(wxPoint(4, 5), annotation.offsetXZ);
    EXPECT_EQ(wxPoint(6, 7), annotation.offsetYZ);
}

TEST_F(PreferencesTest, ANumberTypedBeforeEnterIsStored) {
    const int code = Run([](wxDialog& dialog) {
        ShowPage(dialog, "Scale bar");
        Focus(In(dialog, 10030));
        Press('A', wxMOD_CONTROL);
        Type("9");
        Press(WXK_RETURN);
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ(9, settings.scaleBar.thickness);
}

TEST_F(PreferencesTest, AnAnnotationIsStoredWhenItsFieldIsLeft) {
    const int code = Run([this](wxDialog& dialog) {
        ShowPage(dialog, "Annotation");
        TypeInto(In<wxTextCtrl>(dialog, 10011), "top");
        EXPECT_EQ("XY", settings.annotation.textXY);
        TypeInto(In<wxTextCtrl>(dialog, 10016), "");
        EXPECT_EQ("top", settings.annotation.textXY);
        EXPECT_EQ("XZ", settings.annotation.textXZ);
        TypeInto(In<wxTextCtrl>(dialog, 10021), "side");
        EXPECT_EQ("", settings.annotation.textXZ);
        Focus(In(dialog, wxID_CANCEL));
        EXPECT_TRUE(WaitUntil([&] { return settings.annotation.textYZ == "side"; }));
        Click(In(dialog, wxID_CANCEL));
    });
    EXPECT_EQ(wxID_CANCEL, code);
}

TEST_F(PreferencesTest, EnterInAnAnnotationStoresItToo) {
    const int code = Run([this](wxDialog& dialog) {
        ShowPage(dialog, "Annotation");
        TypeInto(In<wxTextCtrl>(dialog, 10016), "front");
        EXPECT_TRUE(dialog.TransferDataFromWindow()); // as on OK, with the focus in the field
        EXPECT_EQ("front", settings.annotation.textXZ);
        TypeInto(In<wxTextCtrl>(dialog, 10021), "side");
        Press(WXK_RETURN);
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ("side", settings.annotation.textYZ);
}

TEST_F(PreferencesTest, TheBarsLengthIsStoredByOk) {
    for (const bool ok : {false, true}) {
        Run([&](wxDialog& dialog) {
            ShowPage(dialog, "Scale bar");
            TypeInto(In<wxTextCtrl>(dialog, 10028), "0.125");
            Press(WXK_TAB);
            EXPECT_EQ(1.0F, settings.scaleBar.length);
            Click(In(dialog, ok ? wxID_OK : wxID_CANCEL));
        });
        EXPECT_EQ(ok ? 0.125F : 1.0F, settings.scaleBar.length);
    }
}

TEST_F(PreferencesTest, OkAloneChangesNothing) {
    settings.baseScale = {0.0123456789F, 1e-7F, 12345.678F};
    settings.cutPointer.style = 7; // no dialog gives these
    settings.annotation.positionXZ = -1;
    settings.annotation.offsetXY = {501, -501};
    settings.annotation.textXY = wxString::FromUTF8("\xC2\xB5m \xE2\x82\xAC");
    settings.scaleBar = {0.0000123F, 150, wxColour(1, 2, 3, 4), 4, {-1000, 1000}};
    settings.timeBar = {0, -1, *wxRED, 9, {0, 0}};
    const zel_CanvasSettings before = settings;
    EXPECT_EQ(wxID_OK, Run([](wxDialog& dialog) { Click(In(dialog, wxID_OK)); }));
    EXPECT_EQ(before.baseScale, settings.baseScale);
    EXPECT_EQ(before.cutPointer.style, settings.cutPointer.style);
    EXPECT_EQ(before.annotation.positionXZ, settings.annotation.positionXZ);
    EXPECT_EQ(before.annotation.offsetXY, settings.annotation.offsetXY);
    EXPECT_EQ(before.annotation.textXY, settings.annotation.textXY);
    EXPECT_EQ(before.annotation.font, settings.annotation.font);
    EXPECT_EQ(before.scaleBar.length, settings.scaleBar.length);
    EXPECT_EQ(before.scaleBar.thickness, settings.scaleBar.thickness);
    EXPECT_EQ(before.scaleBar.colour, settings.scaleBar.colour);
    EXPECT_EQ(before.scaleBar.position, settings.scaleBar.position);
    EXPECT_EQ(before.scaleBar.offset, settings.scaleBar.offset);
    EXPECT_EQ(before.timeBar.length, settings.timeBar.length);
    EXPECT_EQ(before.timeBar.thickness, settings.timeBar.thickness);
    EXPECT_EQ(before.timeBar.position, settings.timeBar.position);
}

TEST_F(PreferencesTest, WhatIsNoNumberKeepsTheDialogOpenOnItsPage) {
    struct Case {
        int field;
        const char* text;
        std::string message;
        const char* page;
    };
    const std::string noDouble = "' cannot be converted to a double";
    const Case cases[] = {{10004, "abc", "'abc' contains invalid character(s)", "Screen"},
                          {10006, "", "The value '" + noDouble, "Screen"},
                          {10005, "1-2", "The value '1-2" + noDouble, "Screen"},
                          {10028, "e", "The value 'e" + noDouble, "Scale bar"},
                          {10028, "1 m", "'1 m' contains invalid character(s)", "Scale bar"}};
    const int code = Run([&](wxDialog& dialog) {
        for (const Case& wrong : cases) {
            ShowPage(dialog, "Time bar");
            auto& field = In<wxTextCtrl>(dialog, wrong.field);
            const wxString before = field.GetValue();
            field.SetValue(wrong.text);
            answers.ExpectMessage("Validation conflict", wrong.message);
            Click(In(dialog, wxID_OK));
            ASSERT_TRUE(dialog.IsModal()) << wrong.text;
            auto& book = In<wxNotebook>(dialog, 10000);
            EXPECT_EQ(wrong.page, book.GetPageText(static_cast<std::size_t>(book.GetSelection())));
            EXPECT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == &field; })) << wrong.text;
            field.SetValue(before);
        }
        Click(In(dialog, wxID_OK));
    });
    EXPECT_EQ(wxID_OK, code);
    EXPECT_EQ((kep::Vector3d<float>(2, 2, 1)), settings.baseScale);
}

TEST_F(PreferencesTest, AMessageOfTheToolkitsMayOutliveTheViewer) {
    const int code = Run([this](wxDialog& dialog) {
        answers.Expect([this](wxDialog& box) -> int {
            wxTheApp->CallAfter([this, &box] {
                DeleteFrame();
                Settle();
                PressSystemButton(box, SystemButton::ok);
            });
            return wxID_NONE;
        });
        In<wxTextCtrl>(dialog, 10004).SetValue("abc"); // what the toolkit's own filter refuses
        EXPECT_FALSE(dialog.Validate());
        EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); }));
    });
    EXPECT_EQ(wxID_CANCEL, code);
}

class PreferencesColoursTest : public PreferencesFixture {
protected:
    struct Button {
        const char* page;
        int id;
        wxColour& colour;
    };
    std::vector<Button> GetButtons() {
        return {{"Cut pointer", 10002, settings.cutPointer.colour}, {"Annotation", 10025, settings.annotation.colour},
                {"Scale bar", 10031, settings.scaleBar.colour},     {"Scale bar", 10025, settings.annotation.colour},
                {"Time bar", 10039, settings.timeBar.colour},       {"Time bar", 10025, settings.annotation.colour}};
    }
    /// The button of a page that has this id.
    static wxWindow& ButtonOn(const wxDialog& dialog, const std::string& page, int id) {
        ShowPage(dialog, page);
        return ButtonIn(*In<wxNotebook>(dialog, 10000).GetCurrentPage(), id);
    }
    static wxWindow& ButtonIn(const wxWindow& page, int id) {
        for (wxWindow* const box : page.GetChildren())
            for (wxWindow* const child : box->GetChildren())
                if (child->GetId() == id && dynamic_cast<wxButton*>(child) != nullptr)
                    return *child;
        throw std::runtime_error("no button " + std::to_string(id));
    }
};

TEST_F(PreferencesColoursTest, EachButtonAsksForItsColour) {
    const int code = Run([this](wxDialog& dialog) {
        unsigned char shade = 10;
        for (const Button& button : GetButtons()) {
            button.colour = wxColour(shade, 0, 1);
            const wxColour chosen(shade, 200, 30);
            wxWindow& window = ButtonOn(dialog, button.page, button.id);
            answers.ExpectDriven([&](wxDialog& open) {
                auto& chooser = dynamic_cast<wxColourDialog&>(open);
                EXPECT_EQ(&dialog, open.GetParent());
                EXPECT_EQ(wxColour(shade, 0, 1), chooser.GetColourData().GetColour()) << button.page;
                EXPECT_TRUE(chooser.GetColourData().GetChooseFull());
                EXPECT_EQ(wxColour(1, 1, shade), chooser.GetColourData().GetCustomColour(3));
                ChooseColour(open, chosen);
            });
            colours.SetCustomColour(3, wxColour(1, 1, shade)); // as a colour dialog before would have left it
            Click(window);
            EXPECT_EQ(chosen, button.colour) << button.page << " " << button.id;
            EXPECT_EQ(chosen, colours.GetColour());
            EXPECT_EQ(wxColour(1, 1, shade), colours.GetCustomColour(3));
            shade = static_cast<unsigned char>(shade + 10);
        }
        EXPECT_EQ(wxColour(10, 200, 30), In<wxStaticText>(dialog, 10002).GetBackgroundColour());
        EXPECT_EQ(wxColour(10, 200, 30), In<wxStaticText>(dialog, 10002).GetForegroundColour());
        Click(In(dialog, wxID_CANCEL));
    });
    EXPECT_EQ(wxID_CANCEL, code);
}

TEST_F(PreferencesColoursTest, ACancelledColourOrFontChangesNothing) {
    const wxFont font = settings.annotation.font;
    Run([&](wxDialog& dialog) {
        for (const Button& button : GetButtons()) {
            const wxColour before = button.colour;
            wxWindow& window = ButtonOn(dialog, button.page, button.id);
            answers.Expect([](wxDialog&) { return wxID_CANCEL; });
            Click(window);
            EXPECT_EQ(before, button.colour);
        }
        wxWindow& window = ButtonOn(dialog, "Annotation", 10026);
        answers.Expect([](wxDialog&) { return wxID_CANCEL; });
        Click(window);
        EXPECT_EQ(font, settings.annotation.font);
        Click(In(dialog, wxID_CANCEL));
    });
}

TEST_F(PreferencesColoursTest, TheFontIsTheSameOnAllPages) {
    settings.annotation.colour = wxColour(7, 8, 9);
    Run([this](wxDialog& dialog) {
        int size = 20;
        for (const char* const page : {"Annotation", "Scale bar", "Time bar"}) {
            const wxFont before = settings.annotation.font;
            wxWindow& window = ButtonOn(dialog, page, 10026);
            answers.ExpectDriven([&](wxDialog& open) {
                auto& chooser = dynamic_cast<wxFontDialog&>(open);
                EXPECT_EQ(&dialog, open.GetParent());
                EXPECT_EQ(before, chooser.GetFontData().GetInitialFont());
                EXPECT_EQ(wxColour(7, 8, 9), chooser.GetFontData().GetColour());
                ChooseFont(open, "Sans Italic " + std::to_string(size));
            });
            Click(window);
            EXPECT_EQ(size, settings.annotation.font.GetPointSize()) << page;
            EXPECT_EQ(wxFONTSTYLE_ITALIC, settings.annotation.font.GetStyle());
            EXPECT_EQ(wxColour(7, 8, 9), settings.annotation.colour);
            ++size;
        }
        Click(In(dialog, wxID_CANCEL));
    });
}

TEST_F(PreferencesColoursTest, AViewerThatGoesUnderADialogEndsBoth) {
    for (const int id : {10002, 10025, 10026, 10031, 10039, int{wxID_OK}}) {
        if (!frame)
            SetUp();
        const wxFont font = settings.annotation.font;
        const wxColour colour = settings.timeBar.colour;
        const int code = Run([&](wxDialog& dialog) {
            answers.Expect([this](wxDialog&) -> int {
                wxTheApp->CallAfter([this] { DeleteFrame(); });
                return wxID_NONE;
            });
            In<wxTextCtrl>(dialog, 10004).SetValue("1-2"); // for the message on OK
            wxCommandEvent press(wxEVT_BUTTON, id);
            dialog.ProcessWindowEvent(press);
            EXPECT_TRUE(WaitUntil([&] { return !dialog.IsModal(); })) << id;
        });
        EXPECT_EQ(wxID_CANCEL, code);
        EXPECT_EQ(font, settings.annotation.font);
        EXPECT_EQ(colour, settings.timeBar.colour);
    }
}

} // namespace
