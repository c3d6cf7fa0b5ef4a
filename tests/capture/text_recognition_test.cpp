#include "capture/text_recognition.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "doubles/doubles.h"

namespace {

class TextRecognitionTest : public testing::Test {
  protected:
    doubles::FakeTextRecognizer recognizer_;
    doubles::FakeLog log_;
    capture::TextRecognition recognition_{{recognizer_, log_}};
};

TEST_F(TextRecognitionTest, a_recogniser_that_cannot_work_is_told_in_one_line) {
    recognizer_.error = base::Error{base::ErrorKind::unavailable, "there is no engine"};
    recognition_.performOCR({});
    EXPECT_EQ(log_.lines, std::vector<std::string>{"Unable to perform OCR: there is no engine."});
}

TEST_F(TextRecognitionTest, a_sentence_that_ends_itself_is_not_ended_twice) {
    recognizer_.error = base::Error{base::ErrorKind::unavailable, "There is no engine."};
    recognition_.performOCR({});
    EXPECT_EQ(log_.lines, std::vector<std::string>{"Unable to perform OCR: There is no engine."});
}

}  // namespace
