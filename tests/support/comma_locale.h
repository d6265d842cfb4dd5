#pragma once

#include "tests/support/scratch_folder.h"

#include <clocale>
#include <cstdlib>
#include <stdexcept>
#include <string>

/// While it lives, the process speaks German and writes 0,5. The locale is made from the system's sources, as few
/// machines have one installed.
class CommaLocale {
public:
    CommaLocale() : before(std::setlocale(LC_ALL, nullptr)) {
        const std::string make = "localedef -i de_DE -f UTF-8 " + folder / "de_DE.UTF-8" + " > /dev/null 2>&1";
        if (std::system(make.c_str()) != 0)
            throw std::runtime_error("localedef fails; is the package locales installed?");
        ::setenv("LOCPATH", folder.GetPath().c_str(), 1);
        const char* const set = std::setlocale(LC_ALL, "de_DE.UTF-8");
        ::unsetenv("LOCPATH");
        if (set == nullptr || std::string(std::localeconv()->decimal_point) != ",")
            throw std::runtime_error("the German locale cannot be used");
        name = set;
    }
    ~CommaLocale() { std::setlocale(LC_ALL, before.c_str()); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    /// Whether nobody has set another one.
    bool IsStillSet() const { return name == std::setlocale(LC_ALL, nullptr); }

private:
    ScratchFolder folder;
    std::string before;
    std::string name;
};
