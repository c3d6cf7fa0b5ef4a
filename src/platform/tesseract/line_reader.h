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
    /// What else was read in the same line, less surely; the surer first.
    std::vector<std::string> alternatives;
};

/// libtesseract kept warm, one line at a time: its layout analysis is never asked. OpenMP stays off
/// on the thread that reads, because the engine's parallel loops over a line cost five times the
/// processor time that they save. One thread at a time.
class LineReader {
  public:
    static base::Result<std::unique_ptr<LineReader>> create(
        const std::vector<std::string>& languages);
    ~LineReader();

    /// Another engine with the same data, for another thread; opens no file. Not while this one
    /// is being loaded. Null where memory does not suffice.
    std::unique_ptr<LineReader> another();

    /// `picture` is dark on white, the line from edge to edge.
    LineReading read(const InkPlane& picture);

  private:
    class Engine;
    LineReader(std::unique_ptr<Engine> engine, std::string languages);

    std::unique_ptr<Engine> engine_;
    /// Joined as the engine wants them.
    std::string languages_;
};

}  // namespace platform::tesseract
