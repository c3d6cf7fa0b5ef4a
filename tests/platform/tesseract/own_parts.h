#pragma once

#include <gtest/gtest.h>
#include <tesseract/baseapi.h>

#include <string>

#include "platform/tesseract/engine_curves.h"
#include "platform/tesseract/engine_parts.h"

namespace platform::tesseract {

/// Skips what compares this program's parts with the engine's own where there is nothing to be
/// compared, and puts back what other tests expect.
class OwnParts : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!usesOwnParts()) {
            GTEST_SKIP() << "engine " << ::tesseract::TessBaseAPI::Version()
                         << " does all of its work itself here";
        }
    }
    void TearDown() override {
        chooseParts(PartImplementation::ownWhereKnown);
        chooseCurveLoops(CurveLoops::widest);
    }
};

inline const auto bothLoops = ::testing::Values(CurveLoops::any, CurveLoops::widest);

inline std::string loopsName(const ::testing::TestParamInfo<CurveLoops>& parameter) {
    return parameter.param == CurveLoops::any ? "for_any_processor" : "for_this_processor";
}

}  // namespace platform::tesseract
