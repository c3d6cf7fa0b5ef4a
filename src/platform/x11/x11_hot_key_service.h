#pragma once

#include <functional>
#include <map>
#include <vector>

#include "base/alive.h"
#include "base/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/key_grab.h"
#include "platform/x11/key_router.h"
#include "platform/x11/keyboard_mapping.h"
#include "shortcuts/hot_key_service.h"

namespace platform::x11 {

/// Hot keys as passive grabs on the root window, one for each set of locks that may be on. Main
/// thread.
///
/// Statuses: `paramErr` for a key or modifier that the keyboard does not have,
/// `eventHotKeyExistsErr` for a combination that is taken. The server would accept a combination of
/// this program twice, and one ungrab would then end both, so the second one is refused here.
///
/// A combination that is unregistered is given back in a later turn of the main queue: one that is
/// registered again before, as at each change of a setting, stays grabbed all the while, and no
/// press is lost to the program below.
class X11HotKeyService final : public shortcuts::HotKeyService {
  public:
    /// All must outlive the service, which is the one listener of `mapping` and `router`.
    X11HotKeyService(Connection& connection, KeyboardMapping& mapping, KeyRouter& router,
                     base::MainQueue& mainQueue);
    ~X11HotKeyService() override;
    X11HotKeyService(const X11HotKeyService&) = delete;
    X11HotKeyService& operator=(const X11HotKeyService&) = delete;

    /// At most one round trip.
    Registration<shortcuts::HotKeyRef> registerHotKey(std::uint32_t keyCode,
                                                      std::uint32_t modifiers,
                                                      shortcuts::EventHotKeyID hotKeyID) override;
    shortcuts::OSStatus unregisterHotKey(shortcuts::HotKeyRef ref) override;
    Registration<shortcuts::EventHandlerRef> installEventHandler(Handler handler) override;
    shortcuts::OSStatus removeEventHandler(shortcuts::EventHandlerRef ref) override;

  private:
    void report(shortcuts::EventHotKeyID hotKeyID);
    void grabAnew();
    GrabOutcome take(const KeyGrab& grab);
    void giveBackLater(KeyGrab grab);
    void giveBack();

    Connection& connection_;
    KeyboardMapping& mapping_;
    KeyRouter& router_;
    base::MainQueue& mainQueue_;
    /// Unregistered and not given back yet.
    std::vector<KeyGrab> leaving_;
    /// The modifiers that the grabs of now were made with.
    ModifierMap grabbedWith_;
    /// The newest first.
    std::map<shortcuts::EventHandlerRef, Handler, std::greater<>> handlers_;
    shortcuts::EventHandlerRef lastHandler_ = 0;
    base::Alive alive_;
};

}  // namespace platform::x11
