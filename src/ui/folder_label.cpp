#include "ui/folder_label.h"

#include <algorithm>

namespace ui {

std::string folderLabel(const std::string& path) {
    if (path.empty()) {
        return "Downloads";
    }
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string::npos) {
        return "/";
    }
    const std::size_t slash = path.rfind('/', last);
    const std::size_t first = slash == std::string::npos ? 0 : slash + 1;
    std::string label = path.substr(first, last + 1 - first);
    std::replace_if(
        label.begin(), label.end(),
        [](char character) {
            const auto byte = static_cast<unsigned char>(character);
            return byte < 0x20 || byte == 0x7f;
        },
        ' ');
    return label;
}

}  // namespace ui
