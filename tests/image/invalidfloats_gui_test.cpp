#include "image/sequence/zel_frameconversion.h"
#include "image/zel_image4d.h"
#include "tests/support/frames.h"
#include "tests/support/gui_test.h"
#include "tests/support/scratch_folder.h"

#include <wx/weakref.h>

#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
const std::string caption = "Warning";
const std::string text =
    "The image contained invalid values (+/- infinity, NaN). These values were replaced by zeroes.";
const std::string warning = "Invalid float values replaced by zeros.";

class InvalidFloats : public zel::test::GuiTest {
protected:
    template <typename T>
    wxString Write(const std::string& file, const std::vector<T>& voxels) const {
        return wxString::FromUTF8(Save(FrameOf(voxels), folder / file));
    }
    std::size_t CountWarnings() const {
        std::size_t count = 0;
        for (const auto& entry : log.GetEntries())
            count += entry.level == wxLogLevel(wxLOG_Warning) && entry.text == warning ? 1U : 0U;
        return count;
    }

    ScratchFolder folder;
    zel::test::LogCatcher log;
    zel::test::DialogAnswers dialogs;
};

TEST_F(InvalidFloats, AreReplacedWithOneWarningAndOneBoxAFrame) {
    wxArrayString names;
    names.Add(Write<float>("a.tif", {1, nan, -infinity, infinity}));
    names.Add(Write<float>("b.tif", {1, 2, 3, 4}));
    names.Add(Write<float>("c.tif", {-5, nan, 3, 4}));
    dialogs.ExpectMessage(caption, text);
    dialogs.ExpectMessage(caption, text);
    mor::Image4d<float> image;
    image.ReadSequence(names, false);
    ASSERT_EQ(image.GetNumFrames(), 3U);
    EXPECT_EQ(CountWarnings(), 2U);
    EXPECT_EQ(image.GetVoxel(0, 0), 1);
    EXPECT_EQ(image.GetVoxel(1, 0), 0);
    EXPECT_EQ(image.GetVoxel(2, 0), 0);
    EXPECT_EQ(image.GetVoxel(3, 0), 0);
    EXPECT_EQ(image.GetVoxel(1, 2), 0);
    EXPECT_EQ(image.GetExtremes(), (mor::ExtremaValues<float>{-5, 4})); // found behind the replacement
}

TEST_F(InvalidFloats, InOnePartReplaceBothPartsOfComplexVoxels) {
    wxArrayString names;
    names.Add(Write<std::complex<double>>("a.tif", {{1, 2}, {nan, 3}, {4, infinity}}));
    dialogs.ExpectMessage(caption, text);
    dialogs.ExpectMessage(caption, text);
    mor::Image4d<std::complex<float>> single;
    single.ReadSequence(names, false);
    EXPECT_EQ(single.GetVoxel(0, 0), std::complex<float>(1, 2));
    EXPECT_EQ(single.GetVoxel(1, 0), std::complex<float>(0, 0));
    EXPECT_EQ(single.GetVoxel(2, 0), std::complex<float>(0, 0));
    mor::Image4d<std::complex<double>> twice;
    twice.ReadSequence(names, false);
    EXPECT_EQ(twice.GetVoxel(0, 0), std::complex<double>(1, 2));
    EXPECT_EQ(twice.GetVoxel(1, 0), std::complex<double>(0, 0));
    EXPECT_EQ(twice.GetVoxel(2, 0), std::complex<double>(0, 0));
    EXPECT_EQ(CountWarnings(), 2U);
}

TEST_F(InvalidFloats, AreTakenInSilenceWhereNobodyReplacesThem) {
    const wxString name = Write<float>("a.tif", {1, nan});
    wxArrayString names;
    names.Add(name);
    mor::Image4d<double> doubles;
    doubles.ReadSequence(names, false);
    EXPECT_TRUE(std::isnan(doubles.GetVoxel(1, 0)));
    mor::Image4d<float> floats;
    floats.MakeRoom(2, 1, 1, 0);
    floats.InsertFrame(name, -1);
    EXPECT_TRUE(std::isnan(floats.GetVoxel(1, 0)));
    EXPECT_EQ(CountWarnings(), 0U);
}

TEST_F(InvalidFloats, AreSpokenOfInABoxWithAnOkButton) {
    dialogs.Expect([](wxDialog& dialog) {
        const auto* box = dynamic_cast<wxMessageDialogBase*>(&dialog);
        if (box == nullptr)
            ADD_FAILURE() << "no message box";
        else
            EXPECT_EQ(box->GetMessageDialogStyle() & (wxOK | wxCANCEL | wxYES_NO | wxCENTRE), wxOK | wxCENTRE);
        return wxID_OK;
    });
    kep::Image3d<float> frame;
    frame.MakeRoom(1, 1, 1);
    frame.SetVoxel(0, nan);
    mor::ReplaceInvalidFloats(frame);
    EXPECT_EQ(frame.GetVoxel(0), 0);
}

TEST_F(InvalidFloats, TheBoxEndsWithTheWindowThatItCameOver) {
    wxWeakRef<wxFrame> viewer(new wxFrame(nullptr, wxID_ANY, "viewer"));
    ASSERT_TRUE(zel::test::ShowAndWait(*viewer));
    dialogs.Expect([&](wxDialog& box) -> int {
        wxTheApp->CallAfter([&] {
            EXPECT_EQ(viewer.get(), box.GetParent());
            delete viewer.get();
        });
        return wxID_NONE;
    });
    wxArrayString names;
    names.Add(Write<float>("a.tif", {1, nan, 3}));
    mor::Image4d<float> image;
    image.ReadSequence(names, false);
    EXPECT_EQ(viewer.get(), nullptr);
    EXPECT_EQ(image.GetVoxel(1, 0), 0.0F);
    EXPECT_EQ(image.GetVoxel(2, 0), 3.0F);
}

} // namespace
