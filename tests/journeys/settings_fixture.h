#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "journeys/session.h"
#include "journeys/settings_panel.h"

namespace journeys {

/// A session whose settings window stays open and is used.
class SettingsFixture : public testing::Test {
  protected:
    explicit SettingsFixture(desktop::Compositor compositor = desktop::Compositor::none)
        : session({.compositor = compositor,
                   .notifications = desktop::NotificationDaemon::recorder,
                   .accessibility = desktop::Accessibility::on}) {}

    void open(nlohmann::json settings = nlohmann::json::object(),
              const desktop::Environment& environment = {}) {
        session.writeSettings(std::move(settings));
        session.start(SettingsWindow::leftOpen, environment);
        panel.waitUntilOpen();
    }
    nlohmann::json stored(const std::string& name) {
        const auto settings = session.readSettings();
        return settings.contains(name) ? settings.at(name) : nlohmann::json();
    }
    /// Takes a region beside the settings window; returns the place in the log before it.
    std::size_t capture() {
        const std::size_t before = session.mark();
        session.openOverlay();
        session.input().drag({1000, 500}, {1100, 600});
        session.waitUntilClosed();
        session.program().waitForLine("🎯 Cursor restored", before);
        return before;
    }
    void replaceSettings(const std::string& text) {
        const auto aside = session.desktop().directory() / "settings.json";
        std::ofstream(aside) << text;
        std::filesystem::rename(aside, session.settingsFile());
    }
    std::vector<std::string> setAside() {
        std::vector<std::string> names;
        for (const auto& entry :
             std::filesystem::directory_iterator(session.settingsFile().parent_path())) {
            const std::string name = entry.path().filename();
            if (name.starts_with("settings.json.corrupt-")) {
                names.push_back(name);
            }
        }
        return names;
    }

    Session session;
    SettingsPanel panel{session};
};

}  // namespace journeys
