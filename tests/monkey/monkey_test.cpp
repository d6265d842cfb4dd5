// Users and hosts who do everything at once, from fixed seeds. See README.md for other seeds and longer runs.

#include "tests/monkey/monkey.h"

#include <cstdlib>
#include <iostream>

using namespace zel;
using namespace zel::test;

namespace {

/// A number of the environment or of the command line: "--seed 5" is ZEL_MONKEY_SEED=5.
int Given(const char* variable, const wxString& option, int otherwise) {
    for (int i = 1; i + 1 < wxTheApp->argc; ++i)
        if (wxTheApp->argv[i] == option)
            return std::atoi(wxTheApp->argv[i + 1].utf8_str());
    const char* const value = std::getenv(variable);
    return value != nullptr ? std::atoi(value) : otherwise;
}

class MonkeyTest : public GuiTest, public ::testing::WithParamInterface<int> {};

} // namespace

TEST_P(MonkeyTest, BreaksNothing) {
    MonkeyRun run;
    run.commands = 100;
    const int seed = Given("ZEL_MONKEY_SEED", "--seed", 0);
    if (seed != 0 && GetParam() != 1)
        GTEST_SKIP() << "one seed is asked for";
    run.seed = static_cast<unsigned>(seed != 0 ? seed : GetParam());
    run.commands = Given("ZEL_MONKEY_COMMANDS", "--commands", run.commands);
    run.patience = Given("ZEL_MONKEY_PATIENCE", "--patience", run.patience);
    Monkey monkey(run);
    monkey.Run();
}

INSTANTIATE_TEST_SUITE_P(Seeds, MonkeyTest, ::testing::Values(1, 2, 3, 4));
