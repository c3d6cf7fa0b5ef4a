#include "ui/login_item.h"

#include <gmock/gmock.h>

#include <memory>
#include <utility>

#include "doubles/call_log.h"
#include "doubles/fake_log.h"
#include "doubles/fake_login_item_service.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ui::LoginItemStatus;
using ui::RunAtStartup;

/// The switch of a settings view, which reports every change of its value like a real one.
class LoginItemTest : public testing::Test {
  protected:
    LoginItemTest() {
        service_.recordInto(calls_);
        log_.recordInto(calls_);
    }
    void show() {
        item_ = std::make_unique<ui::LoginItem>(
            ui::LoginItem::Mediator{.service = service_, .log = log_}, [this](RunAtStartup value) {
                calls_.add(value == RunAtStartup::on ? "switch on" : "switch off");
                item_->setRunAtStartup(value);
            });
    }

    doubles::CallLog calls_;
    doubles::FakeLoginItemService service_;
    doubles::FakeLog log_;
    std::unique_ptr<ui::LoginItem> item_;
};

TEST_F(LoginItemTest, only_an_enabled_item_shows_the_switch_on) {
    for (const auto& [status, value] :
         {std::pair{LoginItemStatus::notRegistered, RunAtStartup::off},
          {LoginItemStatus::enabled, RunAtStartup::on},
          {LoginItemStatus::requiresApproval, RunAtStartup::off},
          {LoginItemStatus::notFound, RunAtStartup::off}}) {
        service_.current = status;
        show();
        EXPECT_EQ(item_->runAtStartup(), value) << static_cast<int>(status);
    }
    EXPECT_THAT(calls_.calls(), IsEmpty());
}

TEST_F(LoginItemTest, enabled_is_status_one) {
    EXPECT_EQ(static_cast<int>(LoginItemStatus::enabled), 1);
}

TEST_F(LoginItemTest, the_status_is_read_again_for_each_settings_view) {
    show();
    item_->setRunAtStartup(RunAtStartup::on);
    service_.current = LoginItemStatus::requiresApproval;
    EXPECT_EQ(item_->runAtStartup(), RunAtStartup::on);
    show();
    EXPECT_EQ(item_->runAtStartup(), RunAtStartup::off);
}

TEST_F(LoginItemTest, turning_the_switch_registers_and_unregisters) {
    show();
    item_->setRunAtStartup(RunAtStartup::on);
    EXPECT_EQ(item_->runAtStartup(), RunAtStartup::on);
    item_->setRunAtStartup(RunAtStartup::off);
    EXPECT_EQ(item_->runAtStartup(), RunAtStartup::off);
    EXPECT_THAT(calls_.calls(), ElementsAre("login item register", "login item unregister"));
}

TEST_F(LoginItemTest, a_value_that_is_there_already_calls_nothing) {
    show();
    item_->setRunAtStartup(RunAtStartup::off);
    EXPECT_THAT(calls_.calls(), IsEmpty());
}

TEST_F(LoginItemTest, a_failed_registration_is_printed_and_then_undone_without_a_second_call) {
    show();
    service_.error = base::Error{base::ErrorKind::notPermitted, "The folder is locked."};
    item_->setRunAtStartup(RunAtStartup::on);
    EXPECT_THAT(
        calls_.calls(),
        ElementsAre("login item register",
                    "log: Failed to register login item: The folder is locked.", "switch off"));
    EXPECT_EQ(item_->runAtStartup(), RunAtStartup::off);
}

TEST_F(LoginItemTest, a_failed_removal_is_printed_and_then_undone_without_a_second_call) {
    service_.current = LoginItemStatus::enabled;
    show();
    service_.error = base::Error{base::ErrorKind::failed, "The disk is gone."};
    item_->setRunAtStartup(RunAtStartup::off);
    EXPECT_THAT(
        calls_.calls(),
        ElementsAre("login item unregister",
                    "log: Failed to unregister login item: The disk is gone.", "switch on"));
    EXPECT_EQ(item_->runAtStartup(), RunAtStartup::on);
}

TEST_F(LoginItemTest, after_a_failure_the_next_change_is_tried_again) {
    show();
    service_.error = base::Error{base::ErrorKind::failed, "Not now."};
    item_->setRunAtStartup(RunAtStartup::on);
    service_.error.reset();
    item_->setRunAtStartup(RunAtStartup::on);
    EXPECT_EQ(item_->runAtStartup(), RunAtStartup::on);
    EXPECT_EQ(calls_.count("login item register"), 2);
}

}  // namespace
