#pragma once

#include <string>
#include <vector>

#include "base/image.h"
#include "base/result.h"

namespace capture {

/// One line of text in a picture.
struct TextObservation {
    /// What it may read, the likeliest first; may be empty.
    std::vector<std::string> candidates;
};

/// Reads the text in pictures. Main thread.
class TextRecognizer {
  public:
    virtual ~TextRecognizer() = default;
    /// A picture is likely to follow within the next seconds: what its reading needs may be got
    /// ready. Returns at once; what goes wrong is told when there is a picture.
    virtual void prepare() = 0;
    /// The lines in reading order; returns when the recognition is done. An error of the kind
    /// `notFound` says that the recogniser has finished and has nothing to say of the picture, not
    /// even that there is no text: nothing is delivered then, and nothing told.
    virtual base::Result<std::vector<TextObservation>> recognize(const base::Image& image) = 0;
};

}  // namespace capture
