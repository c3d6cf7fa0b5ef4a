#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "app/application.h"
#include "app/windows.h"
#include "doubles/call_log.h"

namespace doubles {

/// The windows of a program in a list, and the program. In a call log: "activate", "front:
/// <handle>", "open scene: <id>", "level: <handle> <number>", "close: <handle>", "activation
/// policy: <number>", "terminate".
class FakeWindows final : public app::Windows, public app::Application, public Recorder {
  public:
    std::vector<app::Window> windows() const override { return list; }
    void activate() override {
        record("activate");
        ++activateCount;
    }
    void makeKeyAndOrderFront(app::WindowHandle handle) override {
        record("front: " + std::to_string(handle));
        const bool isOpen = std::any_of(list.begin(), list.end(), [&](const app::Window& window) {
            return window.handle == handle;
        });
        if (isOpen) {
            front = handle;
        }
    }
    void openScene(const std::string& sceneId) override {
        record("open scene: " + sceneId);
        for (const app::Window& window : list) {
            if (window.identifier == sceneId) {
                front = window.handle;
                return;
            }
        }
        front = add(sceneId);
    }
    void setLevel(app::WindowHandle handle, app::WindowLevel level) override {
        record("level: " + std::to_string(handle) + " " + std::to_string(static_cast<int>(level)));
    }
    void close(app::WindowHandle handle) override {
        record("close: " + std::to_string(handle));
        closeByUser(handle);
    }
    void setActivationPolicy(app::ActivationPolicy policy) override {
        record("activation policy: " + std::to_string(static_cast<int>(policy)));
        activationPolicy = policy;
    }
    void terminate() override {
        record("terminate");
        ++terminateCount;
    }

    app::WindowHandle add(const std::string& identifier) {
        list.push_back({++lastHandle_, identifier});
        return lastHandle_;
    }
    void closeByUser(app::WindowHandle handle) {
        std::erase_if(list, [&](const app::Window& window) { return window.handle == handle; });
    }

    std::vector<app::Window> list;
    std::optional<app::WindowHandle> front;
    std::optional<app::ActivationPolicy> activationPolicy;
    int activateCount = 0;
    int terminateCount = 0;

  private:
    app::WindowHandle lastHandle_ = 0;
};

}  // namespace doubles
