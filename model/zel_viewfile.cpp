#include "model/zel_viewfile.h"

#include "core/kepcore/kep_atomicfile.h"
#include "core/kepcore/kep_plainfile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>

namespace zel {

namespace {

void Append(std::string& text, double number) {
    std::array<char, 400> digits; // the largest double has 309 before its point
    const int length = std::snprintf(digits.data(), digits.size(), "%.11f ", number);
    text.append(digits.data(), static_cast<std::size_t>(length));
}

/// Calls act(number) for each number of a pose, a float or a double, in the order of the file.
template <typename Pose, typename Act>
void ForEachNumber(Pose& pose, const Act& act) {
    act(pose.eyeDistance);
    std::for_each(pose.objectMatrix.begin(), pose.objectMatrix.end(), act);
    act(pose.planeOffset);
    std::for_each(pose.planeMatrix.begin(), pose.planeMatrix.end(), act);
}

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Reads the next number. If there is none, the value stays, and what stopped the reading is not skipped.
struct ReadNumber {
    std::FILE* file;
    void operator()(float& value) const { [[maybe_unused]] const int read = std::fscanf(file, "%f", &value); }
    void operator()(double& value) const { [[maybe_unused]] const int read = std::fscanf(file, "%lf", &value); }
};

} // namespace

std::string WritePose(const VolumePose& pose) {
    std::string text;
    ForEachNumber(pose, [&](auto number) { Append(text, static_cast<double>(number)); });
    return text;
}

void ReadPose(std::string_view text, VolumePose& pose) {
    if (text.empty())
        return;             // fmemopen may refuse to open nothing
    std::string copy(text); // for a stream that only reads, but doesn't say so
    const std::unique_ptr<std::FILE, CloseFile> file(fmemopen(copy.data(), copy.size(), "r"));
    if (!file)
        throw std::bad_alloc();
    ForEachNumber(pose, ReadNumber{file.get()});
}

void SavePose(const std::string& fileName, const VolumePose& pose) {
    const std::string text = WritePose(pose);
    kep::AtomicFile file(fileName);
    file.Write(text.data(), text.size());
    file.Commit();
}

bool LoadPose(const std::string& fileName, VolumePose& pose) {
    constexpr std::uint64_t most = 1 << 20; // a pose takes 400 bytes, or 3 kB with the largest numbers
    const kep::PlainFile file(fileName.c_str());
    if (!file.IsOpen())
        return false;
    std::string text(static_cast<std::size_t>(std::min(file.GetLength(), most)), '\0');
    const std::ptrdiff_t read = file.ReadAt(0, text.data(), text.size());
    if (read < 0)
        return false;
    ReadPose(std::string_view(text).substr(0, static_cast<std::size_t>(read)), pose);
    return true;
}

} // namespace zel
