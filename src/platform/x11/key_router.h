#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

#include "base/result.h"
#include "overlay/keyboard_tap.h"
#include "platform/x11/connection.h"
#include "platform/x11/held_keys.h"
#include "platform/x11/hot_key_table.h"
#include "platform/x11/keyboard_mapping.h"

namespace platform::x11 {

/// Hands each press that this program's grabs bring to the one it belongs to: a registered hot key
/// first, then the taps, the newest first. Main thread.
///
/// A grab of the keyboard keeps the passive grabs of the same program from firing, so the hot keys
/// are recognised here, in one place, whichever grab a press came through.
class KeyRouter {
  public:
    using HotKeyListener = std::function<void(shortcuts::EventHotKeyID)>;
    using TapID = std::uint64_t;

    /// Both must outlive the router.
    KeyRouter(Connection& connection, const KeyboardMapping& mapping);
    /// Gives the keyboard back.
    ~KeyRouter();
    KeyRouter(const KeyRouter&) = delete;
    KeyRouter& operator=(const KeyRouter&) = delete;

    [[nodiscard]] HotKeyTable& hotKeys() { return hotKeys_; }
    /// `listener` is called once for each press of a hot key.
    void onHotKey(HotKeyListener listener);

    /// `listener` is called before the keyboard is asked for: it lets go what this program itself
    /// holds of it elsewhere.
    void beforeGrab(std::function<void()> listener) { beforeGrab_ = std::move(listener); }

    /// A tap will be added in this turn: takes the keyboard for it, before the server is told to do
    /// what takes longer.
    void anticipateTap() { (void)takeKeyboard(); }
    /// Takes the keyboard (one round trip, unless it is ours) and reports its key-downs to
    /// `handler`. Fails while another program holds it.
    base::Result<TapID> addTap(overlay::KeyboardTap::Handler handler);
    /// Nothing is reported to the tap from here on. The keyboard stays taken until
    /// `giveBackWithoutTaps`.
    void removeTap(TapID tap);
    /// Gives the keyboard back unless a tap needs it. A hot key that is still down then keeps it
    /// until it is up, as it would have without a tap: its repeats must reach no one.
    ///
    /// In a later turn than the removing: an overlay that is opened again at once keeps the
    /// keyboard, where a key released between two grabs would seem to be held for ever.
    void giveBackWithoutTaps();
    /// Whether a tap could be added now. A round trip; changes nothing.
    bool isKeyboardAvailable();

  private:
    /// How the keyboard is ours.
    enum class Grab {
        none,
        /// Through a hot key's own grab, until `activatingKey_` is up.
        passive,
        /// For the taps.
        active,
        /// The taps are gone, a hot key is still down.
        releasing,
    };

    Connection::EventVerdict handle(const xcb_generic_event_t& event);
    void handlePress(const xcb_key_press_event_t& event);
    void handleRelease(const xcb_key_release_event_t& event);
    void report(xcb_keycode_t keycode);
    void endPassiveGrab();
    void giveBackUnlessHotKeyHeld();
    void giveBack();
    [[nodiscard]] bool isFromEndedGrab(const xcb_generic_event_t& event) const;
    /// For the taps; whether it is ours now.
    bool takeKeyboard();
    /// The server's status of a grab of the keyboard.
    std::uint8_t grab();
    void forgetKeysThatAreUp();

    Connection& connection_;
    const KeyboardMapping& mapping_;
    HotKeyTable hotKeys_;
    HotKeyListener hotKeyListener_;
    std::function<void()> beforeGrab_;
    /// The newest first.
    std::map<TapID, overlay::KeyboardTap::Handler, std::greater<>> taps_;
    TapID lastTap_ = 0;
    HeldKeys heldKeys_;
    Grab grab_ = Grab::none;
    xcb_keycode_t activatingKey_ = 0;
    /// The request that ended the last active grab.
    std::uint32_t lastUngrab_ = 0;
    Connection::Subscription subscription_;
};

}  // namespace platform::x11
