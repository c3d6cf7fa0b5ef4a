#pragma once

#include <dlfcn.h>
#include <link.h>

#include <cstddef>

namespace platform::tesseract {

/// A function or a table of the engine itself, by the linker's name, whatever this program has
/// under that name; null where the engine has none.
template <class Pointer>
Pointer engineFunction(const char* name) {
    return reinterpret_cast<Pointer>(::dlsym(RTLD_NEXT, name));
}

/// A table of the engine, by the linker's name; null where the engine has none of exactly `count`
/// values under that name, as its library says itself.
template <class Value>
const Value* engineTable(const char* name, std::size_t count) {
    const auto* table = engineFunction<const Value*>(name);
    Dl_info found{};
    void* entry = nullptr;
    if (table == nullptr || ::dladdr1(table, &found, &entry, RTLD_DL_SYMENT) == 0 ||
        found.dli_saddr != table || entry == nullptr) {
        return nullptr;
    }
    const auto* symbol = static_cast<const ElfW(Sym)*>(entry);
    return symbol->st_size == count * sizeof(Value) ? table : nullptr;
}

}  // namespace platform::tesseract
