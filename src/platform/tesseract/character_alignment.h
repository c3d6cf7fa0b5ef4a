#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/tesseract/character_columns.h"

namespace platform::tesseract {

/// A character that was read; spaces are not characters of their own here.
struct ReadCharacter {
    std::string text;
    bool isAfterSpace = false;
};

/// The characters of a reading, from the left.
std::vector<ReadCharacter> readCharactersOf(const std::string& text);

/// What one column of a line was read as: `count` characters from number `first` on. Letters that
/// touch each other are several; a speck is none. A character in pieces has its first piece's
/// column, and the other pieces' columns have none and are `isContinued`.
struct ColumnReading {
    std::size_t first = 0;
    std::size_t count = 0;
    bool isContinued = false;
};

/// Lays the characters of a reading out over the columns of its line, by how wide and how high each
/// character is drawn in any typeface, and by where the spaces are (dynamic programming, as the
/// edit distance of Wagner and Fischer 1974). One entry for each column; nothing when they do not
/// fit. `letterHeight` in pixels, of this line.
std::optional<std::vector<ColumnReading>> alignCharacters(
    const std::vector<CharacterColumn>& columns, const std::vector<ReadCharacter>& characters,
    double letterHeight);

}  // namespace platform::tesseract
