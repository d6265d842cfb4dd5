// Each writer of the table while memory is refused, from each request on.

#include "tests/faults/writer_fixture.h"
#include "tests/support/failing_memory.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>

namespace zel::test {
namespace {

using WithoutMemory = WriterTest;

TEST_P(WithoutMemory, TheFileIsTheOldOneOrWhole) {
    std::optional<IgnoredLeaks> ignored;
    if (GetParam().toolkitWrites)
        ignored.emplace();
    const Files whole = LookAtWhole(Before::File);
    const std::size_t descriptors = CountDescriptors();
    std::size_t step = 1;
    bool failed = true;
    for (std::size_t number = 0; failed && !HasFailure(); number += step) {
        LayOut(Before::File);
        const Files before = Look();
        std::string told;
        bool isOut = false;
        {
            const FailingMemory memory(number);
            try {
                told = Save();
            } catch (const std::bad_alloc&) {
                isOut = true;
            }
            failed = memory.HasFailed();
        }
        SCOPED_TRACE("request " + std::to_string(number) + "; told: \"" + told + "\"");
        const Files files = Look();
        EXPECT_TRUE(AreOldOrWhole(files, before, whole));
        EXPECT_TRUE(files == whole || isOut || !told.empty());
        EXPECT_EQ(CountDescriptors(), descriptors);
        if (!IsLongRun())
            step = 1 + number / 40; // hundreds of them come before the first file is opened
    }
}

std::vector<Writer> WritersThatGoOn() {
    std::vector<Writer> writers;
    std::copy_if(AllWriters().begin(), AllWriters().end(), std::back_inserter(writers),
                 [](const Writer& writer) { return !writer.formatsTexts; });
    return writers;
}

INSTANTIATE_TEST_SUITE_P(Writers, WithoutMemory, testing::ValuesIn(WritersThatGoOn()),
                         testing::PrintToStringParamName());

} // namespace
} // namespace zel::test
