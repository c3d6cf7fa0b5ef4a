#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "capture/text_recognizer.h"

namespace platform::tesseract {

class LineReader;

/// Reads the text on pictures of screens: finds the lines itself and gives them to the engine one
/// by one. Keeps the engine warm between readings. One thread at a time.
class ScreenTextReader {
  public:
    /// `languages` are the engine's codes, the user's own first, such as {"deu", "eng"}. Loads
    /// their data, about 50 ms each. Missing data is an error that names the Debian package.
    static base::Result<std::unique_ptr<ScreenTextReader>> create(
        const std::vector<std::string>& languages);
    ~ScreenTextReader();

    /// The lines in reading order, each with what it may read, the likeliest first; none for a
    /// picture without text. A picture of more than `largestPicture` pixels is an error.
    base::Result<std::vector<capture::TextObservation>> read(const base::Image& image);

    /// In pixels: 8K by 8K. The planes of such a picture take 0.9 GB for as long as it is read.
    static constexpr long largestPicture = 8192L * 8192L;

  private:
    explicit ScreenTextReader(std::unique_ptr<LineReader> lineReader);

    std::unique_ptr<LineReader> lineReader_;
};

}  // namespace platform::tesseract
