#include "dialogs/zel_variabletextctrl.h"

#include "tests/support/user.h"

using namespace zel;
using namespace zel::test;

namespace {

/// A panel with a number field and another field, that notes what it is told.
class VariableTextCtrlTest : public GuiTest {
protected:
    using Numbers = std::vector<double>;
    using ByteField = VariableTextCtrl<unsigned char>;

    void SetUp() override {
        frame = new wxFrame(nullptr, wxID_ANY, "fields");
        panel = new wxPanel(frame);
        panel->Bind(zel_EVT_VARIABLE_TEXTCTRL, [this](zel_VariableTextCtrlEvent& event) {
            EXPECT_EQ(id, event.GetId());
            told.push_back(event.GetValue());
        });
        other = new wxTextCtrl(panel, wxID_ANY, "", wxPoint(10, 60));
        ASSERT_TRUE(ShowAndWait(*frame));
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }

    ByteField* MakeField(unsigned char low = 0, unsigned char high = 255, int positions = 256) {
        auto* const field = new ByteField(panel, id, &variable, low, high, 9, positions, wxPoint(10, 10));
        field->SetNumber(variable);
        Settle(); // it is laid out, and can have the focus
        return field;
    }
    Numbers Told() { return std::exchange(told, {}); }

    static constexpr int id = 20001;
    wxFrame* frame = nullptr;
    wxPanel* panel = nullptr;
    wxTextCtrl* other = nullptr;
    unsigned char variable = 42;
    Numbers told;
};

TEST_F(VariableTextCtrlTest, ShowsItsNumberToTheRight) {
    auto* const field = MakeField();
    EXPECT_EQ(40, field->GetSize().x);
    EXPECT_TRUE(field->HasFlag(wxTE_RIGHT));
    EXPECT_TRUE(field->HasFlag(wxTE_PROCESS_ENTER));
    EXPECT_EQ("42", field->GetValue());
    EXPECT_TRUE(field->IsBound());
    EXPECT_EQ(1, field->GetStep());
    unsigned char number = 0;
    EXPECT_TRUE(field->GetNumber(number));
    EXPECT_EQ(42, number);
    field->ChangeValue("300");
    EXPECT_FALSE(field->GetNumber(number));
    EXPECT_EQ(42, number);
    field->SetVariable(nullptr);
    EXPECT_FALSE(field->IsBound());
}

TEST_F(VariableTextCtrlTest, WhatItTellsCanWait) {
    panel->GetEventHandler()->AddPendingEvent(zel_VariableTextCtrlEvent(id, 0.1));
    EXPECT_EQ(Numbers{}, Told());
    Settle();
    EXPECT_EQ(Numbers{0.1}, Told());
}

TEST_F(VariableTextCtrlTest, EnterCommitsOnce) {
    auto* const field = MakeField();
    TypeInto(*field, "17");
    EXPECT_EQ(Numbers{}, Told());
    Press(WXK_RETURN);
    EXPECT_EQ(Numbers{17}, Told());
    EXPECT_EQ(field, wxWindow::FindFocus());
    Press(WXK_RETURN);
    Focus(*other);
    EXPECT_EQ(Numbers{}, Told());
    EXPECT_EQ(42, variable); // the owner's part
}

TEST_F(VariableTextCtrlTest, LeavingTheFieldCommits) {
    auto* const field = MakeField();
    TypeInto(*field, "17");
    Focus(*other);
    Settle();
    EXPECT_EQ(Numbers{17}, Told());
    Focus(*field);
    Focus(*other);
    EXPECT_EQ(Numbers{}, Told()) << "nothing was typed";
}

TEST_F(VariableTextCtrlTest, NumbersAreHeldInTheBounds) {
    auto* const field = MakeField(10, 100);
    TypeInto(*field, "101");
    Press(WXK_RETURN);
    TypeInto(*field, "3");
    Press(WXK_RETURN);
    EXPECT_EQ((Numbers{100, 10}), Told());
}

TEST_F(VariableTextCtrlTest, WhatDoesNotFitCommitsTheOldValue) {
    auto* const field = MakeField();
    for (const char* const text : {"300", "-1", "abc", ""}) {
        TypeInto(*field, text);
        Press(WXK_RETURN);
        EXPECT_EQ(Numbers{42}, Told()) << text;
    }
    field->SetVariable(nullptr);
    TypeInto(*field, "300");
    Press(WXK_RETURN);
    EXPECT_EQ(Numbers{9}, Told()) << "the default value";
}

TEST_F(VariableTextCtrlTest, TextsSetByTheProgramAreNotCommitted) {
    auto* const field = MakeField();
    Focus(*field);
    field->SetNumber(7);
    Press(WXK_RETURN);
    field->SetValue("8");
    Focus(*other);
    EXPECT_EQ(Numbers{}, Told());
}

TEST_F(VariableTextCtrlTest, HiddenFieldsDoNotCommit) {
    auto* const field = MakeField();
    TypeInto(*field, "17");
    frame->Hide();
    Settle();
    wxFocusEvent event(wxEVT_KILL_FOCUS, field->GetId());
    field->ProcessWindowEvent(event); // as it comes late from a dialog that has ended
    EXPECT_EQ(Numbers{}, Told());
}

TEST_F(VariableTextCtrlTest, ArrowKeysStep) {
    auto* const field = MakeField(0, 255, 32); // 8 a step
    Focus(*field);
    Press(WXK_UP);
    EXPECT_EQ(Numbers{50}, Told());
    EXPECT_EQ("42", field->GetValue()) << "the owner shows it";
    Press(WXK_DOWN);
    EXPECT_EQ(Numbers{34}, Told());
    field->SetNumber(3);
    Press(WXK_DOWN);
    EXPECT_EQ(Numbers{251}, Told()) << "3 - 8 + 256";
    field->SetNumber(250);
    Press(WXK_UP);
    EXPECT_EQ(Numbers{2}, Told()) << "258 - 256";
    EXPECT_EQ(field, wxWindow::FindFocus());
}

TEST_F(VariableTextCtrlTest, ArrowKeysStopAtTheBounds) {
    auto* const field = MakeField();
    Focus(*field);
    field->SetNumber(255);
    Press(WXK_UP);
    field->SetNumber(0);
    Press(WXK_DOWN);
    EXPECT_EQ(Numbers{}, Told());
    EXPECT_EQ(field, wxWindow::FindFocus()) << "nor did the key move on";
}

TEST_F(VariableTextCtrlTest, ArrowKeysTellTheNumberWhereThereAreMorePositionsThanNumbers) {
    auto* const field = MakeField(0, 9, 100); // a step of 10 / 100 = 0
    ASSERT_EQ(0, field->GetStep());
    TypeInto(*field, "5");
    Press(WXK_UP);
    EXPECT_EQ(Numbers{5}, Told());
    field->SetNumber(9);
    Press(WXK_UP);
    EXPECT_EQ(Numbers{}, Told()) << "at its bound";
}

TEST_F(VariableTextCtrlTest, ArrowKeysPassOnWithoutANumber) {
    auto* const field = MakeField();
    field->ChangeValue("abc");
    wxKeyEvent key(wxEVT_CHAR);
    key.m_keyCode = WXK_UP;
    key.SetEventObject(field);
    field->ProcessWindowEvent(key);
    EXPECT_TRUE(key.GetSkipped());
    field->ChangeValue("7");
    wxKeyEvent again(wxEVT_CHAR);
    again.m_keyCode = WXK_UP;
    again.SetEventObject(field);
    field->ProcessWindowEvent(again);
    EXPECT_FALSE(again.GetSkipped());
    EXPECT_EQ(Numbers{8}, Told());
}

TEST_F(VariableTextCtrlTest, TenCharactersCanBeTypedAndMoreBeSet) {
    float real = 0.0F;
    auto* const field = new VariableTextCtrl<float>(panel, id, &real, 0.0F, 1.0F, 0.0F, 10, wxPoint(10, 10));
    Settle();
    Focus(*field);
    Type("123456789012");
    EXPECT_EQ("1234567890", field->GetValue());
    field->ChangeValue("65535.000000");
    EXPECT_EQ("65535.000000", field->GetValue());
    field->ChangeValue("-2147483648.00");
    EXPECT_EQ("-2147483648.00", field->GetValue());
    field->SetNumber(1.0F);
    EXPECT_EQ("1.00", field->GetValue());
    TypeInto(*field, "12345");
    Type("6789012");
    EXPECT_EQ("1234567890", field->GetValue()) << "the limit is ten again";
}

TEST_F(VariableTextCtrlTest, WhatShowsAsItsVariableIsItsVariable) {
    float real = 0.985977F;
    auto* const field = new VariableTextCtrl<float>(panel, id, &real, 0.0163F, 0.985977F, 0.0F, 256, wxPoint(10, 10));
    field->SetNumber(real);
    Settle();
    EXPECT_EQ("0.99", field->GetValue());
    float number = 0.0F;
    EXPECT_TRUE(field->GetNumber(number));
    EXPECT_EQ(0.985977F, number);
    Focus(*field);
    Press(WXK_UP);
    EXPECT_EQ(Numbers{}, Told()) << "it is at its bound";
    Press(WXK_DOWN);
    EXPECT_EQ(Numbers{static_cast<double>(0.985977F - field->GetStep())}, Told());
    field->ChangeValue("0.98");
    EXPECT_TRUE(field->GetNumber(number));
    EXPECT_EQ(0.98F, number);
}

TEST_F(VariableTextCtrlTest, RealsStepAndCommit) {
    double gamma = 1.0;
    auto* const field = new VariableTextCtrl<double>(panel, id, &gamma, 0.1, 10.0, 1.0, 99, wxPoint(10, 10));
    field->SetNumber(gamma);
    Settle();
    EXPECT_EQ("1", field->GetValue());
    Focus(*field);
    Press(WXK_UP);
    ASSERT_EQ(1U, told.size());
    EXPECT_DOUBLE_EQ(1.1, Told()[0]);
    TypeInto(*field, "1.25");
    Press(WXK_RETURN);
    TypeInto(*field, "55");
    Press(WXK_RETURN);
    EXPECT_EQ((Numbers{1.25, 10.0}), Told());
}

} // namespace
