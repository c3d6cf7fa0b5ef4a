#include "ui/dock_icon.h"

#include <gmock/gmock.h>

#include <memory>

#include "app/settings_keys.h"
#include "doubles/call_log.h"
#include "doubles/fake_windows.h"
#include "doubles/memory_settings_backend.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DockIcon : public testing::Test {
  protected:
    DockIcon() { windows_.recordInto(calls_); }

    doubles::CallLog calls_;
    doubles::FakeWindows windows_;
    doubles::MemorySettingsBackend backend_;
    app::SettingsStore store_{backend_};
    ui::SettingBinding<bool> setting_{store_, app::keys::hideDockIcon, false};
};

TEST_F(DockIcon, each_change_sets_the_policy_at_once) {
    const ui::DockIcon dockIcon(setting_, windows_);
    EXPECT_THAT(calls_.calls(), IsEmpty());
    setting_.set(true);
    EXPECT_THAT(calls_.calls(), ElementsAre("activation policy: 1"));
    setting_.set(false);
    EXPECT_THAT(calls_.calls(), ElementsAre("activation policy: 1", "activation policy: 0"));
}

TEST_F(DockIcon, a_write_that_changes_nothing_sets_nothing) {
    const ui::DockIcon dockIcon(setting_, windows_);
    setting_.set(false);
    EXPECT_THAT(calls_.calls(), IsEmpty());
}

TEST_F(DockIcon, a_change_by_another_program_counts_too) {
    backend_.values[app::keys::hideDockIcon] = true;
    const ui::DockIcon dockIcon(setting_, windows_);
    backend_.changeFromOutside(app::keys::hideDockIcon, std::nullopt);
    EXPECT_THAT(calls_.calls(), ElementsAre("activation policy: 0"));
}

TEST_F(DockIcon, nothing_is_set_after_its_end) {
    auto dockIcon = std::make_unique<ui::DockIcon>(setting_, windows_);
    dockIcon.reset();
    setting_.set(true);
    EXPECT_THAT(calls_.calls(), IsEmpty());
}

}  // namespace
