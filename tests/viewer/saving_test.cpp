// What the canvas saves: voxels, views and galleries, and what becomes of them when something goes wrong.

#include "core/kepcore/kep_exceptions.h"
#include "tests/support/file_size_limit.h"
#include "tests/viewer/saving_fixture.h"
#include "viewer/zel_saveprocessors.h"

#include <gmock/gmock.h>

#include <limits>
#include <memory>

using namespace zel;
using namespace zel::test;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class SavingTest : public SavingFixture {
protected:
    /// Shows an image in a frame that has room for all of it.
    void Open(kep::Vector3d<std::size_t> size = {9, 8, 5}, std::size_t frames = 1,
              const kep::Resolution& resolution = {1, 1, 1}, kep::Vector3d<float> offset = {}) {
        frame = new wxFrame(nullptr, wxID_ANY, "title of the host");
        MakeCanvas(size, frames, resolution, offset);
        ASSERT_TRUE(ShowAndWait(*frame));
        ASSERT_TRUE(ResizeClient(*frame, {300, 280}));
    }

    void SaveView(const std::string& name, int spacing, zel_ProjectionType projections) {
        canvas->SaveActualView(name.c_str(), spacing, projections);
    }
    void SaveGallery(const std::string& name, const GalleryOptions& o) {
        canvas->SaveGalleryView(name.c_str(), o.first, o.last, o.step, o.byRows, o.count, o.spacing);
    }
    wxSize Inner(zel_ProjectionType type) { return canvas->GetDrWin(type)->GetClientSize(); }
};

} // namespace

TEST_F(SavingTest, TheDataAreTheVoxelsOfTheFrameShown) {
    Open({9, 8, 5}, 3, {2, 2, 1}, {-3, 4, 5});
    canvas->ShowNextImage();
    canvas->ZoomIn();
    canvas->ShowDrWin(zel_PT_ALL, false);
    for (const char* const name : {"a.tif", "a.ics"}) {
        const std::string file = folder / name;
        const LogCatcher log;
        canvas->Save3dData(file);
        EXPECT_EQ(log.GetEntries(), (LogCatcher::Entries{{wxLOG_Message, "Saving: " + file}}));
        const kep::Image3d<unsigned short> saved(file.c_str(), nullptr, false, -1, nullptr, nullptr);
        ASSERT_EQ(saved.GetSize(), image->GetSize());
        EXPECT_TRUE(std::equal(saved.begin(), saved.end(), image->GetImage(1)->begin()));
        EXPECT_EQ(saved.GetOffset(), image->GetOffset());
        EXPECT_EQ(saved.GetResolution(), image->GetResolution());
    }
}

TEST_F(SavingTest, WhatADescriptionLosesIsWarnedOf) {
    Open();
    image->GetImage(0)->SetDescription({{"note", std::string(70'000'000, 'a')}});
    const LogCatcher log;
    canvas->Save3dData(folder / "a.ics");
    ASSERT_EQ(log.GetEntries().size(), 2U);
    EXPECT_EQ(log.GetEntries()[1].level, wxLOG_Warning);
    EXPECT_THAT(log.GetEntries()[1].text, StartsWith((folder / "a.ics") + ": "));
    EXPECT_TRUE(std::filesystem::exists(folder / "a.ics"));
}

TEST_F(SavingTest, AViewHasTheWindowsAsTheyAre) {
    Open();
    canvas->ToggleAxisReverse(1);
    canvas->ToggleInfoFlag();
    zel_CutPointerStyle pointer = canvas->GetPointerStyle();
    pointer.style = 5;
    canvas->SetPointerStyle(pointer);
    const std::string name = folder / "view.tif";
    for (const int spacing : {0, 1, 10}) {
        SaveView(name, spacing, zel_PT_ALL);
        const Sheet sheet = Read(name);
        ExpectSize(sheet, 9 + spacing + 5, 8 + spacing + 5);
        ExpectView(sheet, zel_PT_ALL, spacing);
        EXPECT_EQ(At(sheet, 9 + spacing, 8 + spacing), white);
        if (spacing > 0) {
            EXPECT_EQ(At(sheet, 9, 0), white);
            EXPECT_EQ(At(sheet, 0, 8), white);
        }
    }
}

TEST_F(SavingTest, EachSetOfWindowsAndEachChoiceOfThem) {
    Open();
    const std::string name = folder / "view.tif";
    for (int shown = 0; shown < 8; ++shown) {
        canvas->ShowDrWin(zel_PT_ALL, false);
        canvas->ShowDrWin(static_cast<zel_ProjectionType>(shown), true);
        for (const zel_ProjectionType chosen : {zel_PT_XY, zel_PT_XZ, zel_PT_YZ, zel_PT_ALL}) {
            const int in = shown & chosen;
            std::filesystem::remove(name);
            if (in == 0) {
                DialogAnswers answers;
                answers.ExpectMessage("Error",
                                      "Selected projection(s) can not be saved\nbecause they are not visible!");
                SaveView(name, 3, chosen);
                EXPECT_FALSE(std::filesystem::exists(name));
                continue;
            }
            SaveView(name, 3, chosen);
            ExpectView(Read(name), in, 3);
        }
    }
}

TEST_F(SavingTest, MasksOfTwoWindowsAreNotKnown) {
    Open();
    for (const int mask : {0, 3, 5, 6}) {
        DialogAnswers answers;
        answers.ExpectMessage("Error", "Selected projection(s) can not be saved\nbecause they are not visible!");
        SaveView(folder / "view.tif", 3, static_cast<zel_ProjectionType>(mask));
    }
    EXPECT_THAT(folder.List(), IsEmpty());
}

TEST_F(SavingTest, AHiddenWindowCountsWithItsLastPicture) {
    Open();
    canvas->ShowDrWin(zel_PT_XZ, false);
    canvas->ZoomIn();
    Settle();
    SaveView(folder / "view.tif", 1, zel_PT_ALL);
    // XY and YZ have twice their size now. The last picture of XZ has 5 rows, and so many columns of YZ are left.
    const Sheet sheet = Read(folder / "view.tif");
    ExpectSize(sheet, 18 + 1 + 5, 16);
    ExpectWindowAt(sheet, zel_PT_XY, 0, 0);
    EXPECT_EQ(NumberAt(sheet, 19, 15), Named(4, 7, 0));
    EXPECT_EQ(NumberAt(sheet, 23, 15), Named(4, 7, 2));
}

TEST_F(SavingTest, TheViewerMayCloseUnderTheMessage) {
    Open();
    canvas->ShowDrWin(zel_PT_YZ, false);
    DialogAnswers answers;
    answers.Expect([this](wxDialog&) {
        delete std::exchange(frame, nullptr);
        return wxID_OK;
    });
    SaveView(folder / "view.tif", 3, zel_PT_YZ);
    EXPECT_THAT(folder.List(), IsEmpty());
}

TEST_F(SavingTest, ChangesThatAreNotPaintedYetAreInTheView) {
    Open();
    // The cut goes from voxel 2 to 3 along Z; no event has been handled since.
    canvas->ChangeCut({4.5F, 4.5F, 3.5F});
    SaveView(folder / "view.tif", 0, zel_PT_XY);
    EXPECT_EQ(NumberAt(Read(folder / "view.tif"), 0, 0), Named(0, 0, 3));
}

TEST_F(SavingTest, AFrameThatWasNeverShownSavesItsPictures) {
    frame = new wxFrame(nullptr, wxID_ANY, "hidden");
    MakeCanvas({9, 8, 5}, 2);
    frame->SetClientSize(300, 280);
    canvas->SetSize(300, 280);
    canvas->ShowNextImage();
    SaveView(folder / "view.tif", 2, zel_PT_ALL);
    const Sheet view = Read(folder / "view.tif");
    ASSERT_EQ(view.GetSize(), (kep::Vector3d<std::size_t>(16, 15, 1)));
    EXPECT_EQ(NumberAt(view, 3, 2), Named(3, 2, 2, 1));
    EXPECT_EQ(NumberAt(view, 11, 7), Named(4, 7, 0, 1));
    EXPECT_EQ(NumberAt(view, 0, 14), Named(0, 4, 4, 1));
    SaveGallery(folder / "gallery.tif", {1, 4, 1, true, 1, 1});
    const Sheet gallery = Read(folder / "gallery.tif");
    ASSERT_EQ(gallery.GetSize(), (kep::Vector3d<std::size_t>(39, 8, 1)));
    for (int z = 1; z < 5; ++z)
        EXPECT_EQ(NumberAt(gallery, (z - 1) * 10, 0), Named(0, 0, static_cast<std::size_t>(z), 1));
}

TEST_F(SavingTest, AnIconizedFrameSavesItsPresentPictures) {
    Open();
    frame->Iconize();
    Settle();
    SaveGallery(folder / "gallery.tif", {1, 4, 1, true, 1, 0});
    const Sheet sheet = Read(folder / "gallery.tif");
    for (int z = 1; z < 5; ++z)
        EXPECT_EQ(NumberAt(sheet, (z - 1) * 9, 0), Named(0, 0, static_cast<std::size_t>(z)));
    canvas->ChangeCut({4.5F, 4.5F, 1.5F});
    SaveView(folder / "view.tif", 0, zel_PT_XY);
    EXPECT_EQ(NumberAt(Read(folder / "view.tif"), 0, 0), Named(0, 0, 1));
}

TEST_F(SavingTest, AGalleryIsTheSlicesOneByOne) {
    Open({9, 8, 7});
    const std::string name = folder / "gallery.tif";
    SaveGallery(name, {0, 6, 1, false, 3, 2});
    const Sheet sheet = Read(name);
    ExpectSize(sheet, 31, 28); // 3 * 11 - 2 by 3 * 10 - 2
    for (int slice = 0; slice < 7; ++slice) {
        const int left = slice % 3 * 11, top = slice / 3 * 10;
        // Slice 0 lies on the face of the box: the present one is taken, 7 / 2 = 3.
        const auto z = static_cast<std::size_t>(slice == 0 ? 3 : slice);
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 9; ++x)
                ASSERT_EQ(NumberAt(sheet, left + x, top + y),
                          Named(static_cast<std::size_t>(x), static_cast<std::size_t>(y), z));
    }
    EXPECT_EQ(At(sheet, 9, 0), white);
    EXPECT_EQ(At(sheet, 30, 27), white);
    EXPECT_EQ(At(sheet, 11, 20), white);
}

TEST_F(SavingTest, SlicesStandInVoxelsWhateverTheirDistance) {
    Open({9, 8, 7}, 1, {5, 5, 0.3F});
    SaveGallery(folder / "gallery.tif", {2, 6, 2, true, 1, 0});
    const Sheet sheet = Read(folder / "gallery.tif");
    // (6 - 2 + 1) / 2 = 2 pictures; slice 6 has no room.
    ExpectSize(sheet, 18, 8);
    EXPECT_EQ(NumberAt(sheet, 0, 0), Named(0, 0, 2));
    EXPECT_EQ(NumberAt(sheet, 9, 0), Named(0, 0, 4));
}

TEST_F(SavingTest, TheCutOfAGalleryDoesNotCountFromTheImagesOffset) {
    // The box begins at 2 microns: slice 3 asks for a cut at 3, one voxel in, and slices 1 and 2 for places outside.
    Open({9, 8, 7}, 1, {1, 1, 1}, {0, 0, 2});
    SaveGallery(folder / "gallery.tif", {1, 4, 1, true, 1, 0});
    const Sheet sheet = Read(folder / "gallery.tif");
    EXPECT_EQ(NumberAt(sheet, 0, 0), Named(0, 0, 3));
    EXPECT_EQ(NumberAt(sheet, 9, 0), Named(0, 0, 3));
    EXPECT_EQ(NumberAt(sheet, 18, 0), Named(0, 0, 1));
    EXPECT_EQ(NumberAt(sheet, 27, 0), Named(0, 0, 2));
}

TEST_F(SavingTest, ZoomedPicturesSlipInAGallery) {
    Open({9, 8, 7});
    canvas->ZoomIn();
    SaveGallery(folder / "gallery.tif", {1, 1, 1, true, 1, 0});
    const Sheet sheet = Read(folder / "gallery.tif");
    ExpectSize(sheet, 9, 8);
    // The picture is 18 pixels wide: its first row fills two rows of the sheet.
    ASSERT_EQ(Inner(zel_PT_XY), wxSize(18, 16));
    EXPECT_EQ(NumberAt(sheet, 8, 0), Named(4, 0, 1));
    EXPECT_EQ(NumberAt(sheet, 0, 1), Named(4, 0, 1));
    EXPECT_EQ(NumberAt(sheet, 8, 1), Named(8, 0, 1));
}

TEST_F(SavingTest, AGalleryLeavesTheCutWhereItWas) {
    Open({9, 8, 7});
    canvas->ChangeCut({2.5F, 3.5F, 5.5F});
    SaveGallery(folder / "gallery.tif", {0, 6, 1, true, 1, 0});
    EXPECT_EQ(canvas->GetCut(), kep::Vector3d<float>(2.5F, 3.5F, 5.5F));
    // A cut on the face of the box, where a click brings it and ChangeCut does not.
    canvas->GetDrWin(zel_PT_XZ)->SetCutFromPoint(0, 0);
    canvas->OnCutChange(zel_PT_ALL);
    const kep::Vector3d<float> cut = canvas->GetCut();
    ASSERT_EQ(cut, kep::Vector3d<float>(0, 3.5F, 0));
    SaveGallery(folder / "gallery.tif", {0, 6, 1, true, 1, 0});
    EXPECT_EQ(canvas->GetCut(), cut);
    Settle();
    SaveView(folder / "view.tif", 0, zel_PT_XY);
    EXPECT_EQ(NumberAt(Read(folder / "view.tif"), 0, 0), Named(0, 0, 0));
}

TEST_F(SavingTest, AFirstSliceAboveTheLastDoesNothing) {
    Open();
    const int maps = mapper.maps;
    const LogCatcher log;
    SaveGallery(folder / "gallery.tif", {4, 3, 1, true, 1, 10});
    EXPECT_EQ(mapper.maps, maps);
    EXPECT_THAT(folder.List(), IsEmpty());
    EXPECT_THAT(log.GetEntries(), IsEmpty());
}

TEST_F(SavingTest, AOneSliceImageHasItsGallery) {
    Open({9, 8, 1});
    SaveGallery(folder / "gallery.tif", {0, 0, 0, true, 0, 10});
    const Sheet sheet = Read(folder / "gallery.tif");
    ExpectSize(sheet, 9, 8);
    EXPECT_EQ(NumberAt(sheet, 8, 7), Named(8, 7, 0));
}

TEST_F(SavingTest, AGalleryThatIsTooLargeIsThrownAndTheCutStays) {
    Open({9, 8, 7});
    const int most = std::numeric_limits<int>::max();
    const kep::Vector3d<float> cut = canvas->GetCut();
    EXPECT_THROW(SaveGallery(folder / "gallery.tif", {0, 6, 1, false, most, most}), kep::LibException);
    EXPECT_EQ(canvas->GetCut(), cut);
    EXPECT_THAT(folder.List(), IsEmpty());
}

TEST_F(SavingTest, ACanvasWithoutAnImageSavesNothing) {
    frame = new wxFrame(nullptr, wxID_ANY, "empty");
    canvas = new Canvas(frame, mapper, nullptr, false, wxID_ANY, wxDefaultPosition, wxDefaultSize);
    ASSERT_TRUE(ShowAndWait(*frame));
    const LogCatcher log;
    canvas->Save3dData(folder / "a.tif");
    SaveView(folder / "b.tif", 1, zel_PT_ALL);
    SaveGallery(folder / "c.tif", {0, 3, 1, true, 1, 10});
    EXPECT_THAT(folder.List(), IsEmpty());
    EXPECT_THAT(log.GetEntries(), IsEmpty());
}

TEST_F(SavingTest, ACanvasWhoseMapperHasGoneSavesNothing) {
    Open();
    canvas->DetachMapper();
    image.reset();
    canvas->Save3dData(folder / "a.tif");
    SaveView(folder / "b.tif", 1, zel_PT_ALL);
    SaveGallery(folder / "c.tif", {0, 3, 1, true, 1, 10});
    EXPECT_THAT(folder.List(), IsEmpty());
}

namespace {

class FailingSaves : public SavingTest {
protected:
    /// Saves in each of the three ways. Each must tell the failure in one line of the log and leave cut and view alone.
    /// @return the lines
    std::vector<std::string> SaveAll(const std::string& data, const std::string& view, const std::string& gallery) {
        const kep::Vector3d<float> cut = canvas->GetCut();
        const MicronBox visible = canvas->GetVisibleBox();
        std::vector<std::string> lines;
        const auto save = [&](ExportData_CanvasProcessor&& processor, const std::string& name) {
            const LogCatcher log;
            processor(name);
            for (const LogCatcher::Entry& entry : log.GetEntries())
                if (entry.level == wxLOG_Error)
                    lines.push_back(entry.text);
        };
        save(ExportSave3dData_CanvasProcessor(canvas), data);
        save(ExportSaveActualView_CanvasProcessor(canvas, 2, zel_PT_ALL), view);
        save(ExportSaveGalleryView_CanvasProcessor(canvas, {0, 4, 1, true, 1, 2}), gallery);
        EXPECT_EQ(canvas->GetCut(), cut);
        EXPECT_EQ(canvas->GetVisibleBox().offset, visible.offset);
        EXPECT_EQ(canvas->GetVisibleBox().size, visible.size);
        return lines;
    }
};

} // namespace

TEST_F(FailingSaves, AMissingFolderIsTold) {
    Open();
    const std::string missing = folder / "missing";
    EXPECT_THAT(SaveAll(missing + "/a.tif", missing + "/b.tif", missing + "/100%d.tif"),
                ElementsAre(HasSubstr("missing/a.tif"), HasSubstr("missing/b.tif"), HasSubstr("missing/100%d.tif")));
    EXPECT_THAT(folder.List(), IsEmpty());
}

TEST_F(FailingSaves, ANameWithoutAKnownSuffixIsTold) {
    Open();
    EXPECT_THAT(SaveAll(folder / "a", folder / "b.xyz", folder / "c%s"),
                ElementsAre(HasSubstr(folder / "a"), HasSubstr("b.xyz"), HasSubstr("c%s")));
    EXPECT_THAT(folder.List(), IsEmpty());
}

TEST_F(FailingSaves, AFullDiskLeavesTheOldFiles) {
    Open();
    for (const char* const name : {"a.tif", "b.tif", "c.tif"})
        WriteBytes(folder / name, "what stood there before");
    {
        const FileSizeLimit limit(100);
        EXPECT_THAT(SaveAll(folder / "a.tif", folder / "b.tif", folder / "c.tif"),
                    ElementsAre(HasSubstr("a.tif"), HasSubstr("b.tif"), HasSubstr("c.tif")));
    }
    EXPECT_THAT(folder.List(), ElementsAre("a.tif", "b.tif", "c.tif"));
    for (const char* const name : {"a.tif", "b.tif", "c.tif"})
        EXPECT_EQ(ReadBytes(folder / name), "what stood there before");
}

TEST_F(FailingSaves, AFolderInTheFilesPlaceStays) {
    Open();
    for (const char* const name : {"a.tif", "b.tif", "c.tif"})
        std::filesystem::create_directory(folder / name);
    EXPECT_EQ(SaveAll(folder / "a.tif", folder / "b.tif", folder / "c.tif").size(), 3U);
    EXPECT_THAT(folder.List(), ElementsAre("a.tif", "b.tif", "c.tif"));
}
