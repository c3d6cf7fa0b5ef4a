#pragma once

#include <string>
#include <string_view>

namespace base {

/// `folder` with `name` appended as one more component.
std::string appendingPathComponent(std::string_view folder, std::string_view name);

/// The last component of a path, slashes at the end ignored; "/" for the root, "" for "".
std::string lastPathComponent(std::string_view path);

}  // namespace base
