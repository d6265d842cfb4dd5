// Which files are opened for the names that the user gives.

#include "host/fileselection.h"
#include "host/message.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace zelviewer {
namespace {

using Names = std::vector<std::string>;

class FileSelection : public testing::Test {
protected:
    /// Puts an empty file into the folder. @return its name with the folder
    std::string Touch(const std::string& name) {
        std::ofstream(folder / name).put('x');
        return folder / name;
    }
    std::string Folder(const std::string& name) {
        std::filesystem::create_directory(folder / name);
        return folder / name;
    }
    static std::string FailureOf(const std::string& name) {
        try {
            ImagesIn(name);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return "no failure";
    }

    ScratchFolder folder;
};

TEST_F(FileSelection, AFolderGivesItsImagesInTheOrderOfTheirNumbers) {
    const std::string place = Folder("series");
    for (const char* name : {"t10.tif", "t2.TIF", "t1.tiff", "a.ics", "a.ids", "notes.txt", "._t1.tif", ".hidden.ics"})
        Touch("series/" + std::string(name));
    Folder("series/t3.tif"); // a folder, in spite of its name
    EXPECT_EQ(ImagesIn(place), (Names{place + "/a.ics", place + "/t1.tiff", place + "/t2.TIF", place + "/t10.tif"}));
    EXPECT_EQ(ImagesIn(place + "/"), ImagesIn(place));
}

TEST_F(FileSelection, AFolderWithoutImagesIsRefused) {
    const std::string place = Folder("empty");
    Touch("empty/notes.txt");
    EXPECT_EQ(FailureOf(place), place + ": There are no images (.tif, .tiff, .ics) in this folder.");
    EXPECT_EQ(FailureOf(place + "/none"), place + "/none: The folder cannot be read: No such file or directory.");
}

TEST_F(FileSelection, FoldersAreReplacedWhereTheyStandInTheList) {
    const std::string place = Folder("series");
    const std::string first = Touch("series/t9.tif"), second = Touch("series/t10.tif");
    const std::string other = Touch("a.tif"), missing = folder / "none.tif";
    EXPECT_EQ(ExpandFolders({other, place, missing}), (Names{other, first, second, missing}));
    EXPECT_EQ(ExpandFolders({}), Names());
}

TEST_F(FileSelection, TheSequenceOfAFileHasAllThatDifferByOneNumber) {
    const std::string first = Touch("cell_t8.tif"), second = Touch("cell_t9.tif"), third = Touch("cell_t10.tif");
    Touch("cell_t11.ics");
    Touch("other_t9.tif");
    Folder("cell_t12.tif");
    EXPECT_EQ(SequenceOf(second), (Names{first, second, third}));
}

TEST_F(FileSelection, AFileWithoutOthersIsItsOwnSequence) {
    const std::string file = Touch("cell_t8.tif");
    EXPECT_EQ(SequenceOf(file), Names{file});
    const std::string elsewhere = folder / "none/cell_t8.tif";
    EXPECT_EQ(SequenceOf(elsewhere), Names{elsewhere});
}

TEST_F(FileSelection, NamesWithoutAFolderStayWithoutOne) {
    Touch("b1.tif");
    Touch("b2.tif");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder / "");
    const Names sequence = SequenceOf("b2.tif");
    std::filesystem::current_path(before);
    EXPECT_EQ(sequence, (Names{"b1.tif", "b2.tif"}));
}

TEST_F(FileSelection, TheCommandLineMeansWhatItSays) {
    const std::string first = Touch("t9.tif"), second = Touch("t10.tif");
    const std::string place = Folder("series");
    const std::string image = Touch("series/a.tif");
    EXPECT_EQ(FilesMeant({second}, false), Names{second}) << "a file alone stays alone";
    EXPECT_EQ(FilesMeant({second}, true), (Names{first, second}));
    EXPECT_EQ(FilesMeant({second, first}, false), (Names{second, first})) << "in the order given";
    EXPECT_EQ(FilesMeant({place}, false), Names{image});
    EXPECT_EQ(FilesMeant({place}, true), Names{image});
    EXPECT_EQ(FilesMeant({}, false), Names());
}

TEST_F(FileSelection, ASequenceIsOfferedForOneFileAlone) {
    const std::string first = Touch("t9.tif"), second = Touch("t10.tif"), alone = Touch("alone.tif");
    EXPECT_EQ(SequenceToOffer({second}), (Names{first, second}));
    EXPECT_EQ(SequenceToOffer({alone}), Names());
    EXPECT_EQ(SequenceToOffer({first, second}), Names());
    EXPECT_EQ(SequenceToOffer({Folder("t11.tif")}), Names());
}

TEST_F(FileSelection, TheQuestionCountsTheFiles) {
    EXPECT_EQ(SequenceQuestion(51), "Open 51 files as a sequence?");
}

} // namespace
} // namespace zelviewer
