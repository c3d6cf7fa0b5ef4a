#include "platform/tesseract/helper_text_recognizer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/tesseract/helper_fixture.h"

namespace {

using namespace tesseract_tests;
using std::chrono::milliseconds;

int openDescriptorCount() {
    int count = 0;
    for (int number = 0; number < 1024; ++number) {
        count += ::fcntl(number, F_GETFD) >= 0 ? 1 : 0;
    }
    return count;
}

/// In KiB.
long residentSize() {
    std::ifstream statistics("/proc/self/statm");
    long size = 0;
    long resident = 0;
    statistics >> size >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

std::string commandLineOf(int process) {
    return TemporaryDirectory::contents("/proc/" + std::to_string(process) + "/cmdline");
}

class HelperTextRecognizerTest : public HelperFixture {
  protected:
    HelperTextRecognizer& start() {
        const std::string path = directory_.path("behaves");
        std::filesystem::create_symlink(LUMAFRAME_HOSTILE_HELPER, path);
        return use(path);
    }
};

TEST_F(HelperTextRecognizerTest, no_helper_runs_before_it_is_needed) {
    start();
    EXPECT_FALSE(hasChildren());
    EXPECT_EQ(recognizer_->helperProcessIdentifier(), 0);
}

TEST_F(HelperTextRecognizerTest, one_helper_reads_what_follows) {
    auto& recognizer = start();
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    const int helper = recognizer.helperProcessIdentifier();
    EXPECT_GT(helper, 0);
    for (int round = 0; round < 50; ++round) {
        EXPECT_EQ(textsOf(recognizer.recognize(blankPicture(100 + round, 20))),
                  std::vector<std::string>{"good"});
    }
    EXPECT_EQ(recognizer.helperProcessIdentifier(), helper);
}

TEST_F(HelperTextRecognizerTest, a_prepared_helper_is_the_one_that_reads) {
    auto& recognizer = start();
    recognizer.prepare();
    const int helper = recognizer.helperProcessIdentifier();
    EXPECT_GT(helper, 0);
    recognizer.prepare();
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    EXPECT_EQ(recognizer.helperProcessIdentifier(), helper);
}

TEST_F(HelperTextRecognizerTest, the_helper_ends_a_minute_after_its_last_use) {
    auto& recognizer = start();
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    queue_.advance(milliseconds(40000));
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    queue_.advance(milliseconds(59999));
    EXPECT_TRUE(hasChildren());
    queue_.advance(milliseconds(1));
    EXPECT_FALSE(hasChildren());
    EXPECT_EQ(queue_.delayedCount(), 0U) << "something wakes the program up again";
}

TEST_F(HelperTextRecognizerTest, a_helper_that_was_prepared_in_vain_ends_as_well) {
    auto& recognizer = start();
    recognizer.prepare();
    queue_.advance(milliseconds(60000));
    EXPECT_FALSE(hasChildren());
    EXPECT_EQ(recognizer.helperProcessIdentifier(), 0);
    EXPECT_EQ(queue_.delayedCount(), 0U);
}

TEST_F(HelperTextRecognizerTest, an_old_timer_does_not_end_a_new_helper) {
    auto& recognizer = start();
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    queue_.advance(milliseconds(30000));
    ::kill(recognizer.helperProcessIdentifier(), SIGKILL);
    ASSERT_TRUE(desktop::waitUntil([&] { return watch_.dispatch(); }));
    queue_.runAll();
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    queue_.advance(milliseconds(30000));
    EXPECT_TRUE(hasChildren());
}

TEST_F(HelperTextRecognizerTest, a_timer_that_outlives_the_recogniser_does_nothing) {
    ASSERT_TRUE(start().recognize(blankPicture()));
    recognizer_.reset();
    queue_.advance(milliseconds(60000));
    EXPECT_FALSE(hasChildren());
}

TEST_F(HelperTextRecognizerTest, a_stopped_helper_is_given_up) {
    start();
    auto& recognizer = use(directory_.path("behaves"), {.reading = {.picture = milliseconds(100)}});
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    ::kill(recognizer.helperProcessIdentifier(), SIGSTOP);
    EXPECT_FALSE(recognizer.recognize(blankPicture()));
    EXPECT_FALSE(hasChildren());
}

TEST_F(HelperTextRecognizerTest, pictures_that_cannot_be_read_start_no_helper) {
    auto& recognizer = start();
    const auto empty = recognizer.recognize(base::Image());
    ASSERT_FALSE(empty);
    EXPECT_EQ(empty.error().sentence, "The picture is empty.");
    const std::uint8_t pixel[4] = {};
    const base::Image tooLarge(8193, 8192, 0, pixel, base::AlphaChannel::none, nullptr);
    const auto refused = recognizer.recognize(tooLarge);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().sentence, "The picture is too large for text recognition.");
    EXPECT_FALSE(hasChildren());
}

TEST_F(HelperTextRecognizerTest, missing_data_starts_no_helper_and_names_the_package) {
    const ScopedVariable prefix("TESSDATA_PREFIX", directory_.path("nowhere").c_str());
    auto& recognizer = start();
    recognizer.prepare();
    const auto failed = recognizer.recognize(blankPicture());
    ASSERT_FALSE(failed);
    EXPECT_NE(failed.error().sentence.find("tesseract-ocr-eng"), std::string::npos);
    EXPECT_FALSE(hasChildren());
    EXPECT_EQ(queue_.delayedCount(), 0U);
}

TEST_F(HelperTextRecognizerTest, a_language_installed_now_is_read_by_a_fresh_helper) {
    const ScopedVariable prefix("TESSDATA_PREFIX", directory_.path().c_str());
    const ScopedVariable locale("LC_ALL", "de_DE.UTF-8");
    directory_.write("eng.traineddata", "data");
    auto& recognizer = start();
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    const int first = recognizer.helperProcessIdentifier();
    EXPECT_TRUE(commandLineOf(first).ends_with(std::string("\0eng\0", 5)));
    directory_.write("deu.traineddata", "data");
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    const int second = recognizer.helperProcessIdentifier();
    EXPECT_NE(second, first);
    EXPECT_TRUE(commandLineOf(second).ends_with(std::string("\0deu+eng\0", 9)));
}

TEST_F(HelperTextRecognizerTest, neither_memory_nor_descriptors_are_kept) {
    // The queue keeps its timers, which are not what is measured.
    const base::Image picture = blankPicture(3840, 2160);
    const int descriptorsBefore = openDescriptorCount();
    ::malloc_trim(0);
    const long before = residentSize();
    auto& recognizer = start();
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(recognizer.recognize(picture));
    }
    queue_.advance(milliseconds(60000));
    ASSERT_FALSE(hasChildren());
    EXPECT_LE(residentSize() - before, 1024) << "KiB";
    EXPECT_EQ(openDescriptorCount(), descriptorsBefore);
}

TEST_F(HelperTextRecognizerTest, ignored_ends_of_children_do_no_harm) {
    struct sigaction ignore {};
    struct sigaction before {};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGCHLD, &ignore, &before);
    auto& recognizer = start();
    EXPECT_TRUE(recognizer.recognize(blankPicture()));
    queue_.advance(milliseconds(60000));
    EXPECT_FALSE(hasChildren());
    ::sigaction(SIGCHLD, &before, nullptr);
}

}  // namespace
