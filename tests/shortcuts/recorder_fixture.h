#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "doubles/call_log.h"
#include "doubles/fake_key_monitor.h"
#include "shortcuts/recorder_model.h"

namespace fixtures {

/// A pair of values as a host has it, which notes every write.
struct BoundShortcut {
    std::int64_t keyCode = 18;
    std::int64_t modifiers = 768;

    /// The default is 18 with 768.
    shortcuts::RecorderFields fields(doubles::CallLog& calls) {
        return {.keyCode = {.get = [this] { return keyCode; },
                            .set =
                                [this, &calls](std::int64_t value) {
                                    calls.add("key code " + std::to_string(value));
                                    keyCode = value;
                                }},
                .modifiers = {.get = [this] { return modifiers; },
                              .set =
                                  [this, &calls](std::int64_t value) {
                                      calls.add("modifiers " + std::to_string(value));
                                      modifiers = value;
                                  }},
                .isDefault = [this] { return keyCode == 18 && modifiers == 768; },
                .resetAction =
                    [this, &calls] {
                        calls.add("reset");
                        keyCode = 18;
                        modifiers = 768;
                    }};
    }
};

}  // namespace fixtures
