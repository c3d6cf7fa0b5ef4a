#pragma once

#include <dlfcn.h>

namespace platform::tesseract {

/// A function or a table of the engine itself, by the linker's name, whatever this program has
/// under that name; null where the engine has none.
template <class Pointer>
Pointer engineFunction(const char* name) {
    return reinterpret_cast<Pointer>(::dlsym(RTLD_NEXT, name));
}

}  // namespace platform::tesseract
