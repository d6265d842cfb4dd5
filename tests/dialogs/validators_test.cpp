#include "dialogs/zel_validators.h"

#include "tests/support/user.h"

#include <wx/spinctrl.h>

#include <limits>
#include <memory>

using namespace zel;
using namespace zel::test;

namespace {

const char* const conflict = "Validation conflict";

/// A frame with a text field that gets validators.
class ValidatorTest : public GuiTest {
protected:
    void SetUp() override {
        frame = new wxFrame(nullptr, wxID_ANY, "validators");
        panel = new wxPanel(frame);
        field = new wxTextCtrl(panel, wxID_ANY, "", wxPoint(10, 10));
        other = new wxTextCtrl(panel, wxID_ANY, "", wxPoint(10, 60));
        ASSERT_TRUE(ShowAndWait(*frame));
    }
    void TearDown() override {
        frame->Destroy();
        GuiTest::TearDown();
    }

    /// Whether the field's validator lets a text pass. @param message  that it must show, none if empty
    bool PassesWith(const wxString& text, const std::string& message) {
        DialogAnswers answers;
        if (!message.empty())
            answers.ExpectMessage(conflict, message);
        field->ChangeValue(text);
        return field->GetValidator()->Validate(frame);
    }
    bool Passes(const wxString& text) { return PassesWith(text, ""); }
    /// How a number looks in the field.
    template <typename Validator, typename T>
    wxString Shown(T value, const wxString& format) {
        field->SetValidator(Validator(value, format));
        EXPECT_TRUE(field->GetValidator()->TransferToWindow());
        return field->GetValue();
    }

    wxFrame* frame = nullptr;
    wxPanel* panel = nullptr;
    wxTextCtrl* field = nullptr;
    wxTextCtrl* other = nullptr;
};

TEST_F(ValidatorTest, NumberOutsideBothLimitsIsTold) {
    int value = 5;
    field->SetValidator(IntValidator<int>(value, 1, 9, false, true, true, "%d"));
    EXPECT_TRUE(Passes("1"));
    EXPECT_TRUE(Passes("9"));
    Focus(*other);
    EXPECT_FALSE(PassesWith("12", "The value 12 is out of range [1,9]"));
    EXPECT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == field; }));
    EXPECT_FALSE(PassesWith("-7", "The value -7 is out of range [1,9]"));
    EXPECT_EQ(5, value);
}

TEST_F(ValidatorTest, TextThatIsNoNumberIsTold) {
    int value = 5;
    field->SetValidator(IntValidator<int>(value, 1, 9, false, true, true, "%d"));
    Focus(*other);
    EXPECT_FALSE(PassesWith("", "The value '' cannot be converted to a long"));
    EXPECT_TRUE(WaitUntil([&] { return wxWindow::FindFocus() == field; }));
    EXPECT_FALSE(PassesWith("1-2", "The value '1-2' cannot be converted to a long"));
    EXPECT_FALSE(PassesWith("99999999999999999999", "The value '99999999999999999999' cannot be converted to a long"));
    EXPECT_FALSE(PassesWith("abc", "'abc' contains invalid character(s)")); // the toolkit's own
}

TEST_F(ValidatorTest, AConflictIsAWarningOverTheWindowThatAsks) {
    int value = 5;
    double real = 5.0;
    DialogAnswers answers;
    for (const bool isReal : {false, true}) {
        if (isReal)
            field->SetValidator(RealValidator<double>(real, 1.0, 9.0, true, true, ""));
        else
            field->SetValidator(IntValidator<int>(value, 1, 9, false, true, true, "%d"));
        field->ChangeValue("12");
        answers.Expect([this](wxDialog& dialog) -> int {
            const auto& box = dynamic_cast<wxMessageDialog&>(dialog);
            EXPECT_EQ(wxOK | wxICON_EXCLAMATION, box.GetMessageDialogStyle());
            EXPECT_EQ(frame, box.GetParent());
            EXPECT_EQ("The value 12 is out of range [1,9]", box.GetMessage());
            return wxID_OK;
        });
        EXPECT_FALSE(field->GetValidator()->Validate(frame));
    }
}

TEST_F(ValidatorTest, OneLimitHasAMessageOfItsOwn) {
    int value = 5;
    field->SetValidator(IntValidator<int>(value, 0, 9, false, true, false, "%d"));
    EXPECT_TRUE(Passes("1000000"));
    EXPECT_FALSE(PassesWith("-1", "The value cannot be less than 0"));
    field->SetValidator(IntValidator<int>(value, 0, 9, false, false, true, "<%03d>"));
    EXPECT_TRUE(Passes("-1000000"));
    EXPECT_FALSE(PassesWith("10", "The value cannot be greater than <009>"));
}

TEST_F(ValidatorTest, NumbersTooLargeForTheTypeArePrintedWhole) {
    unsigned char value = 5;
    field->SetValidator(IntValidator<unsigned char>(value, 0, 255, false, true, true, "%d"));
    EXPECT_FALSE(PassesWith("99999", "The value 99999 is out of range [0,255]"));
    int wide = 5;
    field->SetValidator(IntValidator<int>(wide, 0, 9, false, true, true, "%d"));
    EXPECT_FALSE(PassesWith("4294967296", "The value 4294967296 is out of range [0,9]"));
}

TEST_F(ValidatorTest, LimitsBeyondLongAreTheGreatestLong) {
    unsigned long long value = 5;
    constexpr auto greatest = std::numeric_limits<unsigned long long>::max();
    field->SetValidator(IntValidator<unsigned long long>(value, 3, greatest, false, true, true, "%llu"));
    EXPECT_TRUE(Passes("9223372036854775807")); // 2^63 - 1
    EXPECT_FALSE(PassesWith("2", "The value 2 is out of range [3,18446744073709551615]"));
    EXPECT_FALSE(PassesWith("-1", "The value 18446744073709551615 is out of range [3,18446744073709551615]"));
}

TEST_F(ValidatorTest, WithoutLimitsOnlyTheCharactersCount) {
    int value = 5;
    field->SetValidator(IntValidator<int>(value, "%d"));
    EXPECT_TRUE(Passes("123"));
    EXPECT_TRUE(field->GetValidator()->TransferFromWindow());
    EXPECT_EQ(123, value);
    EXPECT_TRUE(Passes("")); // the transfer tells
    EXPECT_FALSE(field->GetValidator()->TransferFromWindow());
    EXPECT_TRUE(Passes("1.5"));
    EXPECT_FALSE(field->GetValidator()->TransferFromWindow());
    EXPECT_EQ(123, value);
}

TEST_F(ValidatorTest, IntegersOfEachTypeAreShownWithAnyFormat) {
    EXPECT_EQ("255", Shown<IntValidator<unsigned char>>(static_cast<unsigned char>(255), "%d"));
    EXPECT_EQ("65535", Shown<IntValidator<unsigned short>>(static_cast<unsigned short>(65535), "%ld"));
    EXPECT_EQ("-5", Shown<IntValidator<int>>(-5, "%d"));
    EXPECT_EQ("4294967295", Shown<IntValidator<unsigned int>>(4294967295U, "%d"));
    EXPECT_EQ("-9223372036854775808", Shown<IntValidator<long>>(std::numeric_limits<long>::min(), "%d"));
    EXPECT_EQ("18446744073709551615", Shown<IntValidator<unsigned long>>(~0UL, "%lu"));
    EXPECT_EQ("18446744073709551615", Shown<IntValidator<unsigned long long>>(~0ULL, "%d"));
}

TEST_F(ValidatorTest, StoredIntegersAreNarrowed) {
    unsigned char value = 5;
    field->SetValidator(IntValidator<unsigned char>(value, "%d"));
    field->ChangeValue("300");
    EXPECT_TRUE(field->GetValidator()->TransferFromWindow());
    EXPECT_EQ(44, value); // 300 - 256
}

TEST_F(ValidatorTest, IntegersOfAllOtherTypesAreStored) {
    const auto stored = [this](auto value, const char* text) {
        field->SetValidator(IntValidator<decltype(value)>(value, "%d"));
        field->ChangeValue(text);
        EXPECT_TRUE(field->GetValidator()->TransferFromWindow()) << text;
        field->SetValidator(wxDefaultValidator); // before the variable goes
        return value;
    };
    EXPECT_EQ(255, stored(static_cast<unsigned char>(0), "255"));
    EXPECT_EQ(65535, stored(static_cast<unsigned short>(0), "65535"));
    EXPECT_EQ(std::numeric_limits<int>::min(), stored(0, "-2147483648"));
    EXPECT_EQ(4294967295U, stored(0U, "4294967295"));
    EXPECT_EQ(std::numeric_limits<long>::min(), stored(0L, "-9223372036854775808"));
}

TEST_F(ValidatorTest, TheTwoWidestTypesStoreNothing) {
    const char* const refusal =
        "IntValidator::GetIntValue: Only long, int, unsigned int, Gray8 and Gray16 types are supported.";
    DialogAnswers answers;
    answers.ExpectMessage(wxMessageBoxCaptionStr, refusal);
    answers.ExpectMessage(wxMessageBoxCaptionStr, refusal);
    unsigned long value = 5;
    field->SetValidator(IntValidator<unsigned long>(value, "%lu"));
    field->ChangeValue("7");
    EXPECT_FALSE(field->GetValidator()->TransferFromWindow());
    EXPECT_EQ(5U, value);
    unsigned long long wide = 5;
    field->SetValidator(IntValidator<unsigned long long>(wide, "%llu"));
    EXPECT_FALSE(field->GetValidator()->TransferFromWindow());
    EXPECT_EQ(5U, wide);
}

TEST_F(ValidatorTest, ShowingANumberSendsNothing) {
    int value = 5;
    int texts = 0;
    field->Bind(wxEVT_TEXT, [&](wxCommandEvent&) { ++texts; });
    field->SetValidator(IntValidator<int>(value, "%d"));
    EXPECT_TRUE(panel->TransferDataToWindow());
    EXPECT_EQ("5", field->GetValue());
    EXPECT_EQ(0, texts);
}

TEST_F(ValidatorTest, CopiesOutliveWhatTheyWereCopiedFrom) {
    int value = 5;
    auto original = std::make_unique<IntValidator<int>>(value, 1, 9, false, true, true, "%d");
    field->SetValidator(*original);
    original.reset();
    field->ChangeValue("7");
    EXPECT_TRUE(panel->Validate());
    EXPECT_TRUE(panel->TransferDataFromWindow());
    EXPECT_EQ(7, value);
    // The base's own transfer works on the copy's text.
    EXPECT_TRUE(dynamic_cast<wxTextValidator&>(*field->GetValidator()).wxTextValidator::TransferFromWindow());
    EXPECT_FALSE(PassesWith("12", "The value 12 is out of range [1,9]"));
}

TEST_F(ValidatorTest, OnlyWhatBelongsToANumberCanBeTyped) {
    int value = 5;
    const auto typed = [this](const wxValidator& validator, const char* keys) {
        field->SetValidator(validator);
        field->ChangeValue("");
        Focus(*field);
        Type(keys);
        return field->GetValue();
    };
    EXPECT_EQ("12", typed(IntValidator<int>(value, 0, 9, true, true, true, "%d"), "1a-2."));
    EXPECT_EQ("1-2", typed(IntValidator<int>(value, 0, 9, false, true, true, "%d"), "1a-2."));
    float real = 0.0F;
    EXPECT_EQ("1-2.e", typed(RealValidator<float>(real, ""), "1a-2.e"));
}

TEST_F(ValidatorTest, SpinControlsHaveTheirNumberTested) {
    auto* const spin = new wxSpinCtrl(panel, wxID_ANY, "", wxPoint(10, 110), wxDefaultSize, wxSP_ARROW_KEYS, -100, 100);
    long value = 7;
    spin->SetValidator(IntValidator<long>(value, 0, 50, false, true, true, "%ld"));
    EXPECT_TRUE(spin->GetValidator()->TransferToWindow());
    EXPECT_EQ(7, spin->GetValue());
    Focus(*spin);
    Press(WXK_UP);
    EXPECT_EQ(8, spin->GetValue());
    wxKeyEvent key(wxEVT_CHAR);
    key.m_keyCode = 'x';
    key.m_uniChar = 'x';
    key.SetEventObject(spin);
    EXPECT_FALSE(spin->ProcessWindowEvent(key)); // the filter of keys stays out of it
    EXPECT_TRUE(spin->GetValidator()->Validate(frame));
    EXPECT_TRUE(spin->GetValidator()->TransferFromWindow());
    EXPECT_EQ(8, value);
    spin->SetValue(60);
    DialogAnswers answers;
    answers.ExpectMessage(conflict, "The value 60 is out of range [0,50]");
    EXPECT_FALSE(spin->GetValidator()->Validate(frame));
    value = 1L << 40; // held within what the control can have
    EXPECT_TRUE(spin->GetValidator()->TransferToWindow());
    EXPECT_EQ(100, spin->GetValue());
}

TEST_F(ValidatorTest, RealsOutsideTheLimitsAreTold) {
    float value = 0.5F;
    field->SetValidator(RealValidator<float>(value, 0.0F, 1.0F, true, true, ""));
    EXPECT_TRUE(Passes("0.25"));
    EXPECT_FALSE(PassesWith("2", "The value 2.000000 is out of range [0.000000,1.000000]"));
    EXPECT_FALSE(PassesWith("1-2", "The value '1-2' cannot be converted to a double"));
    EXPECT_FALSE(PassesWith("", "The value '' cannot be converted to a double"));
    EXPECT_FALSE(PassesWith("nan", "'nan' contains invalid character(s)"));
    field->SetValidator(RealValidator<float>(value, 0.0F, 1.0F, true, true, "%g"));
    EXPECT_FALSE(PassesWith("1e39", "The value 1e+39 is out of range [0,1]")); // infinite as a float
    double wide = 0.5;
    field->SetValidator(RealValidator<double>(wide, 0.5, 1.0, true, false, ""));
    EXPECT_TRUE(Passes("7"));
    EXPECT_FALSE(PassesWith("0.25", "The value cannot be less than 0.5"));
    field->SetValidator(RealValidator<double>(wide, 0.5, 1.0, false, true, "%.1f"));
    EXPECT_TRUE(Passes("-7"));
    EXPECT_FALSE(PassesWith("1.25", "The value cannot be greater than 1.0"));
}

TEST_F(ValidatorTest, LimitsShownInAFewDigitsAreWithinThemselves) {
    float value = 0.5F;
    // As a double 0.1 lies below the float of 0.1.
    field->SetValidator(RealValidator<float>(value, 0.1F, 1.0F, true, true, ""));
    EXPECT_TRUE(Passes("0.1"));
    // 0.1234564 shows as 0.123456, which lies below it, and 1.2345678 as 1.234568, which lies above.
    field->SetValidator(RealValidator<float>(value, 0.1234564F, 1.2345678F, true, true, ""));
    EXPECT_TRUE(Passes("0.123456"));
    EXPECT_TRUE(Passes("1.234568"));
    EXPECT_FALSE(PassesWith("1.234569", "The value 1.234569 is out of range [0.123456,1.234568]"));
    EXPECT_FALSE(PassesWith("0.123455", "The value 0.123455 is out of range [0.123456,1.234568]"));
}

TEST_F(ValidatorTest, RealsHaveAFormatOfTheirType) {
    EXPECT_EQ("0.500000", Shown<RealValidator<float>>(0.5F, ""));
    EXPECT_EQ("0.5", Shown<RealValidator<double>>(0.5, ""));
    EXPECT_EQ("0.50", Shown<RealValidator<float>>(0.5F, "%.2f"));
    EXPECT_EQ("0.50", Shown<RealValidator<double>>(0.5, "%.2lf"));
}

TEST_F(ValidatorTest, RealsAreStored) {
    float value = 0.5F;
    field->SetValidator(RealValidator<float>(value, "%f"));
    field->ChangeValue("0.1");
    EXPECT_TRUE(panel->TransferDataFromWindow());
    EXPECT_EQ(0.1F, value);
    field->ChangeValue("");
    EXPECT_TRUE(panel->Validate());
    EXPECT_FALSE(panel->TransferDataFromWindow());
    EXPECT_EQ(0.1F, value);
}

TEST_F(ValidatorTest, ARealThatIsShownAsItIsKeepsItsDigits) {
    float value = 0.1234567F;
    field->SetValidator(RealValidator<float>(value, 0.1234567F, 0.9F, true, true, ""));
    ASSERT_TRUE(panel->TransferDataToWindow());
    EXPECT_EQ("0.123457", field->GetValue());
    EXPECT_TRUE(panel->Validate());
    EXPECT_TRUE(panel->TransferDataFromWindow());
    EXPECT_EQ(0.1234567F, value);
    field->ChangeValue("0.123458");
    EXPECT_TRUE(panel->TransferDataFromWindow());
    EXPECT_EQ(0.123458F, value);
    double wide = 1.0 / 3.0;
    field->SetValidator(RealValidator<double>(wide, 0.0, 1.0, true, true, ""));
    ASSERT_TRUE(panel->TransferDataToWindow());
    EXPECT_EQ("0.333333", field->GetValue());
    EXPECT_TRUE(panel->TransferDataFromWindow());
    EXPECT_EQ(1.0 / 3.0, wide);
    field->ChangeValue("0.33333");
    EXPECT_TRUE(panel->TransferDataFromWindow());
    EXPECT_EQ(0.33333, wide);
}

TEST_F(ValidatorTest, ALimitThatIsTypedAsItShowsIsStoredAsItIs) {
    float value = 0.5F;
    field->SetValidator(RealValidator<float>(value, 0.1234564F, 1.2345678F, true, true, ""));
    field->ChangeValue("0.123456"); // below the limit
    EXPECT_TRUE(panel->Validate());
    EXPECT_TRUE(panel->TransferDataFromWindow());
    EXPECT_EQ(0.1234564F, value);
    field->ChangeValue("1.234568"); // above it
    EXPECT_TRUE(panel->Validate());
    EXPECT_TRUE(panel->TransferDataFromWindow());
    EXPECT_EQ(1.2345678F, value);
}

TEST_F(ValidatorTest, LimitsOfRealsCanBeChanged) {
    double value = 0.5;
    RealValidator<double> validator(value, 0.0, 1.0, true, true, "");
    validator.SetMin(-2.0);
    validator.SetMax(3.0);
    EXPECT_EQ(-2.0, validator.GetMin());
    EXPECT_EQ(3.0, validator.GetMax());
    field->SetValidator(validator);
    EXPECT_TRUE(Passes("-1.5"));
    EXPECT_FALSE(PassesWith("4", "The value 4 is out of range [-2,3]"));
}

} // namespace
