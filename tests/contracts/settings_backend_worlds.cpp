#include <poll.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "contracts/settings_backend_contract.h"
#include "doubles/fake_log.h"
#include "doubles/manual_main_queue.h"
#include "doubles/memory_settings_backend.h"
#include "platform/freedesktop/json_settings_backend.h"
#include "platform/freedesktop/temporary_directory.h"

namespace contracts {
namespace {

class MemorySettingsWorld final : public SettingsBackendWorld {
  public:
    app::SettingsBackend& backend() override { return backend_; }
    void changeFromOutside(const std::string& key, std::optional<bool> value) override {
        backend_.changeFromOutside(
            key, value ? std::optional<app::SettingsValue>(*value) : std::nullopt);
    }
    void breakMedium() override {
        backend_.writeError = base::Error{base::ErrorKind::failed, "The disk is full."};
    }

  private:
    doubles::MemorySettingsBackend backend_;
};

class JsonSettingsWorld final : public SettingsBackendWorld {
  public:
    JsonSettingsWorld() {
        std::filesystem::create_directory(directory_.path("config"));
        backend_ = platform::freedesktop::JsonSettingsBackend::create(
            {.home = directory_.path(),
             .configHome = directory_.path("config"),
             .dataHome = "",
             .dataDirectories = {}},
            log_, queue_, [this](int fileDescriptor, std::function<void()> onReadable) {
                watched_ = fileDescriptor;
                onReadable_ = std::move(onReadable);
                return std::make_shared<int>(0);
            });
    }
    ~JsonSettingsWorld() override {
        backend_.reset();
        queue_.runAll();
    }
    app::SettingsBackend& backend() override { return *backend_; }
    void changeFromOutside(const std::string& key, std::optional<bool> value) override {
        nlohmann::json document = nlohmann::json::object();
        if (std::filesystem::exists(file_)) {
            document = nlohmann::json::parse(std::ifstream(file_));
        }
        if (value) {
            document[key] = *value;
        } else {
            document.erase(key);
        }
        directory_.write("config/lumaframe/other.json", document.dump());
        std::filesystem::rename(directory_.path("config/lumaframe/other.json"), file_);
        dispatchWatch();
    }
    void breakMedium() override {
        // A file where the directory should be: nothing can be stored, not even by root.
        directory_.write("config/lumaframe", "");
    }

  private:
    /// Hands on what the watch saw, until nothing comes for a moment.
    void dispatchWatch() {
        pollfd entry{watched_, POLLIN, 0};
        int limit = 5000;
        while (::poll(&entry, 1, limit) == 1) {
            onReadable_();
            queue_.runAll();
            limit = 0;
        }
    }

    freedesktop_tests::TemporaryDirectory directory_;
    std::string file_ = directory_.path("config/lumaframe/settings.json");
    doubles::FakeLog log_;
    doubles::ManualMainQueue queue_;
    int watched_ = -1;
    std::function<void()> onReadable_;
    std::unique_ptr<platform::freedesktop::JsonSettingsBackend> backend_;
};

INSTANTIATE_TEST_SUITE_P(Fake, SettingsBackendContract,
                         testing::Values(MakeSettingsBackendWorld([] {
                             return std::make_unique<MemorySettingsWorld>();
                         })));
INSTANTIATE_TEST_SUITE_P(Json, SettingsBackendContract,
                         testing::Values(MakeSettingsBackendWorld([] {
                             return std::make_unique<JsonSettingsWorld>();
                         })));

}  // namespace
}  // namespace contracts
