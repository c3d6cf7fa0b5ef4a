#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// What the engine read in a picture of one line.
struct LineReading {
    /// One line, without spaces at its ends.
    std::string text;
    /// The engine's own, 0..100.
    int confidence = 0;
    /// That of each word of the text.
    std::vector<int> wordConfidences;
};

/// libtesseract kept warm, one line at a time: its layout analysis is never asked. OpenMP stays off
/// on the thread that reads, because the engine's parallel loops over a line cost five times the
/// processor time that they save.
class LineReader {
  public:
    static base::Result<std::unique_ptr<LineReader>> create(
        const std::vector<std::string>& languages);
    ~LineReader();

    /// `picture` is dark on white, the line from edge to edge.
    LineReading read(const InkPlane& picture);

  private:
    class Engine;
    explicit LineReader(std::unique_ptr<Engine> engine);

    std::unique_ptr<Engine> engine_;
};

}  // namespace platform::tesseract
