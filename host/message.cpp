#include "host/message.h"

#include <cstdio>
#include <string_view>

namespace zelviewer {

namespace {

std::string fileInHand;

} // namespace

void PrintMessage(const std::string& text) {
    std::fputs(("zelviewer: " + text + "\n").c_str(), stderr);
}

FileInHand::FileInHand(const std::string& name) {
    fileInHand = name;
}

FileInHand::~FileInHand() {
    fileInHand.clear();
}

void PrintWarning(const std::string& text) {
    PrintMessage(fileInHand.empty() ? text : fileInHand + ": " + text);
}

std::string NameAndReason(const std::string& fileName, const std::string& exceptionText) {
    std::string reason = exceptionText;
    if (const std::size_t call = reason.find("(): "); call < reason.find(' '))
        reason.erase(0, call + 4);
    const std::string quoted = "'" + fileName + "'";
    if (const std::size_t at = reason.find(quoted); at == 0) {
        reason.replace(0, quoted.size(), "The file");
    } else if (at != std::string::npos) {
        // With the name goes the word that ties it to the sentence.
        std::size_t from = at;
        for (const std::string_view tie : {" of ", " in ", " for ", " "})
            if (from >= tie.size() && reason.compare(from - tie.size(), tie.size(), tie) == 0) {
                from -= tie.size();
                break;
            }
        reason.erase(from, at + quoted.size() - from);
    }
    return fileName + ": " + reason;
}

} // namespace zelviewer
