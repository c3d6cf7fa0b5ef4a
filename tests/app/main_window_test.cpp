#include "app/main_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "doubles/call_log.h"
#include "doubles/fake_windows.h"

namespace {

using testing::ElementsAre;

class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest() { windows.recordInto(calls); }

    doubles::CallLog calls;
    doubles::FakeWindows windows;
};

TEST_F(MainWindowTest, an_open_one_comes_to_the_front_and_no_second_is_opened) {
    windows.add("permissions");
    const auto settings = windows.add("main");
    app::showMainWindow(windows);
    EXPECT_THAT(calls.calls(), ElementsAre("activate", "front: 2"));
    EXPECT_EQ(windows.front, settings);
    EXPECT_EQ(windows.list.size(), 2U);
}

TEST_F(MainWindowTest, that_was_closed_is_opened_anew) {
    windows.closeByUser(windows.add("main"));
    windows.add("permissions");
    app::showMainWindow(windows);
    EXPECT_THAT(calls.calls(), ElementsAre("activate", "open scene: main"));
    EXPECT_EQ(windows.list.size(), 2U);
}

TEST_F(MainWindowTest, without_any_window_is_opened) {
    app::showMainWindow(windows);
    EXPECT_THAT(calls.calls(), ElementsAre("activate", "open scene: main"));
}

TEST_F(MainWindowTest, is_the_first_whose_identifier_contains_main_anywhere) {
    windows.add("");
    const auto found = windows.add("domain-AppWindow-1");
    windows.add("main");
    app::showMainWindow(windows);
    EXPECT_EQ(windows.front, found);
}

TEST_F(MainWindowTest, is_told_by_small_letters) {
    windows.add("Main");
    windows.add("MAIN");
    app::showMainWindow(windows);
    EXPECT_EQ(calls.calls().back(), "open scene: main");
}

}  // namespace
