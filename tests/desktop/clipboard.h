#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "desktop/wait.h"
#include "desktop/x_client.h"

namespace desktop {

/// The CLIPBOARD as a pasting program sees it.
class Clipboard {
  public:
    explicit Clipboard(const std::string& displayName);

    [[nodiscard]] bool isOwned() const { return client_.selectionOwner("CLIPBOARD") != 0; }
    /// The names of the offered targets, in the owner's order; empty when nobody owns it.
    std::vector<std::string> targets();
    /// The contents as `target`, INCR transfers included; nothing when the owner refuses or does
    /// not answer within `limit`.
    std::optional<std::vector<std::uint8_t>> read(const std::string& target,
                                                  std::chrono::milliseconds limit = defaultLimit);
    /// Whether the last `read` came in pieces.
    [[nodiscard]] bool lastReadWasIncremental() const { return wasIncremental_; }

  private:
    std::vector<std::uint8_t> takeProperty(xcb_atom_t& type);
    std::optional<std::vector<std::uint8_t>> readPieces(std::chrono::milliseconds limit);
    bool waitForNewValue(std::chrono::milliseconds limit);

    XClient client_;
    xcb_window_t window_;
    xcb_atom_t property_;
    bool wasIncremental_ = false;
};

}  // namespace desktop
