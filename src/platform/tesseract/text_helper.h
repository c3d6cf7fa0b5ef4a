#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "capture/text_recognizer.h"

namespace platform::tesseract {

/// Reads one picture.
using ReadText =
    std::function<base::Result<std::vector<capture::TextObservation>>(const base::Image&)>;
struct TextEngine {
    ReadText read;
    /// Makes ready for long pages what short ones do without; called while no picture waits, once,
    /// after all rights are given up. May be empty.
    std::function<void()> prepare;
};
/// Loads the engine with the data of these languages.
using LoadEngine =
    std::function<base::Result<TextEngine>(const std::vector<std::string>& languages)>;

/// The recognition helper from its start to its end: gives up its rights, loads the engine, gives
/// up the rest, and answers pictures over the socket that it was started with until that closes.
/// The languages are joined by '+'. Returns the exit status; the caller leaves without tidying up.
int runTextHelper(const std::string& languages, const LoadEngine& loadEngine);

}  // namespace platform::tesseract
