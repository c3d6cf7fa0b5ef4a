#include "journeys/desktops_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>

namespace journeys {
namespace {

const char* nameOf(TableGroup group) {
    switch (group) {
        case TableGroup::displays:
            return "displays";
        case TableGroup::scales:
            return "scales";
        case TableGroup::colors:
            return "colours";
        case TableGroup::windows:
            return "windows";
        case TableGroup::windowManagers:
            return "window managers";
        case TableGroup::input:
            return "input";
    }
    return "";
}

const testing::TestInfo& currentTest() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    if (test == nullptr) {
        throw std::logic_error("A row of the table belongs to a test.");
    }
    return *test;
}

int failures() {
    const testing::TestResult& result = *currentTest().result();
    int count = 0;
    for (int index = 0; index < result.total_part_count(); ++index) {
        count += result.GetTestPartResult(index).failed() ? 1 : 0;
    }
    return count;
}

/// As CTest calls it.
std::string testName() {
    return std::string("journey.") + currentTest().test_suite_name() + "." + currentTest().name();
}

/// Empty at the first row of each run of the test.
std::ofstream openNotes(const std::string& test) {
    static std::set<std::string> begun;
    std::string name = test;
    std::replace(name.begin(), name.end(), '/', '+');
    const std::filesystem::path directory(LUMAFRAME_DESKTOPS_TABLE_DIRECTORY);
    std::filesystem::create_directories(directory);
    return std::ofstream(directory / (name + ".tsv"),
                         begun.insert(test).second ? std::ios::trunc : std::ios::app);
}

}  // namespace

TableRow::TableRow(TableGroup group, Text text)
    : group_(group),
      text_(std::move(text)),
      exceptionsBefore_(std::uncaught_exceptions()),
      failuresBefore_(failures()) {}

TableRow::~TableRow() {
    if (testing::Test::IsSkipped()) {
        return;
    }
    const bool hasFailed =
        std::uncaught_exceptions() > exceptionsBefore_ || failures() > failuresBefore_;
    const std::string test = testName();
    openNotes(test) << nameOf(group_) << '\t' << text_.setUp << '\t' << text_.tested << '\t'
                    << (hasFailed ? "FAILED" : text_.result) << '\t' << test << '\n';
}

}  // namespace journeys
