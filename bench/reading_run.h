#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/result.h"
#include "picture_set.h"
#include "platform/tesseract/screen_text_reader.h"

namespace bench {

/// A reading and what it took.
struct Reading {
    std::string text;
    /// Processor time of all threads, and time by the clock: milliseconds.
    double cpu = 0;
    double wall = 0;
    /// Of the picture.
    double megapixels = 0;
};

/// Reads samples with the program's own recogniser, one engine kept for each list of languages.
class ReadingRun {
  public:
    explicit ReadingRun(platform::tesseract::CrewSize threads) : threads_(threads) {}

    base::Result<Reading> read(const Sample& sample);

  private:
    platform::tesseract::CrewSize threads_;
    std::map<std::vector<std::string>, std::unique_ptr<platform::tesseract::ScreenTextReader>>
        readers_;
};

/// The first of several readings of one picture with the medians of what they took, each for
/// itself.
Reading medianOf(std::vector<Reading> readings);

/// Reads a sample with the engine's command line and one thread.
base::Result<Reading> readWithCommandLine(const Sample& sample);

}  // namespace bench
