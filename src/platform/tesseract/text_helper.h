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
/// Loads the engine with the data of these languages, and gives what reads with it.
using LoadEngine = std::function<base::Result<ReadText>(const std::vector<std::string>& languages)>;

/// The recognition helper from its start to its end: gives up its rights, loads the engine, gives
/// up the rest, and answers pictures over the socket that it was started with until that closes.
/// The languages are joined by '+'. Returns the exit status; the caller leaves without tidying up.
int runTextHelper(const std::string& languages, const LoadEngine& loadEngine);

}  // namespace platform::tesseract
