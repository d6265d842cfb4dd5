#pragma once

#include "host/frame/placement.h"

#include <wx/fileconf.h>

#include <string>
#include <vector>

namespace zelviewer {

/// Files that were opened together, with their folders, in the file system's encoding.
using OpenedFiles = std::vector<std::string>;

/// The recent ones are listed with the last one first.
inline constexpr std::size_t mostRecentFiles = 9;

/// A list after files were opened: they stand first, and only once.
std::vector<OpenedFiles> AddRecent(std::vector<OpenedFiles> recent, const OpenedFiles& files);

/// How a list shows them: "stack.tif", "t01.tif and 19 more". In UTF-8.
std::string DescribeFiles(const OpenedFiles& files);

// The program's settings in its configuration. What is missing or makes no sense there counts as not set.

std::optional<WindowPlace> ReadPlace(const wxConfigBase& config);
/// A maximized window keeps the rectangle that stands there.
void WritePlace(wxConfigBase& config, const WindowPlace& place);

std::vector<OpenedFiles> ReadRecent(const wxConfigBase& config);
/// Names that are no UTF-8 cannot be kept: files with such a one are left out.
void WriteRecent(wxConfigBase& config, const std::vector<OpenedFiles>& recent);

/// The folder of the file that was opened last; empty if there is none.
std::string FolderOf(const std::vector<OpenedFiles>& recent);

} // namespace zelviewer
