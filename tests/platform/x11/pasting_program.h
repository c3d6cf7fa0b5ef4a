#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "desktop/x_client.h"

namespace pasteboard_test {

/// What became of one request for the clipboard's contents.
struct Paste {
    enum class State { waiting, refused, incremental, complete };
    State state = State::waiting;
    xcb_atom_t type = XCB_ATOM_NONE;
    int format = 0;
    std::vector<std::uint8_t> bytes;
    /// What the announcement of a transfer in pieces said.
    std::uint32_t announcedSize = 0;
    std::size_t pieceCount = 0;

    [[nodiscard]] bool isDecided() const {
        return state == State::refused || state == State::complete;
    }
};

/// Another program that asks for selections: any number of requests at once, each told by the
/// property that takes its answer. Works in steps, so that one thread can run it beside the owner.
class PastingProgram {
  public:
    enum class Appetite { takesPieces, leavesPieces };

    explicit PastingProgram(const std::string& displayName);

    void convert(const std::string& target, const std::string& property = "ANSWER",
                 xcb_timestamp_t time = XCB_CURRENT_TIME,
                 const std::string& selection = "CLIPBOARD");
    /// Names no property, as programs of the oldest kind do; the answer is filed under the target.
    void convertOldStyle(const std::string& target);
    /// One request for several targets, each with its property.
    void convertMultiple(const std::vector<std::pair<std::string, std::string>>& pairs);
    /// Sends a request event as it stands to `owner`.
    void sendRequest(xcb_window_t owner, const std::string& selection, const std::string& target);
    /// Handles every event that has arrived.
    void step();

    [[nodiscard]] const Paste& paste(const std::string& property = "ANSWER") {
        return pastes_[client_.atom(property)];
    }
    /// The contents as 32-bit numbers.
    std::vector<std::uint32_t> numbers(const std::string& property = "ANSWER");
    std::vector<std::string> names(const std::string& property = "ANSWER");
    /// The names that the last answer to `convertMultiple` holds, "" for none.
    [[nodiscard]] const std::vector<std::string>& answeredPairs() const { return answeredPairs_; }

    void setAppetite(Appetite appetite) { appetite_ = appetite; }
    void destroyWindow();
    [[nodiscard]] desktop::XClient& client() { return client_; }
    [[nodiscard]] xcb_window_t window() const { return window_; }

  private:
    struct Value {
        xcb_atom_t type = XCB_ATOM_NONE;
        int format = 0;
        std::vector<std::uint8_t> bytes;
    };
    Value take(xcb_atom_t property);
    void takeAnswer(xcb_atom_t property);
    void takePiece(xcb_atom_t property);
    void handleAnswer(const xcb_selection_notify_event_t& event);
    void handleMultiple();
    std::string nameOf(xcb_atom_t atom);

    desktop::XClient client_;
    xcb_window_t window_;
    Appetite appetite_ = Appetite::takesPieces;
    std::map<xcb_atom_t, Paste> pastes_;
    std::vector<std::string> answeredPairs_;
};

}  // namespace pasteboard_test
