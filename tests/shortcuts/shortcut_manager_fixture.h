#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "app/settings_keys.h"
#include "app/settings_store.h"
#include "doubles/doubles.h"
#include "shortcuts/shortcut_manager.h"

/// A hot-key manager over fakes, built when the test asks for it.
class ShortcutManagerFixture : public testing::Test {
  protected:
    ShortcutManagerFixture() {
        log.recordInto(calls);
        hotKeys.recordInto(calls);
        backend.recordInto(calls);
        permissions.recordInto(calls);
    }

    /// As the first access at launch does, up to the end of the constructor.
    shortcuts::ShortcutManager& construct() {
        manager = std::make_unique<shortcuts::ShortcutManager>(shortcuts::ShortcutManager::Mediator{
            .hotKeys = hotKeys,
            .settings = settings,
            .notifications = notifications,
            .permissions = permissions,
            .mainQueue = queue,
            .log = log,
            .showSelection = [this](base::CaptureMode mode) {
                calls.add(mode == base::CaptureMode::ocr ? "show ocr" : "show screenshot");
            }});
        return *manager;
    }
    /// The same, with everything done that follows by itself, and the records emptied.
    shortcuts::ShortcutManager& settled() {
        construct();
        queue.advance(std::chrono::milliseconds(200));
        calls.clear();
        log.lines.clear();
        return *manager;
    }
    /// A store that has been through both migrations, with both switches on.
    void storeMigrated() {
        backend.values[app::keys::shortcutsEnabledMigrationV1] = true;
        backend.values[app::keys::shortcutsDefaultKeyMigrationV2] = true;
    }

    doubles::CallLog calls;
    doubles::FakeLog log;
    doubles::ManualMainQueue queue;
    doubles::FakeHotKeyService hotKeys;
    doubles::FakePermissions permissions;
    doubles::MemorySettingsBackend backend;
    app::SettingsStore settings{backend};
    app::NotificationCenter notifications;
    std::unique_ptr<shortcuts::ShortcutManager> manager;
};
