#pragma once

#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "journeys/session.h"
#include "soak/log_follower.h"

namespace soak {

/// What can happen in one round.
enum class Kind {
    region,
    window,
    text,
    cancelled,
    cancelledDrag,
    reopened,
    settingsChange,
    windowOpening,
    displayChange,
    compositorChange
};
const char* nameOf(Kind kind);

/// Displays come and go only with a server that needs root.
bool hasDummyServer();
/// The displays to start the session with.
std::vector<desktop::Output> outputsAtTheStart();

/// Rounds of use of a program that runs in `session`, each checked when it ends. A round that goes
/// wrong is a std::runtime_error.
class SoakRounds {
  public:
    /// `text` is what the terminal that covers `textArea` shows.
    SoakRounds(journeys::Session& session, journeys::Area textArea, std::string text,
               std::uint32_t seed);

    /// Makes the folders and gives the settings with which pictures go to `pictures`.
    static nlohmann::json prepare(const std::filesystem::path& home,
                                  const std::filesystem::path& pictures);

    /// One round of the kind whose turn it is.
    void next();
    /// A region and a text that are the same each time, on the arrangement of the start: what the
    /// program holds after them can be compared. They are rounds of their own.
    void bringToRest();
    /// How many rounds there were of each kind so far.
    [[nodiscard]] const std::map<Kind, std::size_t>& rounds() const { return rounds_; }
    /// The pictures and texts that were due so far.
    [[nodiscard]] std::size_t deliveries() const { return regions_ + windows_ + texts_; }

  private:
    void carryOut(Kind kind);
    void planBlock();
    void openOverlay();
    void takeRegion(const journeys::Area& area);
    void takeWindow();
    void takeText();
    void cancelDrag();
    void reopen();
    void changeSettings();
    void openSettingsWindow();
    void changeDisplays();
    void changeCompositor();

    journeys::Area randomRegion();
    /// The picture that was saved last, which the clipboard has too; decodeAndRemove.
    journeys::Picture takeSavedPicture(const std::string& path);
    /// The file must be alone in its folder.
    static journeys::Picture decodeAndRemove(const std::filesystem::path& path);
    void waitForWallpaper();
    void expectCounts();

    journeys::Session& session_;
    journeys::Area textArea_;
    std::string text_;
    journeys::Picture terminal_;
    std::mt19937 random_;
    desktop::TestWindow window_;
    LogFollower log_;
    LogFollower notifications_;
    std::vector<Kind> planned_;
    std::size_t changes_ = 0;
    std::map<Kind, std::size_t> rounds_;
    std::deque<Kind> latest_;
    std::size_t regions_ = 0;
    std::size_t windows_ = 0;
    std::size_t texts_ = 0;
    bool hasSecondDisplay_ = hasDummyServer();
    bool hasCompositor_ = false;
    std::vector<std::filesystem::path> folders_;
    std::filesystem::path folder_;
};

}  // namespace soak
