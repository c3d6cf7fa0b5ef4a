#pragma once

#include <string>

namespace ui {

/// How a folder button names the folder at `path`: "Downloads" for the empty path, else the last
/// component of the path, whatever is on the disk. One line: control characters become blanks.
std::string folderLabel(const std::string& path);

}  // namespace ui
