#include "base/file_path.h"

namespace base {

std::string appendingPathComponent(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.ends_with('/')) {
        path += '/';
    }
    return path.append(name);
}

std::string lastPathComponent(std::string_view path) {
    const auto last = path.find_last_not_of('/');
    if (last == std::string_view::npos) {
        return path.empty() ? "" : "/";
    }
    const auto slash = path.find_last_of('/', last);
    const auto first = slash == std::string_view::npos ? 0 : slash + 1;
    return std::string(path.substr(first, last - first + 1));
}

}  // namespace base
