// What the program keeps from run to run, and the file in which it does.

#include "host/settings.h"
#include "host/settingsfile.h"
#include "tests/support/scratch_folder.h"

#include <wx/init.h>
#include <wx/log.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <thread>

namespace zelviewer {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Settings : public testing::Test {
protected:
    wxInitializer toolkit;
    ScratchFolder folder;
    std::string name = folder / "zelviewer.conf";
    SettingsFile file{name};

    static std::string Set(const SettingsFile& to, const wxString& key, const wxString& value) {
        return to.Change([&](wxFileConfig& config) { config.Write(key, value); });
    }
    std::string Get(const wxString& key) const { return file.Read()->Read(key, "none").utf8_string(); }
};

TEST_F(Settings, AreKeptInTheFile) {
    EXPECT_EQ(Get("/a/b"), "none");
    EXPECT_EQ(Set(file, "/a/b", L"x $HOME \u00b5"), "");
    EXPECT_EQ(Get("/a/b"), "x $HOME \xc2\xb5");
    EXPECT_THAT(folder.List(), ElementsAre("zelviewer.conf"));
}

TEST_F(Settings, MakeTheirFolder) {
    const SettingsFile deep(folder / "new/deeper/zelviewer.conf");
    EXPECT_EQ(Set(deep, "a", "b"), "");
    EXPECT_EQ(deep.Read()->Read("a"), "b");
}

TEST_F(Settings, WithoutAFileAreForgotten) {
    const SettingsFile none{std::string()};
    EXPECT_EQ(Set(none, "a", "b"), "");
    EXPECT_EQ(none.Read()->Read("a", "none"), "none");
}

TEST_F(Settings, OfOtherProgramsStay) {
    const SettingsFile other(name);
    Set(file, "/mine", "1");
    Set(other, "/theirs", "2");
    Set(file, "/mine", "3");
    EXPECT_EQ(Get("/theirs"), "2");
    EXPECT_EQ(Get("/mine"), "3");
}

TEST_F(Settings, ChangedAtTheSameTimeAreAllKept) {
    constexpr int changes = 40;
    const auto change = [&](const char* group) {
        for (int i = 0; i < changes; ++i)
            EXPECT_EQ(Set(SettingsFile(name), wxString::Format("/%s/%d", group, i), "x"), "");
    };
    std::thread other(change, "a");
    change("b");
    other.join();
    for (const char* const group : {"/a", "/b"}) {
        const auto config = file.Read();
        config->SetPath(group);
        EXPECT_EQ(config->GetNumberOfEntries(), static_cast<std::size_t>(changes)) << group;
    }
}

TEST_F(Settings, ThatAreDamagedAreCopiedAsideAndReplaced) {
    const std::string damaged("[Window]\nX=3\n\0\xff\xfe rubbish", 24);
    WriteBytes(name, damaged);
    EXPECT_EQ(Get("/Window/X"), "none") << "nothing of it is believed";
    EXPECT_EQ(ReadBytes(name), damaged) << "reading changes nothing";
    EXPECT_EQ(Set(file, "/a", "b"), "");
    EXPECT_EQ(Get("/a"), "b");
    EXPECT_EQ(ReadBytes(name + ".damaged"), damaged);
    WriteBytes(name, "again");
    EXPECT_EQ(Set(file, "/a", "c"), "");
    EXPECT_EQ(ReadBytes(name + ".damaged"), damaged) << "the first copy stays";
    EXPECT_EQ(ReadBytes(name + ".damaged2"), "again");
}

TEST_F(Settings, ThatCannotBeReadAreLeftAlone) {
    ASSERT_EQ(mkdir(name.c_str(), 0700), 0); // a folder in their place
    EXPECT_EQ(Get("/a"), "none");
    EXPECT_THAT(Set(file, "/a", "b"), HasSubstr("zelviewer.conf: "));
    EXPECT_TRUE(std::filesystem::is_directory(name));
    EXPECT_THAT(folder.List(), ElementsAre("zelviewer.conf"));
}

TEST_F(Settings, ThatCannotBeWrittenAreToldInASentence) {
    WriteBytes(folder / "file", "");
    const SettingsFile below(folder / "file/zelviewer.conf"); // whose folder is a file
    EXPECT_THAT(Set(below, "/a", "b"), HasSubstr("file/zelviewer.conf: "));
    EXPECT_EQ(below.Read()->Read("/a", "none"), "none");
}

TEST_F(Settings, ThatDoNotChangeAreNotWritten) {
    Set(file, "/a", "b");
    struct stat before {
    }, after{};
    ASSERT_EQ(stat(name.c_str(), &before), 0);
    EXPECT_EQ(Set(file, "/a", "b"), "");
    ASSERT_EQ(stat(name.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST(SettingsText, IsMadeOfGroupsEntriesAndComments) {
    wxInitializer toolkit;
    for (const char* const good : {"", "\n", "[a]\nb=c\n", "# c\n; d\n  e = f\r\n", "a=", "\xc2\xb5=1\n"})
        EXPECT_TRUE(IsSettingsText(good)) << good;
    for (const char* const bad : {"a", "[a\n", "=b\n", "a=b\nc\n", "a=\xff\n"})
        EXPECT_FALSE(IsSettingsText(bad)) << bad;
    EXPECT_FALSE(IsSettingsText(std::string_view("a=b\0", 4)));
}

TEST_F(Settings, HoldTheWindowsPlace) {
    EXPECT_EQ(ReadPlace(*file.Read()), std::nullopt);
    const WindowPlace place{wxRect(-5, 20, 800, 600), false};
    file.Change([&](wxFileConfig& config) { WritePlace(config, place); });
    EXPECT_EQ(ReadPlace(*file.Read()), place);
    // Maximized it has the display's size: the other one comes back with it.
    file.Change([&](wxFileConfig& config) { WritePlace(config, {wxRect(0, 0, 1600, 1200), true}); });
    EXPECT_EQ(ReadPlace(*file.Read()), (WindowPlace{wxRect(-5, 20, 800, 600), true}));
}

TEST_F(Settings, WithAPlaceThatMakesNoSenseHaveNone) {
    const char* const places[] = {"X=1\nY=2\nWidth=300", "X=1\nY=2\nWidth=300\nHeight=0",
                                  "X=1\nY=2\nWidth=-3\nHeight=4", "X=1\nY=2\nWidth=99999999999\nHeight=4",
                                  "X=a\nY=2\nWidth=3\nHeight=4"};
    for (const char* const place : places) {
        WriteBytes(name, std::string("[Window]\n") + place + "\n");
        EXPECT_EQ(ReadPlace(*file.Read()), std::nullopt) << place;
    }
}

TEST_F(Settings, HoldTheRecentFiles) {
    const std::vector<OpenedFiles> recent = {
        {"/a/t1.tif", "/a/t2.tif"}, {"/b/with $HOME & \\n=x.ics"}, {"/c/\xc2\xb5.tif"}};
    file.Change([&](wxFileConfig& config) { WriteRecent(config, recent); });
    EXPECT_EQ(ReadRecent(*file.Read()), recent);
    EXPECT_EQ(FolderOf(recent), "/a");
    EXPECT_EQ(FolderOf({}), "");
    // A shorter list leaves nothing of the longer one.
    file.Change([&](wxFileConfig& config) { WriteRecent(config, {{"/d.tif"}}); });
    EXPECT_THAT(ReadRecent(*file.Read()), ElementsAre(OpenedFiles{"/d.tif"}));
    file.Change([&](wxFileConfig& config) { WriteRecent(config, {{"/\xff.tif"}, {"/e.tif"}}); });
    EXPECT_THAT(ReadRecent(*file.Read()), ElementsAre(OpenedFiles{"/e.tif"})) << "a name that is no text is left out";
}

TEST(RecentFiles, StandOnceAndTheLastOneFirst) {
    std::vector<OpenedFiles> recent;
    for (int i = 1; i <= 11; ++i)
        recent = AddRecent(recent, {"/" + std::to_string(i)});
    EXPECT_THAT(recent, ElementsAre(OpenedFiles{"/11"}, OpenedFiles{"/10"}, OpenedFiles{"/9"}, OpenedFiles{"/8"},
                                    OpenedFiles{"/7"}, OpenedFiles{"/6"}, OpenedFiles{"/5"}, OpenedFiles{"/4"},
                                    OpenedFiles{"/3"}));
    recent = AddRecent(recent, {"/9"});
    EXPECT_EQ(recent.size(), 9U);
    EXPECT_EQ(recent[0], OpenedFiles{"/9"});
    EXPECT_EQ(recent[3], OpenedFiles{"/8"});
    EXPECT_EQ(AddRecent(recent, {}), recent);
}

TEST(RecentFiles, AreNamedWithoutTheirFolder) {
    EXPECT_EQ(DescribeFiles({"/a/b/stack.tif"}), "stack.tif");
    EXPECT_EQ(DescribeFiles({"/a/t01.tif", "/a/t02.tif", "/a/t03.tif"}), "t01.tif and 2 more");
    EXPECT_EQ(DescribeFiles({}), "");
}

} // namespace
} // namespace zelviewer
