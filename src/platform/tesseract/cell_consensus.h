#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/tesseract/glyph_dictionary.h"
#include "platform/tesseract/line_metrics.h"
#include "platform/tesseract/line_reader.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Corrects the readings of monospaced lines by their cells: each cell with ink is one character,
/// cells that look the same are the same character, and an empty cell is a space.
///
/// All lines are added first; what the engine read in lines with as many characters as cells is
/// learned, and every line is then aligned with its cells (edit distance, Wagner and Fischer 1974).
class CellConsensus {
  public:
    /// `ink` must outlive this; `pitch` and `letterHeight` in pixels.
    CellConsensus(const InkPlane& ink, double pitch, double letterHeight)
        : ink_(ink), pitch_(pitch), letterHeight_(letterHeight) {}

    /// `reading` is what the engine made of the line. Returns the number of the line.
    std::size_t add(const TextLine& line, const LineMetrics& metrics, const LineReading& reading);

    /// The corrected text of the line that was added as number `index`.
    [[nodiscard]] std::string corrected(std::size_t index) const;

  private:
    struct Cell {
        GlyphShape shape;
        /// Of the cells in front of it at least one is empty.
        bool isAfterSpace = false;
    };
    struct Line {
        std::string reading;
        std::vector<std::string> characters;
        std::vector<Cell> cells;
    };

    void learn(const Line& line, const LineReading& reading);
    static void replaceZeros(Line& line);
    static void expandDashes(Line& line);
    [[nodiscard]] std::vector<Cell> cellsOf(const TextLine& line, const LineMetrics& metrics) const;
    [[nodiscard]] std::optional<std::string> characterOf(const Cell& cell) const;
    /// The character of each cell, empty where there is none; nothing when they do not fit.
    [[nodiscard]] std::optional<std::vector<std::string>> align(const Line& line) const;

    const InkPlane& ink_;
    double pitch_;
    double letterHeight_;
    std::vector<Line> lines_;
    GlyphDictionary dictionary_;
};

}  // namespace platform::tesseract
