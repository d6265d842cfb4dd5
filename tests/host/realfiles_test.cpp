// Every real file, by what --info says of it and by what becomes of it when it is opened.

#include "tests/host/program.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using zelviewer::test::Display;
using zelviewer::test::Outcome;
using zelviewer::test::ProgramTest;

class RealFiles : public ProgramTest {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(ZEL_TEST_DATA "/expected.json"))
            GTEST_SKIP() << "no " ZEL_TEST_DATA;
    }
    static std::vector<std::string> FindAll() {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(ZEL_TEST_DATA)) {
            const std::string ending = entry.path().extension().string();
            if (ending == ".tif" || ending == ".tiff" || ending == ".ics")
                names.push_back(entry.path().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    Outcome Open(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--save-view", folder / "view.png", "--force"});
        return Run(arguments, Display::None);
    }
};

TEST_F(RealFiles, OpenAsInfoSays) {
    int shown = 0, refused = 0, chosen = 0;
    for (const std::string& name : FindAll()) {
        const Outcome told = Run({"--info", "--json", name}, Display::None);
        const json info = json::parse(told.output)["files"][0];
        const Outcome opened = Open({name});
        // What damages voxels shows only when they are read.
        const bool isCorrupt = name.find("/corrupt/") != std::string::npos;
        const std::string reason = info.value("error", info.value("notShown", ""));
        if (!reason.empty()) {
            EXPECT_EQ(opened.errors, "zelviewer: " + name + ": " + reason + "\n");
            EXPECT_EQ(opened.exitCode, 1) << name;
            ++refused;
            continue;
        }
        Outcome asTold = opened;
        if (info.contains("channelsShown") && info["channelsShown"].is_null()) {
            EXPECT_THAT(opened.errors, HasSubstr("name the one to show by --channel")) << name;
            EXPECT_EQ(opened.exitCode, 1) << name;
            asTold = Open({name, "--channel", std::to_string(info["channels"].get<int>())});
            ++chosen;
        }
        if (asTold.exitCode != 0 && isCorrupt) {
            EXPECT_THAT(asTold.errors, HasSubstr("The file is damaged: ")) << name;
            continue;
        }
        EXPECT_EQ(asTold.exitCode, 0) << asTold.errors;
        ++shown;
    }
    EXPECT_GT(shown, 100);
    EXPECT_GT(refused, 20);
    EXPECT_EQ(chosen, 3);
}

} // namespace
