#include "latency/lumaframe_program.h"

#include <cstring>
#include <fstream>

#include "latency/monotonic.h"

namespace latency {

namespace {

namespace key = desktop::key;

/// The shortcuts are registered again after the first activation of the settings window.
constexpr auto registrations = std::chrono::milliseconds(700);
constexpr auto startLimit = std::chrono::seconds(20);

std::optional<xcb_window_t> settingsWindow(desktop::XClient& client) {
    const auto list =
        client.property(client.root(), "_NET_CLIENT_LIST").value_or(std::vector<std::uint8_t>{});
    for (std::size_t index = 0; index + 4 <= list.size(); index += 4) {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::memcpy(&window, list.data() + index, sizeof window);
        const auto role = client.property(window, "WM_WINDOW_ROLE");
        if (role && std::string(role->begin(), role->end()).find("main") != std::string::npos) {
            return window;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<double> LumaframeProgram::start(BusyDesktop& desktop) {
    const auto settings = desktop.get().home() / ".config/lumaframe";
    std::filesystem::create_directories(settings);
    std::ofstream(settings / "settings.json")
        << R"({"shortcutsEnabledMigration_v1": true, "shortcutsDefaultKeyMigration_v2": true,)"
        << R"( "playSounds": false})" << '\n';
    const double begin = now();
    process_ = desktop.get().start("lumaframe", {executable_});
    lines_ = std::make_unique<LineWatch>(desktop.get().directory() / "lumaframe.out");
    const std::string registered = "✅ Event handler installed successfully";
    const bool isUp = watchUntil(
        {lines_.get()}, [&] { return lines_->lineAt(registered).has_value(); }, startLimit);
    const auto end = lines_->lineAt(registered);
    closeSettingsWindow(desktop.get());
    desktop::require("The end of the registrations", [this] {
        lines_->drain();
        return desktop::staysTrue(
            [this, before = lines_->count()] {
                lines_->drain();
                return lines_->count() == before;
            },
            registrations);
    });
    return isUp ? std::optional(*end - begin) : std::nullopt;
}

void LumaframeProgram::closeSettingsWindow(desktop::Desktop& desktop) {
    auto& client = desktop.client();
    std::optional<xcb_window_t> window;
    desktop::require("The settings window", [&] {
        window = settingsWindow(client);
        return window.has_value();
    });
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = *window;
    message.type = client.atom("_NET_CLOSE_WINDOW");
    message.data.data32[1] = 2;  // As a pager: a direct action of the person.
    desktop::require("The activation of the settings window", [this] {
        lines_->drain();
        return lines_->lineAt("🔄 App became active").has_value();
    });
    xcb_send_event(client.get(), 0, client.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    client.synchronize();
    desktop::require("The closing of the settings window",
                     [&] { return !settingsWindow(client).has_value(); });
}

void LumaframeProgram::stop() {
    process_.reset();
    lines_.reset();
}

double LumaframeProgram::trigger(InputBurst& input, Purpose) {
    lines_->restart();
    return input.chord({key::leftSuper, key::leftShift, key::digit1}).send();
}

double LumaframeProgram::triggerRecognition(InputBurst& input) {
    lines_->restart();
    return input.chord({key::leftSuper, key::leftShift, key::digit2}).send();
}

std::optional<double> LumaframeProgram::readyAt() {
    return lines_->lineAt("🔵 showSelection() called");
}

bool LumaframeProgram::isRecognized() {
    lines_->drain();
    return lines_->lineAt("OCR complete!").has_value() ||
           lines_->lineAt("Unable to perform OCR").has_value();
}

}  // namespace latency
