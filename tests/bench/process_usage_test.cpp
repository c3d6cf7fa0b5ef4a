#include "latency/process_usage.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "desktop/process.h"

namespace {

using latency::Memory;
using latency::ProcessUsage;
using latency::usageOf;
using latency::wakeUpsBetween;

ProcessUsage sleeping(std::map<std::string, long> sleeps) {
    ProcessUsage usage;
    usage.sleeps = std::move(sleeps);
    return usage;
}

TEST(WakeUps, of_threads_that_slept_on_are_none) {
    EXPECT_EQ(wakeUpsBetween(sleeping({{"1", 7}, {"2", 9}}), sleeping({{"1", 7}, {"2", 9}})), 0);
}

TEST(WakeUps, are_counted_for_each_thread) {
    EXPECT_EQ(wakeUpsBetween(sleeping({{"1", 7}, {"2", 9}}), sleeping({{"1", 8}, {"2", 12}})), 4);
}

TEST(WakeUps, of_a_thread_that_came_or_went_count_its_one_run_too) {
    EXPECT_EQ(wakeUpsBetween(sleeping({{"1", 7}}), sleeping({{"1", 7}, {"2", 0}})), 1);
    EXPECT_EQ(wakeUpsBetween(sleeping({{"1", 7}}), sleeping({{"1", 7}, {"2", 3}})), 4);
    EXPECT_EQ(wakeUpsBetween(sleeping({{"1", 7}, {"2", 5}}), sleeping({{"1", 7}})), 1);
}

class ProcessUsageTest : public testing::Test {
  protected:
    ProcessUsageTest() { std::filesystem::create_directories(folder); }
    ~ProcessUsageTest() override { std::filesystem::remove_all(folder); }
    std::unique_ptr<desktop::Process> start(const std::string& script) {
        return std::make_unique<desktop::Process>(
            desktop::ProcessOptions{.command = {"bash", "-c", "echo ready; " + script},
                                    .environment = {{"PATH", "/usr/bin:/bin"}},
                                    .outputFile = folder / "program"});
    }
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("lumaframe-usage-" + std::to_string(::getpid()));
};

TEST_F(ProcessUsageTest, of_a_program_that_waits_stays_as_it_is) {
    const auto program = start("exec sleep 1000");
    desktop::require("the sleep", [&] { return program->countOf("ready") == 1; });
    ProcessUsage before;
    EXPECT_TRUE(desktop::waitUntil([&] {
        before = usageOf(program->pid());
        return desktop::staysTrue(
            [&] { return wakeUpsBetween(before, usageOf(program->pid())) == 0; },
            std::chrono::milliseconds(300));
    }));
    EXPECT_EQ(usageOf(program->pid()).cpu, before.cpu);
}

TEST_F(ProcessUsageTest, of_a_program_with_a_timer_grows_by_every_time_it_wakes) {
    const auto program = start("while read -t 0.02 line; [ $? -gt 128 ]; do :; done < <(sleep 99)");
    desktop::require("the loop", [&] { return program->countOf("ready") == 1; });
    const ProcessUsage before = usageOf(program->pid());
    EXPECT_TRUE(
        desktop::waitUntil([&] { return wakeUpsBetween(before, usageOf(program->pid())) >= 5; }));
    EXPECT_GT(usageOf(program->pid()).cpu, before.cpu);
}

TEST_F(ProcessUsageTest, has_what_is_its_own_within_its_share_within_what_is_resident) {
    const ProcessUsage usage = usageOf(::getpid(), Memory::read);
    EXPECT_GT(usage.alone, 0);
    EXPECT_LE(usage.alone, usage.proportional);
    EXPECT_LE(usage.proportional, usage.resident);
    const std::vector<char> more(std::size_t{32} << 20U, 'x');
    EXPECT_GE(usageOf(::getpid(), Memory::read).resident, usage.resident + 31 * 1024);
    EXPECT_EQ(more.back(), 'x');
}

TEST_F(ProcessUsageTest, of_a_program_that_is_gone_is_nothing) {
    const auto program = start("exit 0");
    const pid_t gone = program->pid();
    ASSERT_EQ(program->waitForExit(), 0);
    const ProcessUsage usage = usageOf(gone, Memory::read);
    EXPECT_EQ(usage.cpu, 0);
    EXPECT_TRUE(usage.sleeps.empty());
    EXPECT_EQ(usage.resident, 0);
}

}  // namespace
