#include "core/kepcore/kep_exceptions.h"
#include "model/zel_viewfile.h"
#include "tests/support/comma_locale.h"
#include "tests/support/save_faults.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <sys/stat.h>

using namespace zel;

namespace {

/// A pose in which no two numbers are alike: -2.5; 1, 2 ... 16; 0.125; -1, -2 ... -16.
VolumePose MakePose() {
    VolumePose pose;
    pose.eyeDistance = -2.5F;
    pose.planeOffset = 0.125;
    for (std::size_t i = 0; i < 16; ++i) {
        pose.objectMatrix[i] = static_cast<float>(i + 1);
        pose.planeMatrix[i] = -static_cast<float>(i + 1);
    }
    return pose;
}

VolumePose ReadOver(const VolumePose& before, const std::string& text) {
    VolumePose pose = before;
    ReadPose(text, pose);
    return pose;
}

} // namespace

TEST(ViewFile, OfAResetViewIsThis) {
    const std::string zero = "0.00000000000 ", one = "1.00000000000 ";
    const std::string four = zero + zero + zero + zero;
    const std::string matrix = one + four + one + four + one + four + one;
    EXPECT_EQ(WritePose(VolumePose()), "-5.00000000000 " + matrix + one + matrix);
}

TEST(ViewFile, HasItsNumbersInOrder) {
    std::string expected = "-2.50000000000 ";
    for (int i = 1; i <= 16; ++i)
        expected += std::to_string(i) + ".00000000000 ";
    expected += "0.12500000000 ";
    for (int i = 1; i <= 16; ++i)
        expected += "-" + std::to_string(i) + ".00000000000 ";
    EXPECT_EQ(WritePose(MakePose()), expected);
    EXPECT_EQ(ReadOver(VolumePose(), expected), MakePose());
}

TEST(ViewFile, ReturnsWhatWasSavedUpToElevenDecimals) {
    VolumeView view;
    view.pose.eyeDistance = -4.123456F;
    view.pose.planeOffset = 0.123456789012345;
    for (int i = 1; i < 20; ++i) {
        view.action = i % 2 == 0 ? VolumeAction::RotateObject : VolumeAction::RotatePlane;
        view.objectRotation = view.planeRotation = {static_cast<float>(7 * i), {0.3F, static_cast<float>(i), 1.0F}};
        view.Advance();
    }
    const VolumePose read = ReadOver(VolumePose(), WritePose(view.pose));
    EXPECT_FLOAT_EQ(read.eyeDistance, view.pose.eyeDistance);
    EXPECT_NEAR(read.planeOffset, view.pose.planeOffset, 0.5001e-11);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(read.objectMatrix[i], view.pose.objectMatrix[i], 1e-11F + 6e-8F * std::abs(read.objectMatrix[i]));
        EXPECT_NEAR(read.planeMatrix[i], view.pose.planeMatrix[i], 1e-11F + 6e-8F * std::abs(read.planeMatrix[i]));
    }
    EXPECT_EQ(ReadOver(VolumePose(), WritePose(read)), read) << "what was rounded once stays";
}

TEST(ViewFile, KeepsNumbersOfAnySize) {
    VolumePose pose = MakePose();
    pose.eyeDistance = -std::numeric_limits<float>::max();
    pose.planeOffset = std::numeric_limits<double>::max();
    pose.planeMatrix[15] = std::numeric_limits<float>::infinity();
    EXPECT_EQ(ReadOver(VolumePose(), WritePose(pose)), pose);
}

TEST(ViewFile, ThatIsShortLeavesTheRestAsItWas) {
    const std::string whole = WritePose(MakePose());
    std::size_t end = 0;
    for (int numbers = 0; numbers <= 34; ++numbers) {
        const VolumePose pose = ReadOver(VolumePose(), whole.substr(0, end));
        VolumePose expected;
        const VolumePose made = MakePose();
        for (int i = 0; i < numbers; ++i) {
            const auto at = static_cast<std::size_t>(i);
            if (i == 0)
                expected.eyeDistance = made.eyeDistance;
            else if (i <= 16)
                expected.objectMatrix[at - 1] = made.objectMatrix[at - 1];
            else if (i == 17)
                expected.planeOffset = made.planeOffset;
            else
                expected.planeMatrix[at - 18] = made.planeMatrix[at - 18];
        }
        EXPECT_EQ(pose, expected) << numbers << " numbers";
        end = whole.find(' ', end) + 1;
    }
}

TEST(ViewFile, ThatIsDamagedIsReadUpToTheDamage) {
    VolumePose expected;
    expected.eyeDistance = -3;
    expected.objectMatrix[0] = 7;
    for (const char* const text : {"-3 7 x 9 9 9", "-3 7 ,5 9", "-3\n7\n<html>", "-3 7", "  -3 \t 7 # 5"})
        EXPECT_EQ(ReadOver(VolumePose(), text), expected) << text;
    const std::string nul("-3 7 \0 9 9", 10);
    EXPECT_EQ(ReadOver(VolumePose(), nul), expected);
    for (const char* const text : {"", " ", "view", "\x89PNG\r\n"})
        EXPECT_EQ(ReadOver(MakePose(), text), MakePose()) << text;
}

TEST(ViewFile, MayGoOnBehindItsLastNumber) {
    EXPECT_EQ(ReadOver(VolumePose(), WritePose(MakePose()) + "\n1 2 3 and so on"), MakePose());
}

TEST(ViewFile, MayHaveItsNumbersWrittenInAnyWay) {
    VolumePose expected;
    expected.eyeDistance = -0.5F;
    expected.objectMatrix[0] = 100;
    expected.objectMatrix[1] = 3;
    EXPECT_EQ(ReadOver(VolumePose(), "-.5\r\n+1e2\n\n3"), expected);
}

TEST(ViewFile, IsWrittenAndReadInTheCurrentLocale) {
    const std::string pointed = WritePose(MakePose());
    const CommaLocale german;
    const std::string text = WritePose(MakePose());
    EXPECT_EQ(text.substr(0, 30), "-2,50000000000 1,00000000000 2");
    EXPECT_EQ(ReadOver(VolumePose(), text), MakePose());
    VolumePose expected; // a file of another locale is understood up to its first point
    expected.eyeDistance = -2;
    EXPECT_EQ(ReadOver(VolumePose(), pointed), expected);
    EXPECT_TRUE(german.IsStillSet());
}

TEST(ViewFile, IsSavedAndLoaded) {
    const ScratchFolder folder;
    const std::string name = folder / "pose.zelview";
    SavePose(name, MakePose());
    EXPECT_EQ(ReadBytes(name), WritePose(MakePose()));
    VolumePose pose;
    EXPECT_TRUE(LoadPose(name, pose));
    EXPECT_EQ(pose, MakePose());
}

TEST(ViewFile, ThatIsEmptyIsLoadedWithoutAChange) {
    const ScratchFolder folder;
    WriteBytes(folder / "empty.zelview", "");
    VolumePose pose = MakePose();
    EXPECT_TRUE(LoadPose(folder / "empty.zelview", pose));
    EXPECT_EQ(pose, MakePose());
}

TEST(ViewFile, ThatCannotBeOpenedSaysSo) {
    const ScratchFolder folder;
    VolumePose pose = MakePose();
    EXPECT_FALSE(LoadPose(folder / "missing.zelview", pose));
    EXPECT_FALSE(LoadPose(folder.GetPath(), pose)) << "a folder";
    const std::string pipe = folder / "pipe.zelview";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(LoadPose(pipe, pose)) << "a pipe without a writer, for which opening would wait";
    EXPECT_EQ(pose, MakePose());
}

TEST(ViewFile, ThatCannotBeReadSaysSoAndLeavesThePose) {
    const ScratchFolder folder;
    const std::string name = folder / "pose.zelview";
    SavePose(name, MakePose());
    bool failed = true;
    int notLoaded = 0;
    for (std::size_t call = 0; failed; ++call) {
        VolumePose pose;
        bool loaded = false;
        {
            const FailingCall fault(call, EIO);
            loaded = LoadPose(name, pose);
            failed = fault.HasFailed();
        }
        EXPECT_EQ(pose, loaded ? MakePose() : VolumePose()) << "call " << call;
        notLoaded += loaded ? 0 : 1;
    }
    EXPECT_GE(notLoaded, 2); // when opening fails, and when reading does
}

TEST(ViewFile, IsReadForItsFirstMegabyte) {
    const ScratchFolder folder;
    const std::string name = folder / "long.zelview";
    WriteBytes(name, WritePose(MakePose()) + std::string(std::size_t{3} << 20, 'x'));
    VolumePose pose;
    EXPECT_TRUE(LoadPose(name, pose));
    EXPECT_EQ(pose, MakePose());
    WriteBytes(name, std::string(std::size_t{1} << 20, ' ') + WritePose(MakePose()));
    VolumePose behind;
    EXPECT_TRUE(LoadPose(name, behind));
    EXPECT_EQ(behind, VolumePose());
}

TEST(ViewFile, ThatCannotBeCreatedThrows) {
    const ScratchFolder folder;
    EXPECT_THROW(SavePose(folder / "missing/pose.zelview", MakePose()), kep::IOException);
    EXPECT_TRUE(folder.List().empty());
}

TEST(ViewFile, IsOldOrWholeWhateverFails) {
    const ScratchFolder folder;
    const std::string name = folder / "pose.zelview";
    ExpectOldOrWholeAtEveryFault(name, [&] {
        try {
            SavePose(name, MakePose());
            return true;
        } catch (const kep::IOException&) {
            return false;
        }
    });
}
