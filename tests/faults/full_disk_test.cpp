// Each writer of the table on disks that have no room, that are read-only, and that have no room for one more file.

#include "tests/faults/writer_fixture.h"
#include "tests/support/file_size_limit.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zel::test {
namespace {

constexpr int noDisk = 77; ///< exit code where no disk can be mounted

void WriteWord(const char* name, const std::string& word) {
    const int file = ::open(name, O_WRONLY);
    if (file < 0 || ::write(file, word.data(), word.size()) < 0)
        ::_exit(noDisk);
    ::close(file);
}

/// Gives this process a disk in memory that nobody else sees; it must have no threads.
void MountDisk(const std::string& at, const std::string& options) {
    const std::string user = std::to_string(::geteuid()), group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) {
        WriteWord("/proc/self/setgroups", "deny");
        WriteWord("/proc/self/uid_map", "0 " + user + " 1");
        WriteWord("/proc/self/gid_map", "0 " + group + " 1");
    } else if (::unshare(CLONE_NEWNS) != 0) {
        ::_exit(noDisk);
    }
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", at.c_str(), "tmpfs", 0, options.c_str()) != 0)
        ::_exit(noDisk);
}

class FullDisks : public WriterTest {
protected:
    /// Runs a check on a disk of its own, mounted at the folder.
    /// @param options  of the disk
    void OnDisk(const std::string& options, const std::function<void()>& check) const {
        std::fflush(nullptr);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::alarm(300);
            MountDisk(folder.GetPath(), options);
            check();
            std::fflush(nullptr);
            ::_exit(HasFailure() ? 1 : 0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        if (WIFEXITED(status) && WEXITSTATUS(status) == noDisk)
            GTEST_SKIP() << "no disk can be mounted here";
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }
    /// Saves, which must leave the files as they are or make them whole.
    /// @return whether it has saved
    bool SaveAndCheck(const Files& whole) const {
        const Files before = Look();
        const std::string told = Save();
        const Files files = Look();
        EXPECT_TRUE(AreOldOrWhole(files, before, whole)) << told;
        for (const auto& [name, bytes] : told.empty() ? whole : Files{})
            EXPECT_TRUE(files.contains(name) && files.at(name) == bytes) << name;
        EXPECT_TRUE(told.empty() || !writer.tellsWhy || told.find(std::strerror(ENOSPC)) != std::string::npos) << told;
        return told.empty();
    }
};

/// Takes all the room there is but for some pages.
void FillDisk(const std::string& name, std::size_t pagesLeft) {
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const int file = ::open(name.c_str(), O_WRONLY | O_CREAT, 0600);
    const std::string bytes(page, 'x');
    off_t size = 0;
    for (ssize_t written = 0; (written = ::write(file, bytes.data(), page)) > 0;)
        size += written;
    ASSERT_EQ(errno, ENOSPC);
    const auto left = static_cast<off_t>(pagesLeft * page);
    ASSERT_EQ(::ftruncate(file, std::max<off_t>(size - left, 0)), 0);
    ::close(file);
}

TEST_P(FullDisks, LeaveTheOldFileUntilThereIsRoomForTheNewOne) {
    OnDisk("size=4m", [this] {
        const Files whole = LookAtWhole(Before::File);
        bool isSaved = false;
        std::size_t pages = 0;
        for (; !isSaved && pages < 500 && !HasFailure(); pages += 1 + pages / 3) {
            LayOut(Before::File);
            FillDisk(folder / "filler", pages);
            Files wholeAndFiller = whole;
            wholeAndFiller.erase(folder / "filler");
            isSaved = SaveAndCheck(wholeAndFiller);
            EXPECT_FALSE(isSaved && pages == 0) << "there was no room";
        }
        EXPECT_TRUE(isSaved);
    });
}

TEST_P(FullDisks, WithoutRoomLeaveNothing) {
    OnDisk("size=1m", [this] {
        LayOut(Before::Nothing);
        FillDisk(folder / "filler", 0);
        EXPECT_FALSE(SaveAndCheck({}));
        EXPECT_EQ(folder.List(), std::vector<std::string>{"filler"});
    });
}

TEST_P(FullDisks, WithoutRoomForANameLeaveTheOldFile) {
    OnDisk("nr_inodes=2", [this] { // the folder's own and one more
        LayOut(Before::File);
        EXPECT_FALSE(SaveAndCheck({}));
        EXPECT_EQ(ReadBytes(path), writer.old);
    });
}

TEST_P(FullDisks, ThatAreReadOnlyAreToldOf) {
    OnDisk("size=1m", [this] {
        LayOut(Before::File);
        const Files before = Look();
        if (::mount(nullptr, folder.GetPath().c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0)
            ::_exit(noDisk);
        const std::string told = Save();
        EXPECT_NE(told, "");
        EXPECT_TRUE(!writer.tellsWhy || told.find(std::strerror(EROFS)) != std::string::npos) << told;
        EXPECT_TRUE(Look() == before);
    });
}

TEST_P(FullDisks, InTheMiddleOfTheFileLeaveTheOldOne) {
    LayOut(Before::File);
    const Files before = Look();
    std::string told;
    {
        const FileSizeLimit limit(5);
        told = Save();
    }
    EXPECT_NE(told, "");
    EXPECT_TRUE(Look() == before);
}

INSTANTIATE_TEST_SUITE_P(Writers, FullDisks, testing::ValuesIn(AllWriters()), testing::PrintToStringParamName());

} // namespace
} // namespace zel::test
