#include "set_score.h"

namespace bench {

void SetScore::add(const Sample& sample, const TextScore& score) {
    whole_ += score;
    categories_[sample.category] += score;
    programs_[sample.program] += score;
    if (score.characters == 0) {
        ++emptyPictures_;
        charactersFromNothing_ += score.wrongCharacters;
    }
}

std::map<std::string, TextScore> SetScore::withoutOneProgram() const {
    std::map<std::string, TextScore> rests;
    for (const auto& [leftOut, own] : programs_) {
        TextScore& rest = rests[leftOut];
        for (const auto& [program, score] : programs_) {
            if (program != leftOut) {
                rest += score;
            }
        }
    }
    return rests;
}

}  // namespace bench
