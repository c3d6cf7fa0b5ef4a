#include "platform/tesseract/engine_parts.h"

#include <tesseract/baseapi.h>

#include <cstring>

#include "platform/tesseract/engine_curves.h"
#include "platform/tesseract/engine_layers.h"

namespace platform::tesseract {

namespace {

/// That whose sources were compared with what is declared here.
constexpr const char* knownEngine = "5.3.0";

PartImplementation chosen = PartImplementation::ownWhereKnown;

bool isKnownEngine() {
    static const bool isKnown =
        std::strcmp(::tesseract::TessBaseAPI::Version(), knownEngine) == 0 && replacesLayers() &&
        knowsCurves();
    return isKnown;
}

}  // namespace

void chooseParts(PartImplementation implementation) {
    chosen = implementation;
}

bool usesOwnParts() {
    return chosen == PartImplementation::ownWhereKnown && isKnownEngine();
}

}  // namespace platform::tesseract
