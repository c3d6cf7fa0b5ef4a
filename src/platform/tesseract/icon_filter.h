#pragma once

#include <vector>

#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Takes the icons, check boxes and arrows out of rows of text.
///
/// Letters stand on the baseline and end at the height of capitals; an icon is drawn around the
/// middle of the row and reaches beyond both. Icons come in columns: where some marks of a column
/// are icons, the marks that stand exactly below them are, too, when most of the column has other
/// colours than the text. A filled convex shape that is no disc, alone, is an arrow.
class IconFilter {
  public:
    /// Heights in pixels, as the page has them; `components` are those of the rows' glyphs. All
    /// outlive this.
    IconFilter(const ColorPlane& page, const InkPlane& ink, const ConnectedComponents& components,
               double letterHeight, double capitalHeight)
        : page_(page),
          ink_(ink),
          components_(components),
          letterHeight_(letterHeight),
          capitalHeight_(capitalHeight) {}

    void removeFrom(std::vector<TextLine>& rows) const;

  private:
    enum class Kind { text, icon };
    /// Glyphs without a gap between them.
    struct Token {
        Box box;
        std::vector<Glyph> glyphs;
        /// To the token on the right; a row's width for the last.
        int gapBefore = 0;
        int gapAfter = 0;
        Kind kind = Kind::text;
        /// Drawn in another colour than the row's text.
        bool isColored = false;
    };
    struct Row {
        double baseline = 0;
        double capitalHeight = 0;
        std::vector<Token> tokens;
    };

    [[nodiscard]] Row tokensOf(const TextLine& line) const;
    [[nodiscard]] bool reachesBeyondLetters(const Token& token, const Row& row) const;
    [[nodiscard]] bool isArrow(const Token& token, const Row& row) const;
    [[nodiscard]] bool isLarge(const Token& token, const Row& row) const;
    void gatherPieces(std::vector<Row>& rows) const;
    void followColumns(std::vector<Row>& rows) const;
    static void keepText(const Row& row, TextLine& line);

    void findColored(Row& row) const;
    [[nodiscard]] Color colorOf(const Token& token) const;

    const ColorPlane& page_;
    const InkPlane& ink_;
    const ConnectedComponents& components_;
    double letterHeight_;
    double capitalHeight_;
};

}  // namespace platform::tesseract
