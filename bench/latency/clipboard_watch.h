#pragma once

#include <cstddef>
#include <optional>

#include "desktop/x_client.h"
#include "latency/watch.h"

namespace latency {

/// A pasting program that waits: as soon as somebody takes the CLIPBOARD it asks for image/png,
/// and notes when the whole picture has come.
class ClipboardWatch final : public Watch {
  public:
    explicit ClipboardWatch(const std::string& displayName);

    [[nodiscard]] int descriptor() const override;
    void drain() override;

    /// Forgets what it has seen.
    void restart();
    [[nodiscard]] std::optional<double> ownedAt() const { return ownedAt_; }
    [[nodiscard]] std::optional<double> receivedAt() const { return receivedAt_; }
    [[nodiscard]] std::size_t receivedBytes() const { return receivedBytes_; }

  private:
    enum class Transfer { none, asked, inPieces };
    void handleOwner(xcb_window_t owner);
    void handleAnswer();
    void handlePiece();
    [[nodiscard]] desktop::Reply<xcb_get_property_reply_t> takeProperty();

    desktop::XClient client_;
    xcb_window_t window_;
    xcb_atom_t clipboard_;
    xcb_atom_t png_;
    xcb_atom_t incremental_;
    xcb_atom_t property_;
    std::uint8_t selectionNotify_ = 0;
    Transfer transfer_ = Transfer::none;
    std::optional<double> ownedAt_;
    std::optional<double> receivedAt_;
    std::size_t receivedBytes_ = 0;
};

}  // namespace latency
