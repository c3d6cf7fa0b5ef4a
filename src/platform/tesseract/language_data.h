#pragma once

#include <vector>

namespace platform::tesseract {

/// Reads a file of language data for the engine, and keeps it open: another engine object can be
/// loaded after this process has given up opening files. False when it cannot be read. Any thread.
bool readLanguageData(const char* path, std::vector<char>* bytes);

}  // namespace platform::tesseract
