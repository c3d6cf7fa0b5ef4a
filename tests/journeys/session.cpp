#include "journeys/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace journeys {

namespace key = desktop::key;

namespace {

/// KWin and mutter paint a background of their own behind the windows.
desktop::Wallpaper::Ground groundOf(const desktop::DesktopOptions& options) {
    return options.compositor == desktop::Compositor::builtIn
               ? desktop::Wallpaper::Ground::desktopWindow
               : desktop::Wallpaper::Ground::root;
}

/// Set by scripts/sanitize, which starts the program inside of a tool.
constexpr const char* otherProgram = "LUMAFRAME_TEST_PROGRAM";

std::filesystem::path programOfTheBuild() {
    const char* const other = std::getenv(otherProgram);
    return other == nullptr ? LUMAFRAME_PROGRAM : other;
}

}  // namespace

Session::Session(const desktop::DesktopOptions& options, desktop::Wallpaper::Motif motif)
    : executable_(programOfTheBuild()),
      options_(options),
      desktop_(options),
      motif_(motif),
      wallpaper_(std::in_place, desktop_.displayName(), motif, groundOf(options)),
      clipboard_(desktop_.displayName()),
      leftOnDisk_(desktop_) {
    // Away from every place that a journey looks at.
    input().moveTo({options.outputs.front().x + options.outputs.front().width / 2,
                    options.outputs.front().y + options.outputs.front().height - 3});
}

Session::~Session() {
    Ending ending = Ending::ordinary;
    if (program_) {
        program_->end();
        constexpr int ofSignal = 128;
        ending = program_->waitForExit() < ofSignal ? Ending::ordinary : Ending::killed;
    }
    if (std::getenv(otherProgram) != nullptr) {
        // A tool has files of its own.
        return;
    }
    for (const std::string& stranger : leftOnDisk_.strangers(ending)) {
        ADD_FAILURE() << "The program may not have this on the disk: " << stranger;
    }
}

void Session::arrange(const std::vector<desktop::Output>& outputs,
                      std::optional<std::size_t> primary) {
    desktop_.server().arrange(outputs, primary);
    options_.outputs = outputs;
    wallpaper_.emplace(desktop_.displayName(), motif_, groundOf(options_));
}

std::filesystem::path Session::settingsFile() const {
    return desktop_.home() / ".config/lumaframe/settings.json";
}

nlohmann::json Session::readSettings() const {
    std::ifstream file(settingsFile());
    return nlohmann::json::parse(file, nullptr, false);
}

void Session::writeSettings(nlohmann::json values) {
    values["shortcutsEnabledMigration_v1"] = true;
    values["shortcutsDefaultKeyMigration_v2"] = true;
    std::filesystem::create_directories(settingsFile().parent_path());
    // Never seen half written, since the program reads the file as soon as it changes.
    const auto aside = desktop_.directory() / "settings.json";
    std::ofstream(aside) << values;
    std::filesystem::rename(aside, settingsFile());
}

void Session::startWithoutWaiting(const desktop::Environment& environment,
                                  std::function<void()> beforeExec) {
    leftOnDisk_.begin();
    desktop::Environment variables = environment;
    variables.merge(leftOnDisk_.environment());
    program_ = desktop_.start("lumaframe", {executable_}, variables,
                              [enter = leftOnDisk_.entrance(), then = std::move(beforeExec)] {
                                  enter();
                                  if (then) {
                                      then();
                                  }
                              });
}

std::unique_ptr<desktop::Process> Session::startSecond() {
    return desktop_.start("second", {executable_}, leftOnDisk_.environment(),
                          leftOnDisk_.entrance());
}

void Session::start(SettingsWindow window, const desktop::Environment& environment,
                    std::function<void()> beforeExec) {
    startWithoutWaiting(environment, std::move(beforeExec));
    waitForRegistrations();
    if (window == SettingsWindow::closed &&
        options_.windowManager != desktop::WindowManager::none) {
        std::optional<xcb_window_t> settingsWindow;
        desktop::require("The settings window at the start", [&] {
            settingsWindow = windowWithRole("main");
            return settingsWindow.has_value();
        });
        closeWindow(*settingsWindow);
        desktop::require("The empty desktop after the settings window", [this] {
            return desktop::readScreen(desktop_.client()) == wallpaper_->picture();
        });
    }
}

void Session::waitForRegistrations() {
    // A registration begins by giving the keys up, so a press in between would be lost. After the
    // construction of the manager it happens twice more: a moment later, and a moment after the
    // first activation, which takes a window manager.
    const std::size_t migrations = program_->waitForLine("✅ OCR shortcut registered");
    const std::size_t delayed = program_->waitForLine("✅ OCR shortcut registered", migrations + 1);
    if (options_.windowManager != desktop::WindowManager::none) {
        const std::size_t activation = program_->waitForLine(line::becameActive);
        program_->waitForLine("✅ OCR shortcut registered", activation);
    }
    program_->waitForLine(line::handlerInstalled, delayed);
    // The last registration may be either of the two; which one is only known by no more coming.
    std::size_t lines = mark();
    desktop::require("The end of the start", [&] {
        const std::size_t before = std::exchange(lines, mark());
        return before == lines &&
               desktop::staysTrue([&] { return mark() == lines; }, std::chrono::milliseconds(350));
    });
}

std::optional<xcb_window_t> Session::windowWithRole(const std::string& part) {
    const auto list = desktop_.client()
                          .property(desktop_.client().root(), "_NET_CLIENT_LIST")
                          .value_or(std::vector<std::uint8_t>{});
    for (std::size_t index = 0; index + 4 <= list.size(); index += 4) {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::memcpy(&window, list.data() + index, sizeof window);
        const auto role = desktop_.client().property(window, "WM_WINDOW_ROLE");
        if (role && std::string(role->begin(), role->end()).find(part) != std::string::npos) {
            return window;
        }
    }
    return std::nullopt;
}

xcb_window_t Session::activeWindow() {
    return desktop_.client()
        .value(desktop_.client().root(), "_NET_ACTIVE_WINDOW")
        .value_or(XCB_WINDOW_NONE);
}

void Session::closeWindow(xcb_window_t window) {
    auto& client = desktop_.client();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = client.atom("_NET_CLOSE_WINDOW");
    message.data.data32[1] = 2;  // As a pager: a direct action of the person.
    xcb_send_event(client.get(), 0, client.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    client.synchronize();
    desktop::require("The closing of a window", [&] {
        const auto list = client.property(client.root(), "_NET_CLIENT_LIST")
                              .value_or(std::vector<std::uint8_t>{});
        for (std::size_t index = 0; index + 4 <= list.size(); index += 4) {
            if (std::memcmp(list.data() + index, &window, 4) == 0) {
                return false;
            }
        }
        return true;
    });
}

void Session::pressScreenshotShortcut() {
    input().chord({key::leftSuper, key::leftShift, key::digit1});
}

void Session::pressRecognitionShortcut() {
    input().chord({key::leftSuper, key::leftShift, key::digit2});
}

std::size_t Session::overlayWindows() {
    std::size_t count = 0;
    for (const auto& output : options_.outputs) {
        count += desktop_.client()
                     .mappedOverlays(output.x, output.y, output.width, output.height)
                     .size();
    }
    return count;
}

std::vector<Area> Session::overlayAreas() {
    const auto& client = desktop_.client();
    std::vector<Area> areas;
    for (const xcb_window_t window : client.mappedTopLevels()) {
        const auto name = client.property(window, "WM_CLASS").value_or(std::vector<std::uint8_t>{});
        const desktop::Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(
                client.get(), xcb_get_window_attributes(client.get(), window), nullptr));
        const desktop::Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(client.get(), xcb_get_geometry(client.get(), window), nullptr));
        if (std::string(name.begin(), name.end()).starts_with("lumaframe") && attributes &&
            attributes->override_redirect != 0 && geometry) {
            areas.push_back({geometry->x, geometry->y, geometry->width, geometry->height});
        }
    }
    std::sort(areas.begin(), areas.end());
    return areas;
}

bool Session::isOpen() {
    return overlayWindows() > 0;
}

void Session::openOverlay() {
    const std::size_t before = mark();
    pressScreenshotShortcut();
    program_->waitForLine(line::showSelectionCalled, before);
    waitUntilOpen();
}

void Session::openRecognitionOverlay() {
    const std::size_t before = mark();
    pressRecognitionShortcut();
    program_->waitForLine(line::cursorSet, before);
    waitUntilOpen();
}

void Session::cancelOverlay() {
    require("The closing of the overlay", [this] {
        input().tap(key::escape);
        return desktop::waitUntil([this] { return !isOpen(); }, std::chrono::milliseconds(500));
    });
}

void Session::waitUntilOpen() {
    require("The opening of the overlay",
            [this] { return overlayWindows() == options_.outputs.size(); });
}

void Session::waitUntilClosed() {
    require("The closing of the overlay", [this] { return !isOpen(); });
}

std::vector<std::string> Session::linesSince(std::size_t mark) const {
    auto lines = program_->outputLines();
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(mark));
    return lines;
}

std::size_t Session::countSince(std::size_t mark, const std::string& prefix) const {
    const auto lines = linesSince(mark);
    return static_cast<std::size_t>(
        std::count_if(lines.begin(), lines.end(),
                      [&](const std::string& text) { return text.starts_with(prefix); }));
}

void Session::require(const std::string& what, const std::function<bool()>& condition) const {
    if (desktop::waitUntil(condition)) {
        return;
    }
    std::string message = what + " did not happen in time. The program printed:\n";
    for (const std::string& text : program_->outputLines()) {
        message += "    " + text + "\n";
    }
    throw std::runtime_error(message);
}

std::string Session::waitForLine(const std::string& prefix, std::size_t mark) {
    const std::size_t index = program_->waitForLine(prefix, mark);
    return program_->outputLines().at(index).substr(prefix.size());
}

std::vector<std::filesystem::path> Session::downloads() const {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(desktop_.home() / "Downloads")) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

desktop::Png Session::clipboardPicture() {
    const auto bytes = clipboard_.read("image/png");
    if (!bytes) {
        throw std::runtime_error("The clipboard gave no picture.");
    }
    return desktop::decodePng(*bytes);
}

Picture Session::screen(const Area& area) {
    return desktop::readScreen(desktop_.client(), area.x, area.y, area.width, area.height);
}

void Session::waitUntilStill() {
    desktop::require("A screen that stays as it is", [this] {
        const Picture before = screenWithoutFilm();
        return desktop::staysTrue([&] { return screenWithoutFilm() == before; },
                                  std::chrono::milliseconds(100));
    });
}

Picture Session::screenWithoutFilm() {
    Picture screen = desktop::readScreen(desktop_.client());
    if (windowWithRole("permissions")) {
        const Area film = filmArea();
        // The place of the film follows the height of a font.
        constexpr int margin = 8;
        const int right = std::min(film.x + film.width + margin, screen.width);
        const int bottom = std::min(film.y + film.height + margin, screen.height);
        for (int y = std::max(film.y - margin, 0); y < bottom; ++y) {
            for (int x = std::max(film.x - margin, 0); x < right; ++x) {
                screen.pixels[static_cast<std::size_t>(y * screen.width + x)] = 0;
            }
        }
    }
    return screen;
}

Area Session::filmArea(int scale) {
    const desktop::XClient& client = desktop_.client();
    const xcb_window_t window = windowWithRole("permissions").value_or(XCB_WINDOW_NONE);
    const desktop::Reply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        client.get(), xcb_translate_coordinates(client.get(), window, client.root(), 0, 0),
        nullptr));
    return origin ? Area{origin->dst_x + 48 * scale, origin->dst_y + 172 * scale, 404 * scale,
                         250 * scale}
                  : Area{};
}

std::filesystem::path Session::pictureFile(const std::string& name) {
    return std::filesystem::path(LUMAFRAME_PICTURE_DIRECTORY) / (name + ".png");
}

}  // namespace journeys
