#pragma once

// A writer of the table at work in a folder of its own.

#include "tests/faults/writer.h"
#include "tests/support/log_catcher.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace zel::test {

/// Takes minutes and not seconds: more errors, more kills.
inline bool IsLongRun() {
    return std::getenv("ZEL_LONG") != nullptr;
}

inline std::size_t CountDescriptors() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

/// What is in a folder and those below: permissions and bytes by name, or where a link leads.
using Files = std::map<std::string, std::string>;

inline Files Look(const std::string& folder) {
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().string();
        struct stat status {};
        EXPECT_EQ(::lstat(name.c_str(), &status), 0) << name;
        std::string& what = files[name];
        what = std::to_string(status.st_mode) + ": ";
        if (entry.is_symlink())
            what += std::filesystem::read_symlink(name).string();
        else if (S_ISREG(status.st_mode))
            what += ReadBytes(name);
    }
    return files;
}

/// Each file is as it was before or as saving makes it, and there are no others.
inline testing::AssertionResult AreOldOrWhole(const Files& files, const Files& before, const Files& whole) {
    for (const auto& [name, bytes] : files) {
        const auto old = before.find(name), made = whole.find(name);
        if ((old == before.end() || old->second != bytes) && (made == whole.end() || made->second != bytes))
            return testing::AssertionFailure() << name << ", " << bytes.size() << " bytes, is neither old nor whole";
    }
    for (const auto& [name, bytes] : before)
        if (!files.contains(name))
            return testing::AssertionFailure() << name << " is gone";
    return testing::AssertionSuccess();
}

/// What stands under the path before it is saved to.
enum class Before { Nothing, File, Link };

class WriterTest : public testing::TestWithParam<Writer> {
protected:
    std::string Save() const { return save(path); }

    /// Lays the folder out anew. Further files of the writer are not there.
    void LayOut(Before before) const {
        namespace fs = std::filesystem;
        for (const auto& entry : fs::directory_iterator(folder.GetPath()))
            fs::remove_all(entry.path());
        if (before == Before::Nothing)
            return;
        std::string file = path;
        if (before == Before::Link) {
            fs::create_directory(folder / "real");
            file = folder / ("real/b" + writer.ending);
            fs::create_symlink("real/b" + writer.ending, path);
        }
        WriteBytes(file, writer.old);
        ASSERT_EQ(::chmod(file.c_str(), 0640), 0); // not what new files have
    }
    Files Look() const { return test::Look(folder.GetPath()); }
    /// What saving makes of the folder when nothing is in its way.
    Files LookAtWhole(Before before) const {
        LayOut(before);
        EXPECT_EQ(Save(), "");
        return Look();
    }

    const LogCatcher log;
    const Writer& writer = GetParam();
    ScratchFolder folder;
    const std::string path = folder / ("a" + writer.ending);
    const Writer::Save save = writer.prepare();
};

} // namespace zel::test
