#pragma once

#include <map>
#include <string>

#include "picture_set.h"
#include "text_score.h"

namespace bench {

/// What a set of pictures was read like: as a whole, by kind of picture and by program.
class SetScore {
  public:
    void add(const Sample& sample, const TextScore& score);

    [[nodiscard]] const TextScore& whole() const { return whole_; }
    [[nodiscard]] const std::map<std::string, TextScore>& categories() const { return categories_; }
    /// Of each program, the score of all pictures that it did not draw. Nothing is fitted anew for
    /// it: this says how much of the whole one program makes, not how well its pictures would be
    /// read had nobody seen them.
    [[nodiscard]] std::map<std::string, TextScore> withoutOneProgram() const;
    /// That have no text.
    [[nodiscard]] long emptyPictures() const { return emptyPictures_; }
    /// In those.
    [[nodiscard]] long charactersFromNothing() const { return charactersFromNothing_; }

  private:
    TextScore whole_;
    std::map<std::string, TextScore> categories_;
    std::map<std::string, TextScore> programs_;
    long emptyPictures_ = 0;
    long charactersFromNothing_ = 0;
};

}  // namespace bench
