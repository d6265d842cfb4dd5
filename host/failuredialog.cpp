#include "host/failuredialog.h"

#include "image/zel_modaldialog.h"

#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace zelviewer {

bool IsReadByNobody(int output, int error) {
    struct stat to {};
    if (isatty(error) == 1)
        return false;
    if (fstat(error, &to) != 0)
        return true; // closed
    if (S_ISFIFO(to.st_mode))
        return false;
    if (!S_ISREG(to.st_mode))
        return true;
    struct stat other {};
    return fstat(output, &other) == 0 && other.st_dev == to.st_dev && other.st_ino == to.st_ino;
}

bool IsForScripts(const std::vector<std::string>& arguments) {
    constexpr std::string_view beginnings[] = {"--screenshot", "--save-", "--export-", "--info",
                                               "--json",       "--help",  "-h",        "--version"};
    return std::any_of(arguments.begin(), arguments.end(), [&](const std::string& argument) {
        return std::any_of(std::begin(beginnings), std::end(beginnings),
                           [&](std::string_view beginning) { return argument.starts_with(beginning); });
    });
}

void ShowFailureOnDesktop(const std::string& text, char* programName) {
    if (!IsReadByNobody(STDOUT_FILENO, STDERR_FILENO) || wxTheApp != nullptr)
        return;
    const wxLogNull silence; // without a display nothing can be shown, and nobody reads about it
    wxApp::SetInstance(new wxApp);
    int count = 1;
    char* arguments[] = {programName, nullptr};
    if (!wxEntryStart(count, arguments))
        return;
    zel::ShowMessage(wxString::FromUTF8(text), "zelviewer", wxOK | wxICON_ERROR);
    wxEntryCleanup();
}

} // namespace zelviewer
