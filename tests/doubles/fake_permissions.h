#pragma once

#include <string>
#include <vector>

#include "base/permissions.h"
#include "doubles/call_log.h"

namespace doubles {

/// Answers as set. In a call log: "can capture screen", "is accessibility trusted",
/// "settings page: <url>".
class FakePermissions final : public base::Permissions, public Recorder {
  public:
    bool canCaptureScreen() const override {
        record("can capture screen");
        return screenIsAllowed;
    }
    bool isAccessibilityTrusted() const override {
        record("is accessibility trusted");
        return accessibilityIsTrusted;
    }
    std::string screenCaptureLimit() const override { return screenLimit; }
    std::string accessibilityLimit() const override { return keyboardLimit; }
    void openSettingsPage(const std::string& url) override {
        record("settings page: " + url);
        openedPages.push_back(url);
    }

    bool screenIsAllowed = true;
    bool accessibilityIsTrusted = true;
    std::string screenLimit;
    std::string keyboardLimit;
    std::vector<std::string> openedPages;
};

}  // namespace doubles
