#include "ui/content_settings.h"

#include <gmock/gmock.h>

#include "app/default_settings.h"
#include "doubles/memory_settings_backend.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ContentSettings : public testing::Test {
  protected:
    doubles::MemorySettingsBackend backend_;
    app::SettingsStore store_{backend_};
    ui::ContentSettings settings_{store_};
};

TEST_F(ContentSettings, without_registered_values_the_fallbacks_of_the_view_show) {
    EXPECT_FALSE(settings_.saveToDownloads.value());
    EXPECT_FALSE(settings_.saveOCRToDownloads.value());
    EXPECT_EQ(settings_.screenshotSavePath.value(), "");
    EXPECT_EQ(settings_.ocrSavePath.value(), "");
    EXPECT_TRUE(settings_.copyToClipboard.value());
    EXPECT_TRUE(settings_.copyOCRToClipboard.value());
    EXPECT_FALSE(settings_.showNotifications.value());
    EXPECT_TRUE(settings_.playSounds.value());
    EXPECT_TRUE(settings_.captureShadows.value());
    EXPECT_FALSE(settings_.hideDockIcon.value());
    EXPECT_THAT(backend_.writes, IsEmpty());
}

TEST_F(ContentSettings, a_registered_value_wins_over_the_fallback) {
    app::registerDefaultSettings(store_);
    EXPECT_TRUE(settings_.saveToDownloads.value());
    EXPECT_FALSE(settings_.saveOCRToDownloads.value());
    EXPECT_TRUE(settings_.copyToClipboard.value());
    store_.registerDefaults({{app::keys::copyToClipboard, false}});
    EXPECT_FALSE(settings_.copyToClipboard.value());
    EXPECT_THAT(backend_.writes, IsEmpty());
}

TEST_F(ContentSettings, a_stored_value_wins_over_both) {
    app::registerDefaultSettings(store_);
    backend_.values[app::keys::saveToDownloads] = false;
    backend_.values[app::keys::showNotifications] = true;
    backend_.values[app::keys::ocrSavePath] = "/somewhere";
    EXPECT_FALSE(settings_.saveToDownloads.value());
    EXPECT_TRUE(settings_.showNotifications.value());
    EXPECT_EQ(settings_.ocrSavePath.value(), "/somewhere");
}

TEST_F(ContentSettings, a_stored_value_of_another_type_is_no_value) {
    backend_.values[app::keys::copyToClipboard] = "no";
    backend_.values[app::keys::screenshotSavePath] = std::int64_t{7};
    EXPECT_TRUE(settings_.copyToClipboard.value());
    EXPECT_EQ(settings_.screenshotSavePath.value(), "");
    app::registerDefaultSettings(store_);
    backend_.values[app::keys::saveToDownloads] = std::int64_t{0};
    EXPECT_TRUE(settings_.saveToDownloads.value());
}

TEST_F(ContentSettings, each_is_stored_under_its_own_key) {
    settings_.saveToDownloads.set(true);
    settings_.saveOCRToDownloads.set(true);
    settings_.screenshotSavePath.set("/a");
    settings_.ocrSavePath.set("/b");
    settings_.copyToClipboard.set(false);
    settings_.copyOCRToClipboard.set(false);
    settings_.showNotifications.set(true);
    settings_.playSounds.set(false);
    settings_.captureShadows.set(false);
    settings_.hideDockIcon.set(true);
    EXPECT_THAT(backend_.writes,
                ElementsAre("saveToDownloads = true", "saveOCRToDownloads = true",
                            "screenshotSavePath = \"/a\"", "ocrSavePath = \"/b\"",
                            "copyToClipboard = false", "copyOCRToClipboard = false",
                            "showNotifications = true", "playSounds = false",
                            "captureShadows = false", "hideDockIcon = true"));
}

TEST_F(ContentSettings,
       a_change_by_this_program_or_another_one_is_told_until_the_observation_ends) {
    int count = 0;
    auto observation = settings_.playSounds.observe([&] { ++count; });
    settings_.playSounds.set(false);
    backend_.changeFromOutside(app::keys::playSounds, true);
    backend_.changeFromOutside(app::keys::captureShadows, false);
    EXPECT_EQ(count, 2);
    observation = {};
    settings_.playSounds.set(false);
    EXPECT_EQ(count, 2);
}

}  // namespace
