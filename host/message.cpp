#include "host/message.h"

#include <cstdio>

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

std::string ReasonOf(const std::string& fileName, const kep::LibException& failure) {
    const auto* const ofFile = dynamic_cast<const kep::IOException*>(&failure);
    const bool isOfThisFile = ofFile != nullptr && ofFile->GetFileName() == fileName;
    return isOfThisFile ? ofFile->GetReason() : std::string(failure.GetSentence());
}

std::string NameAndReason(const std::string& fileName, const kep::LibException& failure) {
    return (fileName + ": ").append(ReasonOf(fileName, failure));
}

} // namespace zelviewer
