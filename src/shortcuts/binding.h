#pragma once

#include <functional>

namespace shortcuts {

/// A value that somebody else owns: how to read it now and how to change it.
template <typename Value>
struct Binding {
    std::function<Value()> get;
    std::function<void(Value)> set;
};

}  // namespace shortcuts
