// Readers of files that are no plain ones, that shrink or are replaced while they are read, or that the system fails to
// read.

#include "core/kepcore/kep_exceptions.h"
#include "core/kepcore/kep_image3d.h"
#include "host/settingsfile.h"
#include "model/zel_histogram.h"
#include "model/zel_viewfile.h"
#include "tests/faults/writer_fixture.h"
#include "tests/support/failing_calls.h"

#include <cerrno>
#include <optional>
#include <unistd.h>

namespace zel::test {
namespace {

namespace fs = std::filesystem;

/// One way to read a file.
struct Reader {
    std::string name;
    std::string ending;
    /// Writes one of two files of the same size with different contents, 0 or 1.
    std::function<void(const std::string& path, int content)> write;
    /// What is read, in any form; nothing if the file is refused.
    std::function<std::optional<std::string>(const std::string& path)> read;
    /// A file that ends too early is refused, and not taken as far as it goes.
    bool needsAll = true;
};

std::ostream& operator<<(std::ostream& out, const Reader& reader) {
    return out << reader.name;
}

using Frame = kep::Image3d<unsigned short>;

Frame MakeFrame(int content) {
    Frame frame;
    frame.MakeRoom(70, 40, 4);
    for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i)
        frame.SetVoxel(i, static_cast<unsigned short>((i + 1) * 2654435761U >> (9U + static_cast<unsigned>(content))));
    return frame;
}

std::optional<std::string> ReadFrame(const std::string& path) {
    try {
        const Frame frame(path.c_str(), nullptr, false, -1, nullptr, nullptr);
        return std::string(reinterpret_cast<const char*>(frame.begin()), frame.GetNumVoxels() * 2);
    } catch (const kep::IOException&) {
        return std::nullopt;
    }
}

Reader Image(const std::string& name, const std::string& ending, bool compress) {
    const auto write = [compress](const std::string& path, int content) {
        MakeFrame(content).SaveImage(path.c_str(), kep::FF_BY_NAME, compress, nullptr);
    };
    return {name, ending, write, &ReadFrame};
}

/// A header that names no file for the voxels, which lie beside it.
Reader ImageOfTwoFiles() {
    const auto write = [](const std::string& path, int content) {
        const Frame frame = MakeFrame(content);
        WriteBytes(path.substr(0, path.size() - 4) + ".ids",
                   std::string(reinterpret_cast<const char*>(frame.begin()), frame.GetNumVoxels() * 2));
        WriteBytes(path, "\t\nics_version\t1.0\nfilename\ta\nlayout\tparameters\t4\nlayout\torder\tbits\tx\ty\tz\n"
                         "layout\tsizes\t16\t70\t40\t4\nlayout\tcoordinates\tvideo\nlayout\tsignificant_bits\t16\n"
                         "representation\tformat\tinteger\nrepresentation\tsign\tunsigned\n"
                         "representation\tcompression\tuncompressed\nrepresentation\tbyte_order\t1\t2\n");
    };
    return {"IcsOfTwoFiles", ".ics", write, &ReadFrame};
}

Reader HistogramFile() {
    const auto write = [](const std::string& path, int content) {
        Histogram<int> histogram;
        histogram.Init(0, 4999, 5000);
        for (std::size_t i = 0; i < histogram.size(); ++i)
            histogram[i] = 1'000'000 + i * i + static_cast<std::size_t>(content);
        EXPECT_TRUE(histogram.Save(path));
    };
    const auto read = [](const std::string& path) -> std::optional<std::string> {
        Histogram<int> histogram;
        if (!histogram.Load(path))
            return std::nullopt;
        std::string counters;
        for (std::size_t i = 0; i < histogram.size(); ++i)
            counters += std::to_string(histogram[i]) + " ";
        return counters;
    };
    return {"Histogram", ".txt", write, read};
}

Reader ViewFile() {
    const auto write = [](const std::string& path, int content) {
        VolumePose pose;
        pose.eyeDistance = -2.5F - static_cast<float>(content);
        pose.planeOffset = 0.25 + content;
        SavePose(path, pose);
    };
    const auto read = [](const std::string& path) -> std::optional<std::string> {
        VolumePose pose;
        if (!LoadPose(path, pose))
            return std::nullopt;
        return WritePose(pose);
    };
    return {"ViewFile", ".zelview", write, read, false};
}

/// Settings that cannot be read are none.
Reader Settings() {
    const auto write = [](const std::string& path, int content) {
        EXPECT_EQ(zelviewer::SettingsFile(path).Change(
                      [content](wxFileConfig& config) { config.Write("/group/key", 5L + content); }),
                  "");
    };
    const auto read = [](const std::string& path) -> std::optional<std::string> {
        const auto config = zelviewer::SettingsFile(path).Read();
        if (!config->HasEntry("/group/key"))
            return std::nullopt;
        return std::to_string(config->Read("/group/key", 0L));
    };
    return {"Settings", ".conf", write, read, false};
}

std::vector<Reader> AllReaders() {
    return {Image("PlainTiff", ".tif", false),
            Image("PackedTiff", ".tif", true),
            Image("PlainIcs", ".ics", false),
            Image("PackedIcs", ".ics", true),
            ImageOfTwoFiles(),
            HistogramFile(),
            ViewFile(),
            Settings()};
}

class Reading : public testing::TestWithParam<Reader> {
protected:
    Reading() { ::alarm(120); } // a reader that waits ends the program
    ~Reading() override { ::alarm(0); }

    void Write(int content) const {
        for (const auto& entry : fs::directory_iterator(folder.GetPath()))
            fs::remove_all(entry.path());
        reader.write(path, content);
    }
    /// The files that are read: one or two.
    std::vector<std::string> GetFiles() const {
        std::vector<std::string> files;
        for (const std::string& name : folder.List())
            files.push_back(folder / name);
        return files;
    }
    /// Reads again and again, each time with the action before the next call of the system.
    /// @param check  gets what was read
    void ReadWithEachCall(const std::function<void()>& action,
                          const std::function<void(const std::optional<std::string>&)>& check) const {
        const std::size_t descriptors = CountDescriptors();
        bool happened = true;
        std::size_t number = 0;
        for (; happened && !HasFailure(); ++number) {
            Write(0);
            std::optional<std::string> read;
            {
                const ActionAtCall before(number, action);
                read = reader.read(path);
                happened = before.HasHappened();
            }
            SCOPED_TRACE("call " + std::to_string(number));
            check(read);
            EXPECT_EQ(CountDescriptors(), descriptors);
        }
        EXPECT_GT(number, 3U); // a file is opened, looked at and read
    }

    const LogCatcher log;
    const Reader& reader = GetParam();
    ScratchFolder folder;
    const std::string path = folder / ("a" + reader.ending);
};

TEST_P(Reading, WhatIsNoPlainFileIsRefusedAtOnce) {
    const std::size_t descriptors = CountDescriptors();
    const auto expectRefused = [&](const std::string& what) {
        EXPECT_FALSE(reader.read(path)) << what;
        EXPECT_EQ(CountDescriptors(), descriptors) << what;
        fs::remove(path);
    };
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    expectRefused("pipe");
    fs::create_directory(path);
    expectRefused("folder");
    for (const char* const device : {"/dev/null", "/dev/zero", "/dev/full", "/dev/tty", "/dev/stdin"}) {
        fs::create_symlink(device, path);
        expectRefused(device);
    }
    fs::create_symlink("nowhere", path);
    expectRefused("dangling link");
    fs::create_symlink(path, path);
    expectRefused("link to itself");
    expectRefused("nothing");
}

TEST_P(Reading, AFileThatShrinksIsWholeOrRefused) {
    Write(0);
    const auto whole = reader.read(path);
    ASSERT_TRUE(whole);
    for (const std::string& file : GetFiles()) {
        const std::uintmax_t size = fs::file_size(file);
        for (const std::uintmax_t left : {std::uintmax_t{0}, size / 2, size - size / 8}) {
            SCOPED_TRACE(file + " shrinks to " + std::to_string(left));
            ReadWithEachCall([&] { ASSERT_EQ(::truncate(file.c_str(), static_cast<off_t>(left)), 0); },
                             [&](const auto& read) { EXPECT_TRUE(!reader.needsAll || !read || *read == *whole); });
        }
    }
}

TEST_P(Reading, AFileThatIsReplacedIsTheOldOneOrTheNewOne) {
    Write(1);
    const auto second = reader.read(path);
    std::map<std::string, std::string> replacements;
    for (const std::string& file : GetFiles())
        replacements[file] = ReadBytes(file);
    Write(0);
    const auto first = reader.read(path);
    ASSERT_TRUE(first && second && *first != *second);
    const ScratchFolder aside;
    for (const auto& [file, bytes] : replacements) {
        const std::string other = aside / "other";
        ReadWithEachCall(
            [&] {
                WriteBytes(other, bytes);
                fs::rename(other, file);
            },
            [&](const auto& read) { EXPECT_TRUE(read && (*read == *first || *read == *second)) << file; });
    }
}

TEST_P(Reading, WhereACallFailsTheFileIsWholeOrRefused) {
    Write(0);
    const auto whole = reader.read(path);
    const std::size_t descriptors = CountDescriptors();
    for (const int error : {EIO, EACCES, ENOMEM}) {
        std::string call = "first";
        for (std::size_t number = 0; !call.empty() && !HasFailure(); ++number) {
            std::optional<std::string> read;
            {
                const FailingCall fault(number, error);
                read = reader.read(path);
                call = fault.GetName();
            }
            EXPECT_TRUE(!read || *read == *whole) << number << ", " << call;
            EXPECT_FALSE(read && call == "open") << number;
            EXPECT_EQ(CountDescriptors(), descriptors) << number << ", " << call;
        }
    }
}

TEST_P(Reading, InterruptedCallsAreMadeAgain) {
    Write(0);
    const auto whole = reader.read(path);
    std::optional<std::string> read;
    {
        const InterruptedCalls calls;
        read = reader.read(path);
        EXPECT_GT(calls.GetCount(), 2U);
    }
    EXPECT_TRUE(read && *read == *whole);
}

INSTANTIATE_TEST_SUITE_P(Readers, Reading, testing::ValuesIn(AllReaders()), testing::PrintToStringParamName());

} // namespace
} // namespace zel::test
