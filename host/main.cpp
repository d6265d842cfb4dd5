#include "host/failuredialog.h"
#include "host/fileselection.h"
#include "host/message.h"
#include "host/options.h"
#include "host/report.h"
#include "host/run.h"

#include <cstdio>

namespace {

int Print(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    if (std::fflush(stdout) == 0)
        return 0;
    zelviewer::PrintMessage("Cannot write to standard output.");
    return 1;
}

int Run(const zelviewer::CommandLine& line, char* programName) {
    switch (line.command) {
    case zelviewer::Command::Help:
        return Print(line.text);
    case zelviewer::Command::Version:
        return Print(zelviewer::VersionText());
    case zelviewer::Command::Refuse: // main has told why
    case zelviewer::Command::Run:
        break;
    }
    zelviewer::Options options = line.options;
    options.files = zelviewer::FilesMeant(options.files, options.sequence);
    if (!options.info)
        return zelviewer::RunViewer(options, programName);
    const zelviewer::Report report = zelviewer::MakeReport(options);
    for (const std::string& message : report.messages)
        zelviewer::PrintMessage(message);
    const int printed = Print(report.text);
    return report.messages.empty() ? printed : 1;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const auto tell = [&](const std::string& text) {
        zelviewer::PrintMessage(text);
        if (!zelviewer::IsForScripts(arguments))
            zelviewer::ShowFailureOnDesktop(text, argv[0]);
    };
    try {
        const zelviewer::CommandLine line = zelviewer::ParseCommandLine(arguments);
        if (line.command != zelviewer::Command::Refuse)
            return Run(line, argv[0]);
        tell(line.text);
        return 2;
    } catch (const std::exception& error) {
        tell(error.what());
        return 1;
    }
}
