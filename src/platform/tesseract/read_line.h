#pragma once

#include "capture/text_recognizer.h"
#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// A line that was read, and where it stands on the picture, in pixels.
struct ReadLine {
    Box box;
    /// Near the x-height.
    double letterHeight = 0;
    /// How many times the picture was reduced for it.
    int reduction = 1;
    /// Of the engine, 0..100.
    int confidence = 0;
    /// How many of its characters are letters or figures.
    int letters = 0;
    /// How flat its ground is, 0..1.
    double ground = 0;
    capture::TextObservation observation;
};

}  // namespace platform::tesseract
