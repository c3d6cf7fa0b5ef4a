#include "platform/tesseract/icon_filter.h"

#include <set>

#include "platform/tesseract/box_index.h"

namespace platform::tesseract {

namespace {

/// In letter heights.
constexpr double tokenGap = 0.35;
constexpr double aloneGap = 0.9;
/// In heights of capitals.
constexpr double overshoot = 0.08;
constexpr double widestIcon = 2.8;
constexpr int columnTolerance = 3;
constexpr double iconShareOfColumn = 0.6;
/// In pixels: a cell of the index of icons.
constexpr int iconCellSize = 64;
/// Sum over the channels.
constexpr int otherColor = 90;
/// Of the strongest ink of a token: what is not the blended edge of a stroke.
constexpr double fullInk = 0.8;

/// Whether every row and every column of the component is one run.
bool isConvex(const ConnectedComponents& components, const Component& component) {
    std::vector<int> lastRow(static_cast<std::size_t>(component.box.width()), -1);
    int previousRow = -1;
    for (const auto* run = components.runsBegin(component); run != components.runsEnd(component);
         ++run) {
        if (run->y == previousRow) {
            return false;
        }
        previousRow = run->y;
        for (int x = run->left; x < run->right; ++x) {
            int& last = lastRow[static_cast<std::size_t>(x - component.box.left)];
            if (last >= 0 && last != run->y - 1) {
                return false;
            }
            last = run->y;
        }
    }
    return true;
}

/// Whether most of the component lies towards one of its sides; that of a disc does not.
bool pointsSomewhere(const ConnectedComponents& components, const Component& component) {
    double sumX = 0;
    double sumY = 0;
    for (const auto* run = components.runsBegin(component); run != components.runsEnd(component);
         ++run) {
        const int length = run->right - run->left;
        sumX += length * (run->left + run->right) / 2.0;
        sumY += length * (run->y + 0.5);
    }
    const Box& box = component.box;
    const double offX = std::abs(sumX / component.pixelCount - box.centerX()) / box.width();
    const double offY = std::abs(sumY / component.pixelCount - box.centerY()) / box.height();
    return std::max(offX, offY) > 0.07;
}

}  // namespace

void IconFilter::removeFrom(std::vector<TextLine>& lines) const {
    std::vector<Row> rows;
    for (const TextLine& line : lines) {
        rows.push_back(tokensOf(line));
        Row& row = rows.back();
        for (Token& token : row.tokens) {
            if (reachesBeyondLetters(token, row) || isArrow(token, row) || isLarge(token, row)) {
                token.kind = Kind::icon;
            }
        }
        findColored(row);
    }
    followColumns(rows);
    gatherPieces(rows);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        keepText(rows[index], lines[index]);
    }
    std::erase_if(lines, [](const TextLine& line) { return line.segments.empty(); });
}

IconFilter::Row IconFilter::tokensOf(const TextLine& line) const {
    Row row;
    std::vector<double> bottoms;
    std::vector<double> heights;
    for (const Glyph& glyph : line.glyphsFromLeft()) {
        const Box& box = glyph.box;
        if (row.tokens.empty() ||
            box.left - row.tokens.back().box.right > tokenGap * letterHeight_) {
            row.tokens.push_back({box, {}});
        }
        row.tokens.back().box = row.tokens.back().box.united(box);
        row.tokens.back().glyphs.push_back(glyph);
        if (box.height() >= 0.6 * letterHeight_) {
            bottoms.push_back(box.bottom);
            heights.push_back(box.height());
        }
    }
    constexpr int wide = 100000;
    for (std::size_t index = 0; index < row.tokens.size(); ++index) {
        Token& token = row.tokens[index];
        token.gapBefore = index == 0 ? wide : token.box.left - row.tokens[index - 1].box.right;
        token.gapAfter = index + 1 == row.tokens.size()
                             ? wide
                             : row.tokens[index + 1].box.left - token.box.right;
    }
    row.baseline = bottoms.empty() ? 0 : median(bottoms);
    // Rows of small letters hold few capitals; headings are larger than the page's.
    row.capitalHeight = std::max(capitalHeight_, quantile(heights, 0.7));
    return row;
}

bool IconFilter::reachesBeyondLetters(const Token& token, const Row& row) const {
    if (row.tokens.size() < 2 || token.box.width() > widestIcon * row.capitalHeight) {
        return false;
    }
    // The parts of an icon lie within each other's columns; letters stand side by side.
    std::vector<Glyph> glyphs = token.glyphs;
    Box whole = glyphs.front().box;
    for (const Glyph& glyph : glyphs) {
        if (glyph.box.sharedColumns(whole) < 0.5 * std::min(glyph.box.width(), whole.width())) {
            return false;
        }
        whole = whole.united(glyph.box);
    }
    if (whole.width() < 0.5 * whole.height()) {
        return false;
    }
    const double beyond = std::max(1.0, overshoot * row.capitalHeight);
    return whole.bottom >= row.baseline + beyond &&
           whole.top <= row.baseline - row.capitalHeight - beyond;
}

bool IconFilter::isArrow(const Token& token, const Row& row) const {
    if (token.glyphs.size() != 1) {
        return false;
    }
    const Glyph& glyph = token.glyphs.front();
    const Box& box = glyph.box;
    const double longer = std::max(box.width(), box.height());
    const double shorter = std::min(box.width(), box.height());
    if (longer < 0.6 * row.capitalHeight || shorter < 0.35 * longer ||
        token.gapBefore < aloneGap * letterHeight_ || token.gapAfter < aloneGap * letterHeight_) {
        return false;
    }
    const double filled = glyph.pixelCount / static_cast<double>(box.area());
    const Component& component = components_.all()[glyph.component];
    return filled > 0.4 && filled < 0.7 && isConvex(components_, component) &&
           pointsSomewhere(components_, component);
}

bool IconFilter::isLarge(const Token& token, const Row& row) const {
    return row.tokens.size() >= 3 && token.glyphs.size() <= 3 &&
           token.box.height() > 1.6 * row.capitalHeight &&
           token.box.width() > 1.2 * row.capitalHeight &&
           std::any_of(token.glyphs.begin(), token.glyphs.end(), [&](const Glyph& glyph) {
               return glyph.box.height() > 1.6 * row.capitalHeight;
           });
}

void IconFilter::gatherPieces(std::vector<Row>& rows) const {
    BoxIndex icons({0, 0, page_.width(), page_.height()}, iconCellSize, iconCellSize);
    std::vector<Box> boxes;
    for (const Row& row : rows) {
        for (const Token& token : row.tokens) {
            if (token.kind == Kind::icon && token.box.height() > 1.6 * row.capitalHeight) {
                icons.put(boxes.size(), token.box);
                boxes.push_back(token.box);
            }
        }
    }
    for (Row& row : rows) {
        for (Token& token : row.tokens) {
            const Box& box = token.box;
            const auto nearby =
                icons.near({box.left - columnTolerance, box.top - columnTolerance,
                            box.right + columnTolerance, box.bottom + columnTolerance});
            const bool isPiece = std::any_of(nearby.begin(), nearby.end(), [&](std::size_t number) {
                const Box& icon = boxes[number];
                return box.left >= icon.left - columnTolerance &&
                       box.right <= icon.right + columnTolerance &&
                       -box.sharedRows(icon) <= columnTolerance;
            });
            if (isPiece) {
                token.kind = Kind::icon;
            }
        }
    }
}

Color IconFilter::colorOf(const Token& token) const {
    int strongest = 0;
    long count = 0;
    long red = 0;
    long green = 0;
    long blue = 0;
    for (const bool isMeasuring : {true, false}) {
        for (const Glyph& glyph : token.glyphs) {
            const Component& component = components_.all()[glyph.component];
            for (const auto* run = components_.runsBegin(component);
                 run != components_.runsEnd(component); ++run) {
                for (int x = run->left; x < run->right; ++x) {
                    const int ink = ink_.at(x, run->y);
                    if (isMeasuring) {
                        strongest = std::max(strongest, ink);
                    } else if (ink >= fullInk * strongest) {
                        const Color color = page_.at(x, run->y);
                        ++count;
                        red += color.red;
                        green += color.green;
                        blue += color.blue;
                    }
                }
            }
        }
    }
    count = std::max(1L, count);
    return {static_cast<std::uint8_t>(red / count), static_cast<std::uint8_t>(green / count),
            static_cast<std::uint8_t>(blue / count)};
}

void IconFilter::findColored(Row& row) const {
    std::vector<Color> colors;
    std::vector<double> reds;
    std::vector<double> greens;
    std::vector<double> blues;
    for (const Token& token : row.tokens) {
        colors.push_back(colorOf(token));
        reds.push_back(colors.back().red);
        greens.push_back(colors.back().green);
        blues.push_back(colors.back().blue);
    }
    const Color usual{static_cast<std::uint8_t>(median(reds)),
                      static_cast<std::uint8_t>(median(greens)),
                      static_cast<std::uint8_t>(median(blues))};
    for (std::size_t index = 0; index < colors.size(); ++index) {
        row.tokens[index].isColored = distance(colors[index], usual) > otherColor;
    }
}

void IconFilter::followColumns(std::vector<Row>& rows) const {
    std::vector<Token*> tokens;
    std::vector<Box> columns;
    for (Row& row : rows) {
        for (Token& token : row.tokens) {
            tokens.push_back(&token);
            if (token.kind == Kind::icon) {
                columns.push_back(token.box);
            }
        }
    }
    std::stable_sort(tokens.begin(), tokens.end(), [](const Token* one, const Token* other) {
        return one->box.left < other->box.left;
    });
    for (const Box& column : columns) {
        std::vector<Token*> members;
        int icons = 0;
        int suspects = 0;
        const auto first = std::lower_bound(
            tokens.begin(), tokens.end(), column.left - columnTolerance,
            [](const Token* token, int position) { return token->box.left < position; });
        for (auto place = first;
             place != tokens.end() && (*place)->box.left <= column.right + columnTolerance;
             ++place) {
            Token& token = **place;
            if (token.box.right <= column.right + columnTolerance &&
                std::abs(token.box.centerX() - column.centerX()) <= columnTolerance) {
                members.push_back(&token);
                icons += token.kind == Kind::icon ? 1 : 0;
                suspects += token.kind == Kind::icon || token.isColored ? 1 : 0;
            }
        }
        if (icons >= 2 && suspects >= iconShareOfColumn * static_cast<double>(members.size())) {
            for (Token* member : members) {
                member->kind = Kind::icon;
            }
        }
    }
}

void IconFilter::keepText(const Row& row, TextLine& line) {
    std::set<std::size_t> icons;
    for (const Token& token : row.tokens) {
        for (const Glyph& glyph : token.glyphs) {
            if (token.kind == Kind::icon) {
                icons.insert(glyph.component);
            }
        }
    }
    if (icons.empty()) {
        return;
    }
    for (Segment& segment : line.segments) {
        std::erase_if(segment.glyphs,
                      [&](const Glyph& glyph) { return icons.contains(glyph.component); });
        if (!segment.glyphs.empty()) {
            segment.box = segment.glyphs.front().box;
            for (const Glyph& glyph : segment.glyphs) {
                segment.box = segment.box.united(glyph.box);
            }
        }
    }
    std::erase_if(line.segments, [](const Segment& segment) { return segment.glyphs.empty(); });
}

}  // namespace platform::tesseract
