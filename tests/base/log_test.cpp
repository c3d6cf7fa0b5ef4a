#include "base/log.h"

#include <gtest/gtest.h>

#include <csignal>

TEST(Describe, an_optional_error_reads_as_in_the_log_lines) {
    EXPECT_EQ(base::describe(std::nullopt), "nil");
    EXPECT_EQ(base::describe(base::Error{base::ErrorKind::failed, "The disk is full."}),
              "Optional(The disk is full.)");
}

TEST(StandardOutputLog, prints_each_line_with_its_line_feed) {
    testing::internal::CaptureStdout();
    base::StandardOutputLog log;
    log.line("✅ one");
    log.line("");
    log.line("   three");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "✅ one\n\n   three\n");
}

TEST(StandardOutputLog, a_value_from_outside_cannot_begin_a_line_of_its_own) {
    testing::internal::CaptureStdout();
    base::StandardOutputLog log;
    log.line(std::string_view("🟢 Target App: a\nb\r\tc\0d (PID: 1)", 34));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "🟢 Target App: a b  c d (PID: 1)\n");
}

TEST(FatalErrorDeathTest, says_one_sentence_on_standard_error_and_aborts) {
    EXPECT_EXIT(base::fatalError("Nothing works."), testing::KilledBySignal(SIGABRT),
                "^Nothing works\\.\n$");
}
