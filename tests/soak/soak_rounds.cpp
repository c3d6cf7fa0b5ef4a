#include "soak/soak_rounds.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "journeys/overlay_colors.h"
#include "journeys/recognition_journey.h"

namespace soak {

namespace {

namespace fs = std::filesystem;
namespace line = journeys::line;
using journeys::Area;
using journeys::Picture;

/// A part of the first display that shows nothing but the wallpaper.
constexpr Area free{500, 300, 760, 480};
constexpr desktop::Output first{0, 0, 1280, 800, 0};
constexpr desktop::Output second{1280, 0, 800, 600, 1};
constexpr const char* screenshotNotification = "notification\tLumaframe\tScreenshot Captured\t";
constexpr const char* textNotification = "notification\tLumaframe\tText Recognized\t";

void check(bool isRight, const std::string& otherwise) {
    if (!isRight) {
        throw std::runtime_error(otherwise);
    }
}

void checkPicture(const Picture& expected, const Picture& actual, const std::string& where) {
    if (!(expected == actual)) {
        desktop::writePng(journeys::Session::pictureFile("soak-expected"), expected);
        desktop::writePng(journeys::Session::pictureFile("soak-taken"), actual);
        throw std::runtime_error(where + ": " + desktop::difference(expected, actual));
    }
}

Area whole(const desktop::Output& output) {
    return {output.x, output.y, output.width, output.height};
}

std::string textOf(const Area& area) {
    return std::to_string(area.width) + "x" + std::to_string(area.height) + "+" +
           std::to_string(area.x) + "+" + std::to_string(area.y);
}

}  // namespace

const char* nameOf(Kind kind) {
    switch (kind) {
        case Kind::region:
            return "region";
        case Kind::window:
            return "window";
        case Kind::text:
            return "text";
        case Kind::cancelled:
            return "cancelled";
        case Kind::cancelledDrag:
            return "cancelled while dragging";
        case Kind::reopened:
            return "opened again while open";
        case Kind::settingsChange:
            return "settings change";
        case Kind::windowOpening:
            return "settings window opened and closed";
        case Kind::displayChange:
            return "display added or removed";
        case Kind::compositorChange:
            return "compositor started or stopped";
    }
    return "";
}

bool hasDummyServer() {
    return ::geteuid() == 0;
}

std::vector<desktop::Output> outputsAtTheStart() {
    return hasDummyServer() ? std::vector{first, second} : std::vector{first};
}

SoakRounds::SoakRounds(journeys::Session& session, Area textArea, std::string text,
                       std::uint32_t seed)
    : session_(session),
      textArea_(textArea),
      text_(std::move(text)),
      random_(seed),
      window_(session.desktop().displayName(),
              {.x = 60,
               .y = 420,
               .width = 300,
               .height = 240,
               .decoration = desktop::TestWindowOptions::Decoration::none}),
      log_(session.desktop().directory() / "lumaframe.out",
           {line::regionCopied, line::windowCopied, line::saved, line::notSaved, line::textCopied,
            line::textSaved, line::textNotSaved, line::textNotRecognized}),
      notifications_(session.desktop().directory() / "notification-recorder.out",
                     {screenshotNotification, textNotification}),
      folders_{session.desktop().home() / "Downloads", session.desktop().home() / "Pictures"},
      folder_(folders_.front()) {
    session_.leftOnDisk().expect(folders_.back());
    window_.focus();
    session_.waitUntilStill();
    terminal_ = session_.screen(textArea_);
}

nlohmann::json SoakRounds::prepare(const fs::path& home, const fs::path& pictures) {
    const fs::path texts = home / "Texts";
    fs::create_directories(pictures);
    fs::create_directories(texts);
    return {{"screenshotSavePath", pictures.string()},
            {"ocrSavePath", texts.string()},
            {"captureShadows", false},
            {"showNotifications", true},
            // On until the first change of the settings, and again after every other one.
            {"playSounds", pictures == home / "Downloads"},
            {"saveOCRToDownloads", true}};
}

void SoakRounds::planBlock() {
    const std::vector<std::pair<Kind, int>> shares{{Kind::region, 11},       {Kind::window, 3},
                                                   {Kind::text, 1},          {Kind::cancelled, 1},
                                                   {Kind::cancelledDrag, 1}, {Kind::reopened, 2}};
    for (const auto& [kind, count] : shares) {
        planned_.insert(planned_.end(), static_cast<std::size_t>(count), kind);
    }
    constexpr Kind changes[] = {Kind::settingsChange, Kind::windowOpening, Kind::displayChange,
                                Kind::compositorChange};
    planned_.push_back(changes[changes_++ % std::size(changes)]);
    std::shuffle(planned_.begin(), planned_.end(), random_);
}

void SoakRounds::next() {
    if (planned_.empty()) {
        planBlock();
    }
    const Kind kind = planned_.back();
    planned_.pop_back();
    try {
        carryOut(kind);
        expectCounts();
    } catch (const std::exception& error) {
        std::string before = " (the latest rounds: ";
        for (const Kind each : latest_) {
            before += std::string(nameOf(each)) + "; ";
        }
        throw std::runtime_error(nameOf(kind) + before + ")" +
                                 (hasSecondDisplay_ ? ", two displays" : ", one display") +
                                 (hasCompositor_ ? ", compositor" : "") + ": " + error.what());
    }
}

void SoakRounds::carryOut(Kind kind) {
    ++rounds_[kind];
    latest_.push_back(kind);
    if (latest_.size() > 8) {
        latest_.pop_front();
    }
    switch (kind) {
        case Kind::region:
            openOverlay();
            return takeRegion(randomRegion());
        case Kind::window:
            return takeWindow();
        case Kind::text:
            return takeText();
        case Kind::cancelled:
            openOverlay();
            return session_.cancelOverlay();
        case Kind::cancelledDrag:
            return cancelDrag();
        case Kind::reopened:
            return reopen();
        case Kind::settingsChange:
            return changeSettings();
        case Kind::windowOpening:
            return openSettingsWindow();
        case Kind::displayChange:
            return changeDisplays();
        case Kind::compositorChange:
            return changeCompositor();
    }
}

void SoakRounds::bringToRest() {
    if (hasSecondDisplay_) {
        changeDisplays();
    }
    if (hasCompositor_) {
        changeCompositor();
    }
    takeText();
    ++rounds_[Kind::text];
    openOverlay();
    takeRegion({600, 400, 300, 200});
    ++rounds_[Kind::region];
    expectCounts();
}

void SoakRounds::openOverlay() {
    log_.skip();
    session_.pressScreenshotShortcut();
    log_.waitFor(line::showSelectionCalled);
    session_.waitUntilOpen();
}

void SoakRounds::takeRegion(const Area& area) {
    session_.input().drag({area.x, area.y}, {area.x + area.width, area.y + area.height});
    ++regions_;
    log_.waitFor(line::regionCopied);
    const std::string path = log_.waitFor(line::saved);
    session_.waitUntilClosed();
    checkPicture(session_.wallpaper().cut(area.x, area.y, area.width, area.height),
                 takeSavedPicture(path), "the file of " + textOf(area));
}

void SoakRounds::takeWindow() {
    openOverlay();
    session_.input().tap(desktop::key::space);
    log_.waitFor(line::toggled);
    const Area frame = window_.frame();
    const desktop::Place at{frame.x + frame.width / 2, frame.y + frame.height / 2};
    const std::uint32_t original = window_.picture().at(frame.width / 2, frame.height / 2);
    session_.input().moveTo({at.x - 5, at.y - 5});
    session_.input().moveTo(at);
    std::uint32_t shown = 0;
    const bool isHighlighted = desktop::waitUntil([&] {
        shown = session_.screen({at.x, at.y, 1, 1}).pixels[0];
        return journeys::isHighlighted(shown, original);
    });
    check(isHighlighted, std::to_string(shown) + " is no highlight of " + std::to_string(original));
    session_.input().pressButton();
    session_.input().releaseButton();
    ++windows_;
    check(log_.waitFor(line::windowCopied) == std::to_string(window_.id()), "another window");
    const std::string path = log_.waitFor(line::saved);
    session_.waitUntilClosed();
    checkPicture(window_.picture(), takeSavedPicture(path), "the window's file");
}

void SoakRounds::takeText() {
    // What the overlay covered is painted again by its program, when that has the time.
    session_.require("The terminal", [this] { return session_.screen(textArea_) == terminal_; });
    log_.skip();
    session_.pressRecognitionShortcut();
    log_.waitFor(line::cursorSet);
    session_.waitUntilOpen();
    session_.input().drag({textArea_.x, textArea_.y},
                          {textArea_.x + textArea_.width, textArea_.y + textArea_.height});
    ++texts_;
    const std::string picture = log_.waitFor(line::saved);
    log_.waitFor(line::textCopied);
    session_.waitUntilClosed();
    checkPicture(terminal_, decodeAndRemove(picture), "the text's picture");
    const auto bytes = session_.clipboard().read("UTF8_STRING");
    const std::string text = bytes ? std::string(bytes->begin(), bytes->end()) : "(nothing)";
    check(text == text_, "read \"" + text + "\" instead of \"" + text_ + "\"");
    const std::string path = log_.waitFor(line::textSaved);
    const auto saved = desktop::readFile(path);
    check(std::string(saved.begin(), saved.end()) == text, "the clipboard differs from the file");
    fs::remove(path);
}

void SoakRounds::cancelDrag() {
    openOverlay();
    const Area area = randomRegion();
    session_.input().moveTo({area.x, area.y});
    session_.input().pressButton();
    session_.input().moveInSteps({area.x, area.y}, {area.x + area.width, area.y + area.height});
    session_.cancelOverlay();
    session_.input().releaseButton();
}

void SoakRounds::reopen() {
    openOverlay();
    session_.pressScreenshotShortcut();
    log_.waitFor(line::showSelectionCalled);
    session_.waitUntilOpen();
    takeRegion(randomRegion());
}

void SoakRounds::changeSettings() {
    folder_ = folders_[folder_ == folders_.front() ? 1 : 0];
    session_.writeSettings(prepare(session_.desktop().home(), folder_));
    // The file is watched, not polled: the change arrives a moment later.
    session_.require("The new folder", [this] {
        openOverlay();
        const Area area = randomRegion();
        session_.input().drag({area.x, area.y}, {area.x + area.width, area.y + area.height});
        ++regions_;
        const fs::path path = log_.waitFor(line::saved);
        session_.waitUntilClosed();
        checkPicture(session_.wallpaper().cut(area.x, area.y, area.width, area.height),
                     takeSavedPicture(path), "the file of " + textOf(area));
        return path.parent_path() == folder_;
    });
}

void SoakRounds::openSettingsWindow() {
    session_.desktop().bus({"activate"});
    std::optional<xcb_window_t> opened;
    session_.require("The settings window", [&] {
        opened = session_.windowWithRole("main");
        return opened.has_value();
    });
    session_.closeWindow(*opened);
    waitForWallpaper();
}

void SoakRounds::changeDisplays() {
    if (!hasDummyServer()) {
        return;
    }
    if (hasCompositor_) {
        changeCompositor();
    }
    hasSecondDisplay_ = !hasSecondDisplay_;
    session_.arrange(hasSecondDisplay_ ? std::vector{first, second} : std::vector{first});
    waitForWallpaper();
}

void SoakRounds::changeCompositor() {
    hasCompositor_ = !hasCompositor_;
    if (hasCompositor_) {
        session_.desktop().startCompositor(desktop::Compositor::picom);
    } else {
        session_.desktop().stopCompositor();
    }
    waitForWallpaper();
}

Area SoakRounds::randomRegion() {
    const auto between = [this](int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random_);
    };
    // A third of the pictures come from the second display while there is one.
    const bool isOnSecond = hasSecondDisplay_ && between(0, 2) == 0;
    const Area within = isOnSecond ? whole(second) : free;
    const int width = between(20, 300);
    const int height = between(20, 200);
    return {between(within.x + 10, within.x + within.width - width - 10),
            between(within.y + 10, within.y + within.height - height - 10), width, height};
}

Picture SoakRounds::takeSavedPicture(const std::string& path) {
    const auto bytes = desktop::readFile(path);
    check(session_.clipboard().read("image/png") == bytes, "the clipboard differs from the file");
    return decodeAndRemove(path);
}

Picture SoakRounds::decodeAndRemove(const fs::path& path) {
    check(std::distance(fs::directory_iterator(path.parent_path()), fs::directory_iterator()) == 1,
          "more than the one picture in the folder");
    Picture picture = desktop::decodePng(desktop::readFile(path)).picture;
    fs::remove(path);
    return picture;
}

void SoakRounds::waitForWallpaper() {
    session_.require("The wallpaper", [this] {
        const std::vector<Area> shown{free, hasSecondDisplay_ ? whole(second) : free};
        return std::ranges::all_of(shown, [this](const Area& area) {
            return session_.screen(area) ==
                   session_.wallpaper().cut(area.x, area.y, area.width, area.height);
        });
    });
}

void SoakRounds::expectCounts() {
    const auto count = [](LogFollower& log, const char* prefix, std::size_t expected) {
        check(log.countOf(prefix) == expected, std::to_string(log.countOf(prefix)) + " lines \"" +
                                                   prefix + "\" instead of " +
                                                   std::to_string(expected));
    };
    // A text's picture is delivered first.
    count(log_, line::regionCopied, regions_ + texts_);
    count(log_, line::windowCopied, windows_);
    count(log_, line::saved, regions_ + windows_ + texts_);
    count(log_, line::notSaved, 0);
    count(log_, line::textCopied, texts_);
    count(log_, line::textSaved, texts_);
    count(log_, line::textNotSaved, 0);
    count(log_, line::textNotRecognized, 0);
    desktop::require("The notification of every delivery", [&] {
        return notifications_.countOf(screenshotNotification) >= regions_ + windows_ &&
               notifications_.countOf(textNotification) >= texts_;
    });
    count(notifications_, screenshotNotification, regions_ + windows_);
    count(notifications_, textNotification, texts_);
}

}  // namespace soak
