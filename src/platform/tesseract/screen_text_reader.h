#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "capture/text_recognizer.h"
#include "platform/tesseract/line_crew.h"
#include "platform/tesseract/read_line.h"

namespace platform::tesseract {

class PageAnalysis;

/// Reads the text on pictures of screens: finds the lines itself and gives them to the engine one
/// by one, on two threads where that helps. Keeps the engine warm between readings. One thread at a
/// time.
class ScreenTextReader {
  public:
    /// `languages` are the engine's codes, the user's own first, such as {"deu", "eng"}. Loads
    /// their data, about 50 ms each. Missing data is an error that names the Debian package.
    static base::Result<std::unique_ptr<ScreenTextReader>> create(
        const std::vector<std::string>& languages, CrewSize threads = CrewSize::two);
    ~ScreenTextReader();

    /// Makes ready what only long pictures need, about 10 ms for each language; otherwise the first
    /// of them does.
    void prepare() { crew_->complete(); }

    /// The lines in reading order, each with what it may read, the likeliest first; none for a
    /// picture without text. A picture of more than `largestPicture` pixels is an error, and so is
    /// one whose lines, letters of all sizes together, are foreseen to take more than
    /// `longestReading`.
    base::Result<std::vector<capture::TextObservation>> read(const base::Image& image);
    /// The same with a limit of the caller's own.
    base::Result<std::vector<capture::TextObservation>> read(const base::Image& image,
                                                             std::chrono::milliseconds limit);

    /// In pixels: 8K by 8K. The planes of such a picture take 0.9 GB for as long as it is read.
    static constexpr long largestPicture = 8192L * 8192L;

    /// Whether a picture was long enough for a second engine.
    [[nodiscard]] bool usesTwoThreads() const { return crew_->isComplete(); }

  private:
    explicit ScreenTextReader(std::unique_ptr<LineCrew> crew);

    struct Bounds {
        /// Near the x-height, in pixels: lines of smaller letters are left unread.
        double letterHeight = 0;
        /// Until when all lines have to be read.
        std::chrono::steady_clock::time_point end;
    };
    base::Result<std::vector<ReadLine>> readOneSize(const base::Image& image, Bounds bounds);
    base::Result<std::vector<LineReading>> readLines(const PageAnalysis& page, Bounds bounds);
    /// Corrects the readings by what the whole page shows.
    static std::vector<ReadLine> observe(const PageAnalysis& page,
                                         std::vector<LineReading>& readings);

    std::unique_ptr<LineCrew> crew_;
};

}  // namespace platform::tesseract
