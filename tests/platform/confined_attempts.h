#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// What a confined helper program may or may not do, tried from inside of it.
namespace confined {

/// Whether it could be done.
using Attempt = std::function<bool()>;

/// What no helper may do once it looks at what others drew, each with its name.
std::vector<std::pair<std::string, Attempt>> forbiddenAttempts();

bool writesTemporaryFile();
bool runsProgram();
bool startsThread();
/// So many bytes.
bool allocates(std::size_t length);

}  // namespace confined
