// Each writer of the table where its file's name stands for something else than a plain file, or is an odd one.

#include "tests/faults/writer_fixture.h"

#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <unistd.h>

namespace zel::test {
namespace {

namespace fs = std::filesystem;

/// While one lives, this process is one of a user without rights, if root has started it.
class CommonUser {
public:
    CommonUser() : m_isRoot(::geteuid() == 0) {
        constexpr uid_t nobody = 65534;
        if (m_isRoot) {
            EXPECT_EQ(::setgroups(0, nullptr), 0);
            EXPECT_EQ(::setegid(nobody), 0);
            EXPECT_EQ(::seteuid(nobody), 0);
        }
    }
    ~CommonUser() {
        if (m_isRoot) {
            EXPECT_EQ(::seteuid(0), 0);
            EXPECT_EQ(::setegid(0), 0);
        }
    }
    CommonUser(const CommonUser&) = delete;
    CommonUser& operator=(const CommonUser&) = delete;

private:
    bool m_isRoot;
};

class Targets : public WriterTest {
protected:
    Targets() { ::alarm(120); } // a save that waits ends the program
    ~Targets() override { ::alarm(0); }

    /// Saving is refused, and leaves all as it was.
    void ExpectRefused() const {
        const Files before = Look();
        const std::size_t descriptors = CountDescriptors();
        EXPECT_NE(Save(), "");
        EXPECT_TRUE(Look() == before);
        EXPECT_EQ(CountDescriptors(), descriptors);
    }
};

TEST_P(Targets, ALinkStaysAndItsFileIsReplaced) {
    LayOut(Before::Link);
    EXPECT_EQ(Save(), "");
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_TRUE(writer.isRead(path));
    EXPECT_TRUE(writer.isRead(folder / ("real/b" + writer.ending)));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "real"), {}), 1);
}

TEST_P(Targets, ADanglingLinkGetsItsFile) {
    LayOut(Before::Nothing);
    fs::create_symlink("b" + writer.ending, path);
    EXPECT_EQ(Save(), "");
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_TRUE(fs::is_regular_file(folder / ("b" + writer.ending)));
    EXPECT_TRUE(writer.isRead(path));
}

TEST_P(Targets, LinksInACircleAreRefused) {
    LayOut(Before::Nothing);
    fs::create_symlink("b", path);
    fs::create_symlink(path, folder / "b");
    ExpectRefused();
}

TEST_P(Targets, ASecondNameOfTheOldFileKeepsIt) {
    LayOut(Before::File);
    fs::create_hard_link(path, folder / "second");
    EXPECT_EQ(Save(), "");
    EXPECT_TRUE(writer.isRead(path));
    EXPECT_EQ(ReadBytes(folder / "second"), writer.old);
}

TEST_P(Targets, APipeIsRefusedAtOnce) {
    LayOut(Before::Nothing);
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    ExpectRefused();
}

TEST_P(Targets, AFolderIsRefused) {
    LayOut(Before::Nothing);
    fs::create_directory(path);
    WriteBytes(path + "/inside", "kept");
    ExpectRefused();
}

TEST_P(Targets, ADeviceIsRefusedAndStays) {
    for (const char* const device : {"/dev/null", "/dev/full", "/dev/zero", "/dev/tty"}) {
        LayOut(Before::Nothing);
        fs::create_symlink(device, path);
        ExpectRefused();
        EXPECT_TRUE(fs::is_character_file(device));
    }
}

TEST_P(Targets, AFolderThatIsMissingIsRefusedOrMade) {
    LayOut(Before::Nothing);
    const std::string deep = folder / ("none/deeper/a" + writer.ending);
    const std::string told = save(deep);
    EXPECT_EQ(told.empty(), writer.makesFolders) << told;
    EXPECT_EQ(fs::exists(folder / "none"), writer.makesFolders);
    EXPECT_EQ(fs::exists(deep), writer.makesFolders);
}

TEST_P(Targets, AFileInPlaceOfTheFolderIsRefused) {
    LayOut(Before::File);
    const Files before = Look();
    EXPECT_NE(save(path + "/a" + writer.ending), "");
    EXPECT_TRUE(Look() == before);
}

TEST_P(Targets, AFolderWithoutPermissionIsRefused) {
    LayOut(Before::File);
    ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
    ASSERT_EQ(::chmod(folder.GetPath().c_str(), 0555), 0);
    std::string told;
    {
        const CommonUser user;
        told = Save();
    }
    ASSERT_EQ(::chmod(folder.GetPath().c_str(), 0755), 0);
    EXPECT_NE(told, "");
    EXPECT_EQ(ReadBytes(path), writer.old);
    EXPECT_EQ(folder.List().size(), 1U);
}

TEST_P(Targets, AFileWithoutPermissionIsRefused) {
    LayOut(Before::File);
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    ASSERT_EQ(::chmod(folder.GetPath().c_str(), 0777), 0);
    std::string told;
    {
        const CommonUser user;
        told = Save();
    }
    EXPECT_NE(told, "");
    EXPECT_EQ(ReadBytes(path), writer.old);
    for (const std::string& name : folder.List())
        EXPECT_FALSE(name.starts_with('.')) << name;
}

TEST_P(Targets, AnyNameIsKept) {
    const std::size_t longest = 255 - writer.GetLongestEnding();
    std::string manyBytes; // cut nowhere inside a letter
    while (manyBytes.size() + 2 <= longest)
        manyBytes += "\xC3\xA4";
    for (const std::string& name :
         {std::string("two words"), std::string("'single' and \"double\""), std::string("$HOME `x` *?[a] \\ & ; |"),
          std::string("\xC3\xA4\xE6\x98\xBE\xF0\x9F\x94\xAC"), std::string("-force"), std::string(".hidden"),
          std::string("many.dots.in.it"), std::string("50% %s %n"), std::string(longest, 'n'), manyBytes}) {
        LayOut(Before::Nothing);
        for (int i = 0; i < 2; ++i) {
            const std::string file = folder / (name + writer.ending);
            EXPECT_EQ(save(file), "");
            EXPECT_TRUE(fs::exists(file) && writer.isRead(file)) << name;
            for (const std::string& made : folder.List())
                EXPECT_TRUE(made.starts_with(name)) << made;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Writers, Targets, testing::ValuesIn(AllWriters()), testing::PrintToStringParamName());

} // namespace
} // namespace zel::test
