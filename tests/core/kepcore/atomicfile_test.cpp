#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/kep_exceptions.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/text_of.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

void Save(const std::string& fileName, const std::string& bytes) {
    kep::AtomicFile file(fileName);
    file.Write(bytes.data(), bytes.size());
    file.Commit();
}

unsigned ModeOf(const std::string& fileName) {
    struct stat status {};
    EXPECT_EQ(0, ::stat(fileName.c_str(), &status)) << fileName;
    return status.st_mode & 07777U;
}

void MakeOlder(const std::string& fileName, std::time_t seconds) {
    const std::time_t then = std::time(nullptr) - seconds;
    const timespec times[2] = {{then, 0}, {then, 0}};
    ASSERT_EQ(0, ::utimensat(AT_FDCWD, fileName.c_str(), times, 0));
}

/// Number of a process that has ended and been waited for.
pid_t DeadProcess() {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    int status = 0;
    ::waitpid(child, &status, 0);
    return child;
}

TEST(AtomicFile, AppearsUnderItsNameOnlyWithTheCommit) {
    const ScratchFolder folder;
    kep::AtomicFile file(folder / "a.tif");
    file.Write("abc", 3);
    EXPECT_FALSE(std::filesystem::exists(folder / "a.tif"));
    EXPECT_TRUE(std::filesystem::exists(file.GetTemporaryName()));
    EXPECT_THAT(file.GetTemporaryName(), StartsWith(folder / ".a-"));
    EXPECT_THAT(file.GetTemporaryName(), HasSubstr("-" + std::to_string(::getpid()) + "-"));
    file.Commit();
    EXPECT_EQ("abc", ReadBytes(folder / "a.tif"));
    EXPECT_THAT(folder.List(), ElementsAre("a.tif"));
}

TEST(AtomicFile, WithoutCommitTheOldFileStays) {
    const ScratchFolder folder;
    WriteBytes(folder / "a.ics", "old");
    {
        kep::AtomicFile file(folder / "a.ics");
        file.Write("new", 3);
    }
    EXPECT_EQ("old", ReadBytes(folder / "a.ics"));
    EXPECT_THAT(folder.List(), ElementsAre("a.ics"));
}

TEST(AtomicFile, WritesAtAPlaceAndGoesOnBehindTheEnd) {
    const ScratchFolder folder;
    kep::AtomicFile file(folder / "a");
    file.Write("0123456789", 10);
    file.WriteAt(2, "ab", 2);
    file.WriteAt(9, "cd", 2); // makes it 11 long
    file.Write("e", 1);
    file.Commit();
    EXPECT_EQ("01ab45678cde", ReadBytes(folder / "a"));
}

TEST(AtomicFile, TwoSavesOfOneNameDoNotMeet) {
    const ScratchFolder folder;
    kep::AtomicFile first(folder / "a.tif");
    kep::AtomicFile second(folder / "a.tif");
    first.Write("first", 5);
    second.Write("second", 6);
    second.Commit();
    first.Commit();
    EXPECT_EQ("first", ReadBytes(folder / "a.tif"));
    EXPECT_THAT(folder.List(), ElementsAre("a.tif"));
}

TEST(AtomicFile, KeepsTheTargetsPermissions) {
    const ScratchFolder folder;
    for (const unsigned mode : {0600U, 0640U, 0664U, 0755U}) {
        WriteBytes(folder / "a.tif", "old");
        ASSERT_EQ(0, ::chmod((folder / "a.tif").c_str(), mode));
        Save(folder / "a.tif", "new");
        EXPECT_EQ(mode, ModeOf(folder / "a.tif"));
        EXPECT_EQ("new", ReadBytes(folder / "a.tif"));
    }
}

TEST(AtomicFile, ANewFileHasThePermissionsThatTheUserWants) {
    const ScratchFolder folder;
    const mode_t before = ::umask(027);
    Save(folder / "a.tif", "new");
    ::umask(before);
    EXPECT_EQ(0640U, ModeOf(folder / "a.tif")); // 0666 without 027
}

TEST(AtomicFile, FollowsLinks) {
    const ScratchFolder folder;
    std::filesystem::create_directory(folder / "far");
    WriteBytes(folder / "far/real.tif", "old");
    std::filesystem::create_symlink("far/real.tif", folder / "near.tif");
    std::filesystem::create_symlink(folder / "near.tif", folder / "twice.tif");
    Save(folder / "twice.tif", "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "near.tif"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "twice.tif"));
    EXPECT_EQ("new", ReadBytes(folder / "far/real.tif"));

    std::filesystem::create_symlink("far/none.tif", folder / "dangling.tif");
    Save(folder / "dangling.tif", "made");
    EXPECT_EQ("made", ReadBytes(folder / "far/none.tif"));
}

TEST(AtomicFile, LinksInACircleAreRefused) {
    const ScratchFolder folder;
    std::filesystem::create_symlink("b", folder / "a");
    std::filesystem::create_symlink("a", folder / "b");
    EXPECT_EQ("SaveImage(): Cannot write the file '" + folder / "a" + "': Too many levels of symbolic links",
              TextOf<kep::IOException>([&] { Save(folder / "a", "x"); }));
}

TEST(AtomicFile, RefusesWhatIsNoPlainFile) {
    const ScratchFolder folder;
    std::filesystem::create_directory(folder / "sub.tif");
    ASSERT_EQ(0, ::mkfifo((folder / "pipe.tif").c_str(), 0600));
    const std::string start = "SaveImage(): Cannot write the file '";
    EXPECT_EQ(start + folder / "sub.tif" + "': it is a folder",
              TextOf<kep::IOException>([&] { Save(folder / "sub.tif", "x"); }));
    EXPECT_EQ(start + folder / "pipe.tif" + "': it is not a plain file",
              TextOf<kep::IOException>([&] { Save(folder / "pipe.tif", "x"); }));
    EXPECT_EQ(start + "/dev/null': it is not a plain file", TextOf<kep::IOException>([] { Save("/dev/null", "x"); }));
    EXPECT_EQ(start + "': it names no file", TextOf<kep::IOException>([] { Save("", "x"); }));
    EXPECT_THAT(folder.List(), ElementsAre("pipe.tif", "sub.tif"));
}

TEST(AtomicFile, AFolderThatIsNotThereIsNamed) {
    const ScratchFolder folder;
    EXPECT_EQ("SaveImage(): Cannot write the file '" + folder / "none/a.tif" +
                  "': no file can be made in the folder '" + folder / "none/" + "': No such file or directory",
              TextOf<kep::IOException>([&] { Save(folder / "none/a.tif", "x"); }));
}

TEST(AtomicFile, ALongNameFindsRoomForItsTemporaryFile) {
    const ScratchFolder folder;
    const std::string name = folder / (std::string(251, 'n') + ".tif"); // 255 bytes, the most that there is
    Save(name, "long");
    EXPECT_EQ("long", ReadBytes(name));
    Save(name, "again");
    EXPECT_EQ("again", ReadBytes(name));
}

TEST(AtomicFile, AFullDiskLeavesTheOldFile) {
    const ScratchFolder folder;
    WriteBytes(folder / "a.ics", "old");
    std::string failure;
    {
        const FileSizeLimit full(100000);
        failure = TextOf<kep::IOException>([&] { Save(folder / "a.ics", std::string(100001, 'x')); });
    }
    EXPECT_EQ("SaveImage(): Cannot write the file '" + folder / "a.ics" + "': File too large", failure);
    EXPECT_EQ("old", ReadBytes(folder / "a.ics"));
    EXPECT_THAT(folder.List(), ElementsAre("a.ics"));
}

/// Runs the check in a process of another user where this one is root, whom no permission stops.
/// @return whether the check held
bool HoldsForAUser(const std::function<bool()>& check) {
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0))
            ::_exit(2);
        ::_exit(check() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(AtomicFile, AReadOnlyFolderIsNamedAndTheFileStays) {
    const ScratchFolder folder;
    WriteBytes(folder / "a.tif", "old");
    ASSERT_EQ(0, ::chmod((folder / "a.tif").c_str(), 0666));
    ASSERT_EQ(0, ::chmod(folder.GetPath().c_str(), 0555));
    const std::string expected = "SaveImage(): Cannot write the file '" + folder / "a.tif" +
                                 "': no file can be made in the folder '" + folder.GetPath() + "/': Permission denied";
    EXPECT_TRUE(
        HoldsForAUser([&] { return TextOf<kep::IOException>([&] { Save(folder / "a.tif", "x"); }) == expected; }));
    EXPECT_EQ("old", ReadBytes(folder / "a.tif"));
    EXPECT_THAT(folder.List(), ElementsAre("a.tif"));
    ASSERT_EQ(0, ::chmod(folder.GetPath().c_str(), 0755));
}

TEST(AtomicFile, AProtectedFileIsNotReplaced) {
    const ScratchFolder folder;
    WriteBytes(folder / "a.tif", "old");
    ASSERT_EQ(0, ::chmod((folder / "a.tif").c_str(), 0444));
    ASSERT_EQ(0, ::chmod(folder.GetPath().c_str(), 0777));
    const std::string expected = "SaveImage(): Cannot write the file '" + folder / "a.tif" + "': Permission denied";
    EXPECT_TRUE(
        HoldsForAUser([&] { return TextOf<kep::IOException>([&] { Save(folder / "a.tif", "x"); }) == expected; }));
    EXPECT_EQ("old", ReadBytes(folder / "a.tif"));
}

TEST(AtomicFile, AKilledSaveLeavesTheOldFileAndTheNextOneCleansUp) {
    const ScratchFolder folder;
    WriteBytes(folder / "a.ics", "old");
    int ready[2];
    ASSERT_EQ(0, ::pipe(ready));
    const pid_t child = ::fork();
    if (child == 0) {
        kep::AtomicFile file(folder / "a.ics");
        file.Write("new, but only in part", 21);
        const char sign = 1;
        if (::write(ready[1], &sign, 1) != 1)
            ::_exit(1);
        for (;;)
            ::pause();
    }
    char sign = 0;
    ASSERT_EQ(1, ::read(ready[0], &sign, 1));
    ::close(ready[0]);
    ::close(ready[1]);
    ASSERT_EQ(0, ::kill(child, SIGKILL));
    int status = 0;
    ASSERT_EQ(child, ::waitpid(child, &status, 0));
    ASSERT_TRUE(WIFSIGNALED(status));

    EXPECT_EQ("old", ReadBytes(folder / "a.ics"));
    ASSERT_EQ(2U, folder.List().size());
    const std::string left = folder.List()[0];
    EXPECT_THAT(left, HasSubstr("-" + std::to_string(child) + "-"));

    Save(folder / "a.ics", "second");
    EXPECT_THAT(folder.List(), ElementsAre("a.ics"));
    EXPECT_EQ("second", ReadBytes(folder / "a.ics"));
}

TEST(AtomicFile, RemovesNothingButLeftoversOfTheSameName) {
    const ScratchFolder folder;
    std::string own;
    {
        const kep::AtomicFile file(folder / "a.tif");
        own = std::filesystem::path(file.GetTemporaryName()).filename();
    }
    // ".a-machine-process-start-number.tif" of this process, which lives; the same of one that does not.
    const std::string machine = own.substr(3, own.find('-', 3) - 3);
    const std::string living = own.substr(3 + machine.size());
    const std::string dead = "-" + std::to_string(DeadProcess()) + "-1-0.tif";
    const auto write = [&folder](const std::string& name, std::time_t age) {
        WriteBytes(folder / name, "x");
        MakeOlder(folder / name, age);
    };
    const std::vector<std::string> old = {
        ".a-" + machine + living,   ".a-" + machine + dead + "f", ".ab-" + machine + dead, ".a-b-" + machine + dead,
        ".a-" + machine + "-1.tif", ".a-elsewhere.tif",           "a-" + machine + dead,
    };
    for (const std::string& name : old)
        write(name, 100000);
    write(".a-elsewhere" + living, 3000); // another machine's may be at work for an hour
    std::filesystem::create_directory(folder / (".a-" + machine + "-7-1-1.tif"));

    write(".a-" + machine + dead, 0); // these three go
    write(".a-elsewhere" + living.substr(0, living.rfind('-')) + "-1.tif", 3700);
    write(".a-elsewhere" + dead, 3700);
    Save(folder / "a.tif", "new");
    std::vector<std::string> expected = old;
    expected.push_back(".a-elsewhere" + living);
    expected.push_back(".a-" + machine + "-7-1-1.tif");
    expected.push_back("a.tif");
    EXPECT_THAT(folder.List(), ::testing::UnorderedElementsAreArray(expected));
}

TEST(AtomicFile, LeavesTheFileOfALivingProcessAlone) {
    const ScratchFolder folder;
    kep::AtomicFile file(folder / "a.tif");
    file.Write("first", 5);
    MakeOlder(file.GetTemporaryName(), 1'000'000);
    const pid_t child = ::fork(); // another process of this machine saves the same name
    if (child == 0) {
        Save(folder / "a.tif", "second");
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(child, ::waitpid(child, &status, 0));
    EXPECT_EQ("second", ReadBytes(folder / "a.tif"));
    file.Commit();
    EXPECT_EQ("first", ReadBytes(folder / "a.tif"));
    EXPECT_THAT(folder.List(), ElementsAre("a.tif"));
}

} // namespace
