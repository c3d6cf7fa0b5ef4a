#include "platform/x11/uncovered_text_recognizer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "doubles/fake_text_recognizer.h"

namespace {

using platform::x11::LateRequests;
using platform::x11::UncoveredTextRecognizer;

struct UncoveredTextRecognizerTest : testing::Test {
    doubles::CallLog calls;
    doubles::FakeTextRecognizer reader;
    LateRequests requests;
    UncoveredTextRecognizer recognizer{reader, requests};

    UncoveredTextRecognizerTest() { reader.recordInto(calls); }
};

TEST_F(UncoveredTextRecognizerTest, ends_the_overlay_before_it_reads) {
    const auto hold = requests.hold();
    requests.add([this] { calls.add("end of the overlay"); });
    reader.observations = {{{"text"}}};
    const auto read = recognizer.recognize(base::Image());
    EXPECT_EQ(calls.calls(), (std::vector<std::string>{"end of the overlay", "recognize"}));
    ASSERT_EQ(read.value().size(), 1U);
    EXPECT_EQ(read.value().front().candidates.front(), "text");
}

TEST_F(UncoveredTextRecognizerTest, gets_ready_without_ending_anything) {
    const auto hold = requests.hold();
    requests.add([this] { calls.add("end of the overlay"); });
    recognizer.prepare();
    EXPECT_EQ(calls.calls(), std::vector<std::string>{"prepare"});
}

}  // namespace
