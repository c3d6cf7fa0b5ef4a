#include "journeys/recognition_journey.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>

#include "text_score.h"

namespace journeys {
namespace {

std::vector<xcb_window_t> managedWindows(const desktop::XClient& client) {
    const auto bytes = client.property(client.root(), "_NET_CLIENT_LIST");
    std::vector<xcb_window_t> windows(bytes ? bytes->size() / sizeof(xcb_window_t) : 0);
    if (!windows.empty()) {
        std::memcpy(windows.data(), bytes->data(), windows.size() * sizeof(xcb_window_t));
    }
    return windows;
}

Area areaOf(const desktop::XClient& client, xcb_window_t window) {
    const desktop::Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(client.get(), xcb_get_geometry(client.get(), window), nullptr));
    const desktop::Reply<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
        client.get(), xcb_translate_coordinates(client.get(), window, client.root(), 0, 0),
        nullptr));
    return size && place ? Area{place->dst_x, place->dst_y, size->width, size->height} : Area{};
}

/// A window may be wider than what is left of the screen beside its place.
Area visibleAreaOf(const desktop::XClient& client, xcb_window_t window) {
    const Area area = areaOf(client, window);
    const Area screen = areaOf(client, client.root());
    const int left = std::max(area.x, 0);
    const int top = std::max(area.y, 0);
    return {left, top, std::min(area.x + area.width, screen.width) - left,
            std::min(area.y + area.height, screen.height) - top};
}

void move(const desktop::XClient& client, xcb_window_t window, Place place) {
    const std::uint32_t values[] = {static_cast<std::uint32_t>(place.x),
                                    static_cast<std::uint32_t>(place.y)};
    xcb_configure_window(client.get(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
    client.synchronize();
    // Whether the place is that of the decoration is the window manager's choice.
    constexpr int widestDecoration = 64;
    desktop::require("The moving of a window", [&] {
        const Area area = areaOf(client, window);
        return std::abs(area.x - place.x) <= widestDecoration &&
               std::abs(area.y - place.y) <= widestDecoration;
    });
}

/// How many pixels have another colour than most have.
std::size_t inkIn(const Picture& picture) {
    std::map<std::uint32_t, std::size_t> counts;
    for (const std::uint32_t pixel : picture.pixels) {
        ++counts[pixel];
    }
    std::size_t most = 0;
    for (const auto& [color, count] : counts) {
        most = std::max(most, count);
    }
    return picture.pixels.size() - most;
}

}  // namespace

RecognitionJourney::RecognitionJourney(const desktop::DesktopOptions& options,
                                       desktop::Wallpaper::Motif motif)
    : session(options, motif) {
    // What a toolkit calls its usual fonts is then the same everywhere.
    const auto fonts = session.desktop().othersHome() / ".config/fontconfig";
    std::filesystem::create_directories(fonts);
    std::ofstream(fonts / "fonts.conf") << R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <match><test name="family"><string>sans-serif</string></test>
    <edit name="family" mode="prepend" binding="strong"><string>DejaVu Sans</string></edit></match>
  <match><test name="family"><string>Sans</string></test>
    <edit name="family" mode="prepend" binding="strong"><string>DejaVu Sans</string></edit></match>
</fontconfig>
)";
}

void RecognitionJourney::start(const nlohmann::json& settings,
                               const desktop::Environment& environment) {
    session.writeSettings(settings);
    session.start(SettingsWindow::closed, environment);
}

TextWindow RecognitionJourney::open(const std::string& name,
                                    const std::vector<std::string>& command, Place place,
                                    std::size_t characters,
                                    const desktop::Environment& environment) {
    const auto& client = session.desktop().client();
    const auto before = managedWindows(client);
    TextWindow opened{session.desktop().startOther(name, command, environment), {}};
    std::vector<xcb_window_t> now;
    desktop::require("The window of " + name, [&] {
        now = managedWindows(client);
        return now.size() > before.size();
    });
    const auto window = *std::find_if(now.begin(), now.end(), [&](xcb_window_t candidate) {
        return std::find(before.begin(), before.end(), candidate) == before.end();
    });
    move(client, window, place);
    waitForText(visibleAreaOf(client, window), characters);
    opened.area = areaOf(client, window);
    return opened;
}

void RecognitionJourney::waitForText(const Area& area, std::size_t characters) {
    // Even small letters are more than this; an empty window has none.
    constexpr std::size_t leastInk = 8;
    session.require("The text of a window",
                    [&] { return inkIn(session.screen(area)) >= leastInk * characters; });
    session.waitUntilStill();
}

std::string RecognitionJourney::printingScript(const std::string& name, const std::string& text) {
    const auto script = session.desktop().directory() / (name + ".sh");
    const auto file = session.desktop().directory() / (name + ".txt");
    std::ofstream(file) << text;
    std::ofstream(script) << "printf '\\033[?25l'\ncat '" << file.string() << "'\nread line\n";
    return script;
}

TextWindow RecognitionJourney::openTerminal(const std::string& text, Place place,
                                            const std::string& background,
                                            const std::string& foreground) {
    const std::string name = "xterm-" + std::to_string(++printed_);
    const auto rows = static_cast<int>(linesOf(text).size());
    return open(name,
                {"xterm", "-geometry", "70x" + std::to_string(rows + 1), "-fa", "DejaVu Sans Mono",
                 "-fs", "11", "-bg", background, "-fg", foreground, "-b", "10", "+sb", "-e", "sh",
                 printingScript(name, text)},
                place, text.size());
}

std::size_t RecognitionJourney::dragOver(const Area& area) {
    session.openRecognitionOverlay();
    const std::size_t before = session.mark();
    session.input().drag({area.x, area.y}, {area.x + area.width, area.y + area.height});
    session.waitUntilClosed();
    return before;
}

std::string RecognitionJourney::recognize(const Area& area) {
    session.waitForLine(line::textCopied, dragOver(area));
    return clipboardText();
}

std::string RecognitionJourney::clipboardText() {
    const auto bytes = session.clipboard().read("UTF8_STRING");
    return bytes ? std::string(bytes->begin(), bytes->end()) : "(the clipboard offers no text)";
}

void RecognitionJourney::keepPicture(const std::string& name) {
    desktop::writePng(Session::pictureFile(name), desktop::readScreen(session.desktop().client()));
}

Area inside(const Area& area, int left, int top, int right, int bottom) {
    return {area.x + left, area.y + top, area.width - left - right, area.height - top - bottom};
}

void expectRead(const std::string& truth, const std::string& reading, long inexactLines) {
    const bench::TextScore score = bench::scoreText(truth, reading);
    EXPECT_LE(score.lines - score.exactLines, inexactLines) << "read:\n"
                                                            << reading << "\ninstead of:\n"
                                                            << truth;
    EXPECT_LE(score.wrongCharacters, 2 * inexactLines) << "read:\n" << reading;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string one; std::getline(stream, one);) {
        lines.push_back(one);
    }
    return lines;
}

}  // namespace journeys
