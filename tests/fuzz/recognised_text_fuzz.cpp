// Any bytes as a line that the engine read: the file's name and the notification.

#include "app/default_settings.h"
#include "app/settings_keys.h"
#include "base/text.h"
#include "capture/text_recognition.h"
#include "doubles/fake_file_manager.h"
#include "doubles/fake_log.h"
#include "doubles/fake_pasteboard.h"
#include "doubles/fake_sound_player.h"
#include "doubles/fake_text_recognizer.h"
#include "doubles/fake_user_notifications.h"
#include "doubles/manual_clock.h"
#include "doubles/memory_settings_backend.h"
#include "fuzz_input.h"
#include "utf8_rules.h"

namespace {

/// Runs everything at once.
class ImmediateQueue final : public base::MainQueue {
  public:
    void post(std::function<void()> task) override { task(); }
    void postAfter(std::chrono::milliseconds, std::function<void()> task) override { task(); }
};

struct Delivered {
    std::map<std::string, std::vector<std::uint8_t>> files;
    std::vector<capture::NotificationRequest> notifications;
    std::optional<std::string> clipboard;
};

Delivered deliver(std::string_view text) {
    doubles::FakeLog log;
    ImmediateQueue queue;
    doubles::ManualClock clock;
    doubles::MemorySettingsBackend backend;
    app::SettingsStore settings{backend};
    app::registerDefaultSettings(settings);
    for (const char* key : {app::keys::saveOCRToDownloads, app::keys::showNotifications,
                            app::keys::copyOCRToClipboard}) {
        settings.setBool(key, true);
    }
    doubles::FakePasteboard pasteboard;
    doubles::FakeFileManager fileManager;
    doubles::FakeSoundPlayer soundPlayer;
    doubles::FakeUserNotifications notifications;
    doubles::FakeTextRecognizer recognizer;
    recognizer.observations = {{{std::string(text)}}};
    capture::Confirmation confirmation{{soundPlayer, notifications, log}};
    capture::TextRecognition recognition{
        {recognizer, pasteboard, fileManager, confirmation, settings, queue, clock, log}};
    recognition.performOCR(base::Image());
    notifications.answer();
    return {fileManager.files, notifications.posted, pasteboard.text};
}

void checkName(std::string name) {
    const std::string folder = "/home/someone/Downloads/";
    fuzz::require(name.starts_with(folder) && name.ends_with(".txt"), "a text file in its folder");
    name = name.substr(folder.size(), name.size() - folder.size() - 4);
    fuzz::require(!name.empty() && name.front() != '.', "a name does not begin with a dot");
    fuzz::require(name.find('/') == std::string::npos, "a name has no slash");
    fuzz::require(fuzz::isUtf8(name) && !fuzz::hasControl(name), "a name is printable UTF-8");
    fuzz::require(fuzz::clusters(name) <= 50, "a name has 50 characters at most");
}

void checkBody(std::string body, bool isBlank) {
    fuzz::require(fuzz::isUtf8(body), "a notification is UTF-8");
    fuzz::require(body.empty() == isBlank, "only a blank text gives an empty notification");
    fuzz::require(fuzz::clusters(body) <= 53, "a notification has 50 characters and an ellipsis");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto delivered = deliver(fuzz::Input(data, size).text());
    const bool isBlank = base::trimmed(delivered.clipboard.value_or("")).empty();
    fuzz::require(delivered.clipboard && fuzz::isUtf8(*delivered.clipboard),
                  "the clipboard gets UTF-8");
    fuzz::require(delivered.files.size() == (isBlank ? 0U : 1U), "one file for a text");
    fuzz::require(delivered.notifications.size() == 1, "one notification");
    if (!isBlank) {
        checkName(delivered.files.begin()->first);
    }
    checkBody(delivered.notifications.front().body, isBlank);
    return 0;
}
