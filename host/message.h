#pragma once

#include "image/kep.h"

#include <stdexcept>
#include <string>

namespace zelviewer {

/// Ends the program with exit code 1. Its text is printed after "zelviewer: " and is mostly "NAME: reason".
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Writes a line on standard error.
void PrintMessage(const std::string& text);

/// While one lives, warnings that don't say what they are about are about this file.
class FileInHand {
public:
    explicit FileInHand(const std::string& name);
    ~FileInHand();
    FileInHand(const FileInHand&) = delete;
    FileInHand& operator=(const FileInHand&) = delete;
};

/// Writes a line on standard error, with the name of the current file if there is one.
void PrintWarning(const std::string& text);

/// Why something failed with a file: "ReadImage(): The file 'a.tif' is damaged: ..." becomes "The file is damaged:
/// ...". If the failure is about another file, that one's name stays in the sentence.
std::string ReasonOf(const std::string& fileName, const kep::LibException& failure);

/// "NAME: reason" for a failure with a file: "ReadImage(): The file 'a.tif' is damaged: ..." becomes "a.tif: The file
/// is damaged: ...". If the failure is about another file, that one's name stays in the sentence.
std::string NameAndReason(const std::string& fileName, const kep::LibException& failure);

} // namespace zelviewer
