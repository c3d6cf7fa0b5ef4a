#include "platform/x11/clipboard_manager.h"

#include <utility>

namespace platform::x11 {

ClipboardManager::ClipboardManager(Connection& connection, base::MainQueue& mainQueue,
                                   xcb_window_t window)
    : connection_(connection),
      mainQueue_(mainQueue),
      window_(window),
      selection_(connection.atom("CLIPBOARD_MANAGER")),
      saveTargets_(connection.atom("SAVE_TARGETS")),
      property_(connection.atom("_LUMAFRAME_SAVE_TARGETS")) {}

void ClipboardManager::save(const std::vector<xcb_atom_t>& targets, std::function<void()> done) {
    if (!waiting_.empty()) {
        waiting_.push_back(std::move(done));
        return;
    }
    if (!isRunning()) {
        done();
        return;
    }
    waiting_.push_back(std::move(done));
    ask(targets);
    mainQueue_.postAfter(patience, alive_.guard([this, attempt = attempt_] {
        if (attempt == attempt_) {
            finish();
        }
    }));
}

bool ClipboardManager::isRunning() const {
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection_.get(), xcb_get_selection_owner(connection_.get(), selection_), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void ClipboardManager::ask(const std::vector<xcb_atom_t>& targets) {
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_, property_, XCB_ATOM_ATOM,
                        32, static_cast<std::uint32_t>(targets.size()), targets.data());
    // The time of now: the manager may have started after the clipboard was taken.
    xcb_convert_selection(connection_.get(), window_, selection_, saveTargets_, property_,
                          connection_.serverTime());
    connection_.flush();
}

void ClipboardManager::handleEvent(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7F) != XCB_SELECTION_NOTIFY) {
        return;
    }
    const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
    if (answer.requestor == window_ && answer.selection == selection_ &&
        answer.target == saveTargets_) {
        finish();
    }
}

void ClipboardManager::finish() {
    ++attempt_;
    xcb_delete_property(connection_.get(), window_, property_);
    connection_.flush();
    // Taken out first: a caller may ask again, or end this object.
    const auto finished = std::exchange(waiting_, {});
    for (const auto& done : finished) {
        done();
    }
}

}  // namespace platform::x11
