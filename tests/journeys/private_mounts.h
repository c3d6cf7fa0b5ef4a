#pragma once

#include <filesystem>
#include <functional>

namespace journeys {

/// Whether this process may give its children mounts of their own.
bool canMount();

/// To be run in a child before its program: in that child alone, a small file system over `target`,
/// with the flags and the options of mount(2).
std::function<void()> mountedOver(const std::filesystem::path& target, unsigned long flags,
                                  const char* options);

/// To be run in a child before its program: in that child alone, `file` in the place of `target`.
std::function<void()> mountedFile(const std::filesystem::path& file,
                                  const std::filesystem::path& target);

}  // namespace journeys
