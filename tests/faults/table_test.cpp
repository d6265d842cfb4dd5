// The table of writers has what the sources have.

#include "tests/faults/writer.h"
#include "tests/support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace zel::test {
namespace {

namespace fs = std::filesystem;

/// The sources that make a file which appears when it is whole.
std::set<std::string> FindSavingSources() {
    const fs::path root = ZEL_SOURCES;
    std::set<std::string> sources;
    for (const char* const room : {"core", "model", "image", "histogram", "mapping", "dialogs", "viewer", "overlay",
                                   "volume", "factory", "library", "host", "examples"})
        for (const auto& entry : fs::recursive_directory_iterator(root / room)) {
            const std::string name = fs::relative(entry.path(), root).string();
            if (entry.path().extension() == ".cpp" && name != "core/kepcore/kep_atomicfile.cpp" &&
                ReadBytes(entry.path().string()).find("AtomicFile file(") != std::string::npos)
                sources.insert(name);
        }
    return sources;
}

TEST(Writers, OfAllSourcesAreInTheTable) {
    std::set<std::string> known, names;
    for (const Writer& writer : AllWriters()) {
        known.insert(writer.source);
        EXPECT_TRUE(names.insert(writer.name).second) << writer.name;
    }
    EXPECT_EQ(FindSavingSources(), known);
}

} // namespace
} // namespace zel::test
