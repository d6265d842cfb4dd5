#pragma once

// For tests that run the program from outside, as a user does.

#include "tests/support/frames.h"
#include "tests/support/scratch_folder.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zelviewer::test {

struct Outcome {
    int exitCode = -1;
    std::string output, errors;
    double peakBytes = 0; ///< the most memory that it had
};

enum class Display { Present, None };

class ProgramTest : public testing::Test {
protected:
    Outcome Run(const std::vector<std::string>& arguments, Display display = Display::Present) {
        return Wait(Start(arguments, display));
    }
    /// @param isRoot  false: run by another user, if the tests are root's, whom no permission stops
    pid_t Start(std::vector<std::string> arguments, Display display, bool isRoot = true) {
        const std::string output = outputs / "stdout", errors = fromDesktop ? "/dev/null" : outputs / "stderr";
        arguments.emplace(arguments.begin(), ZELVIEWER);
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        const pid_t child = fork();
        if (child == 0) {
            if (display == Display::None) {
                unsetenv("DISPLAY");
                unsetenv("WAYLAND_DISPLAY");
            }
            dup2(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
            dup2(open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
            constexpr uid_t nobody = 65534;
            if (!isRoot && geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
                _exit(126);
            setenv("XDG_CONFIG_HOME", settings.GetPath().c_str(), 1); // not those of whoever runs the tests
            setenv("NO_AT_BRIDGE", "1", 0); // GTK's bridge to screen readers looks for a bus, and leaks
            execv(argv[0], argv.data());
            _exit(127);
        }
        return child;
    }
    /// Waits for the program's end.
    Outcome Wait(pid_t child) {
        int status = 0;
        rusage usage{};
        EXPECT_EQ(wait4(child, &status, 0, &usage), child);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadBytes(outputs / "stdout"),
                ReadBytes(outputs / "stderr"), 1024.0 * static_cast<double>(usage.ru_maxrss)};
    }

    /// A frame whose voxels name their place: x + 2 y + 5 z. @return its file name
    std::string WriteRamp(const std::string& name, const kep::Resolution& resolution = {}) {
        kep::Image3d<unsigned char> frame(nullptr, &resolution);
        frame.MakeRoom(sizeX, sizeY, sizeZ);
        for (std::size_t i = 0; i < frame.GetNumVoxels(); ++i) {
            const kep::Vector3d<std::size_t> p = frame.GetPos(i);
            frame.SetVoxel(i, static_cast<unsigned char>(p.x + 2 * p.y + 5 * p.z));
        }
        return Save(frame, folder / name);
    }

    static constexpr std::size_t sizeX = 40, sizeY = 30, sizeZ = 10;
    ScratchFolder folder, settings;
    bool fromDesktop = false; ///< nobody reads the program's errors

private:
    ScratchFolder outputs;
};

} // namespace zelviewer::test
