#pragma once

namespace platform::tesseract {

/// How the helper is started: with the languages, joined by '+', as its only argument, their data's
/// directory in this variable, and its end of the socket under this number.
inline constexpr int helperSocketDescriptor = 3;
inline constexpr const char* dataDirectoryVariable = "TESSDATA_PREFIX";

}  // namespace platform::tesseract
