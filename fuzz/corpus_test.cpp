// Each input of the corpus once through its target, as an ordinary test: what fuzzing has found stays mended, in every
// build. A broken promise ends the program.

#include "fuzz/targets.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

struct Target {
    const char* name;
    void (*run)(std::string_view bytes);
};

#define ZEL_FUZZ_TARGET(name, function) {#name, &fuzz::function},
const Target targets[] = {ZEL_FUZZ_TARGETS}; // of fuzz/CMakeLists.txt

TEST(FuzzCorpus, IsReadOrRefusedByItsTarget) {
    for (const Target& target : targets) {
        SCOPED_TRACE(target.name);
        target.run({});
        std::size_t inputs = 0;
        for (const auto& entry : std::filesystem::directory_iterator(std::string(ZEL_FUZZ_CORPUS "/") + target.name)) {
            std::fprintf(stderr, "%s\n", entry.path().c_str()); // the last one is to blame
            target.run(ReadBytes(entry.path().string()));
            ++inputs;
        }
        EXPECT_GT(inputs, 0U);
    }
}

} // namespace
