#include "platform/x11/x11_key_monitor.h"

#include <utility>
#include <vector>

#include "platform/x11/key_map.h"

namespace platform::x11 {

namespace {

using shortcuts::KeyEventType;
using shortcuts::KeyVerdict;

std::uint32_t flagsOf(const ModifierMap& map, std::uint16_t state) {
    std::uint32_t flags = 0;
    const auto add = [&](ModifierMask mask, std::uint32_t flag) {
        if ((state & mask) != 0) {
            flags |= flag;
        }
    };
    add(XCB_MOD_MASK_LOCK, shortcuts::capsLockFlag);
    add(XCB_MOD_MASK_SHIFT, shortcuts::shiftFlag);
    add(XCB_MOD_MASK_CONTROL, shortcuts::controlFlag);
    add(map.option, shortcuts::optionFlag);
    add(map.command, shortcuts::commandFlag);
    return flags;
}

Connection::EventVerdict verdictOf(KeyVerdict verdict) {
    return verdict == KeyVerdict::swallow ? Connection::EventVerdict::consumed
                                          : Connection::EventVerdict::pass;
}

}  // namespace

class X11KeyMonitor::Installed final : public shortcuts::InstalledKeyMonitor {
  public:
    Installed(const std::shared_ptr<X11KeyMonitor*>& owner, MonitorID monitor)
        : owner_(owner), monitor_(monitor) {}
    ~Installed() override {
        if (const auto owner = owner_.lock()) {
            (*owner)->remove(monitor_);
        }
    }
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;

  private:
    std::weak_ptr<X11KeyMonitor*> owner_;
    MonitorID monitor_;
};

X11KeyMonitor::X11KeyMonitor(xcb_connection_t* toolkit, const KeyboardMapping& mapping,
                             base::MainQueue& mainQueue)
    : toolkit_(toolkit),
      mapping_(mapping),
      mainQueue_(mainQueue),
      self_(std::make_shared<X11KeyMonitor*>(this)) {}

X11KeyMonitor::~X11KeyMonitor() {
    letGo();
}

std::unique_ptr<shortcuts::InstalledKeyMonitor> X11KeyMonitor::install(Handler handler) {
    if (monitors_.empty()) {
        // Until now nobody has followed the focus.
        focusWindow_ = ownFocusWindow();
    }
    monitors_.emplace(++lastMonitor_, std::move(handler));
    follow();
    return std::make_unique<Installed>(self_, lastMonitor_);
}

void X11KeyMonitor::remove(MonitorID monitor) {
    monitors_.erase(monitor);
    follow();
}

Connection::EventVerdict X11KeyMonitor::handle(const xcb_generic_event_t& event) {
    // Compared whole: the type of an event that another program made up has one more bit.
    switch (event.response_type) {
        case XCB_KEY_PRESS:
            return handlePress(reinterpret_cast<const xcb_key_press_event_t&>(event),
                               event.full_sequence);
        case XCB_KEY_RELEASE:
            return handleRelease(reinterpret_cast<const xcb_key_release_event_t&>(event),
                                 event.full_sequence);
        case XCB_FOCUS_IN:
            handleFocusIn(reinterpret_cast<const xcb_focus_in_event_t&>(event));
            return Connection::EventVerdict::pass;
        case XCB_FOCUS_OUT:
            handleFocusOut(reinterpret_cast<const xcb_focus_out_event_t&>(event));
            return Connection::EventVerdict::pass;
        default:
            return Connection::EventVerdict::pass;
    }
}

Connection::EventVerdict X11KeyMonitor::handlePress(const xcb_key_press_event_t& event,
                                                    std::uint32_t fullSequence) {
    if (isForSomebodyElse(fullSequence)) {
        return Connection::EventVerdict::consumed;
    }
    if (swallowed_.isRepeat(event, fullSequence)) {
        swallowed_.add(event.detail);
        return Connection::EventVerdict::consumed;
    }
    const auto code = virtualKeyCodeOf(event.detail);
    if (monitors_.empty() || !code) {
        return Connection::EventVerdict::pass;
    }
    if (isModifierKey(*code)) {
        return verdictOf(tellFlags(*code));
    }
    // Before the handler is asked: it may remove the last monitor, and with this key down the
    // keyboard is not let go.
    swallowed_.add(event.detail);
    const auto verdict =
        ask({KeyEventType::keyDown, *code, flagsOf(mapping_.modifiers(), event.state)});
    if (verdict == KeyVerdict::pass) {
        swallowed_.remove(event.detail);
        follow();
    }
    return verdictOf(verdict);
}

Connection::EventVerdict X11KeyMonitor::handleRelease(const xcb_key_release_event_t& event,
                                                      std::uint32_t fullSequence) {
    if (isForSomebodyElse(fullSequence)) {
        return Connection::EventVerdict::pass;
    }
    if (swallowed_.release(event.detail, event.time)) {
        mainQueue_.post([weak = std::weak_ptr(self_)] {
            if (const auto self = weak.lock()) {
                (*self)->settle();
            }
        });
        return Connection::EventVerdict::consumed;
    }
    const auto code = virtualKeyCodeOf(event.detail);
    if (monitors_.empty() || !code || !isModifierKey(*code)) {
        return Connection::EventVerdict::pass;
    }
    return verdictOf(tellFlags(*code));
}

void X11KeyMonitor::handleFocusIn(const xcb_focus_in_event_t& event) {
    if (event.detail == XCB_NOTIFY_DETAIL_POINTER || event.mode == XCB_NOTIFY_MODE_GRAB) {
        return;
    }
    if (event.mode == XCB_NOTIFY_MODE_UNGRAB) {
        // Somebody else had the keyboard, and our own grab, if there was one, is over since then.
        grabWindow_ = XCB_WINDOW_NONE;
    }
    focusWindow_ = event.event;
    follow();
}

void X11KeyMonitor::handleFocusOut(const xcb_focus_out_event_t& event) {
    if (event.detail == XCB_NOTIFY_DETAIL_POINTER || event.mode == XCB_NOTIFY_MODE_GRAB ||
        event.event != focusWindow_) {
        return;
    }
    focusWindow_ = XCB_WINDOW_NONE;
    // Their releases go to somebody else from here on.
    swallowed_.clear();
    follow();
}

bool X11KeyMonitor::isForSomebodyElse(std::uint32_t fullSequence) const {
    return focusWindow_ == XCB_WINDOW_NONE && lateUngrab_ &&
           static_cast<std::int32_t>(fullSequence - *lateUngrab_) < 0;
}

shortcuts::KeyVerdict X11KeyMonitor::ask(const shortcuts::KeyEvent& event) {
    // By number and with a copy: a handler may end any monitor, its own too.
    std::vector<MonitorID> newestFirst;
    for (const auto& [monitor, handler] : monitors_) {
        newestFirst.push_back(monitor);
    }
    for (const MonitorID monitor : newestFirst) {
        const auto entry = monitors_.find(monitor);
        if (entry == monitors_.end()) {
            continue;
        }
        const Handler handler = entry->second;
        if (handler(event) == KeyVerdict::swallow) {
            return KeyVerdict::swallow;
        }
    }
    return KeyVerdict::pass;
}

shortcuts::KeyVerdict X11KeyMonitor::tellFlags(std::uint32_t keyCode) {
    // The event has the modifiers of before it, and what a key changes is the layout's affair.
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(toolkit_)).data;
    const Reply<xcb_query_pointer_reply_t> now(
        xcb_query_pointer_reply(toolkit_, xcb_query_pointer(toolkit_, screen->root), nullptr));
    const std::uint16_t state = now ? now->mask : std::uint16_t{0};
    return ask({KeyEventType::flagsChanged, keyCode, flagsOf(mapping_.modifiers(), state)});
}

void X11KeyMonitor::follow() {
    const bool hasFocus = focusWindow_ != XCB_WINDOW_NONE;
    if (hasFocus && !monitors_.empty()) {
        if (grabWindow_ == focusWindow_) {
            return;
        }
        const auto cookie = xcb_grab_keyboard(toolkit_, 0, focusWindow_, XCB_CURRENT_TIME,
                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const Reply<xcb_grab_keyboard_reply_t> reply(
            xcb_grab_keyboard_reply(toolkit_, cookie, nullptr));
        if (reply && reply->status == XCB_GRAB_STATUS_SUCCESS) {
            grabWindow_ = focusWindow_;
        }
    } else if (grabWindow_ != XCB_WINDOW_NONE && !swallowed_.isAnyDown()) {
        const auto ungrab = xcb_ungrab_keyboard(toolkit_, XCB_CURRENT_TIME);
        xcb_flush(toolkit_);
        grabWindow_ = XCB_WINDOW_NONE;
        lateUngrab_ = hasFocus ? std::nullopt : std::optional(ungrab.sequence);
    }
}

void X11KeyMonitor::letGo() {
    if (grabWindow_ == XCB_WINDOW_NONE) {
        return;
    }
    grabWindow_ = XCB_WINDOW_NONE;
    xcb_ungrab_keyboard(toolkit_, XCB_CURRENT_TIME);
    const Reply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(toolkit_, xcb_get_input_focus(toolkit_), nullptr));
}

void X11KeyMonitor::settle() {
    const auto cookie = xcb_query_keymap(toolkit_);
    const Reply<xcb_query_keymap_reply_t> keymap(xcb_query_keymap_reply(toolkit_, cookie, nullptr));
    std::bitset<256> down;
    for (std::size_t keycode = 0; keymap && keycode < down.size(); ++keycode) {
        down.set(keycode, ((keymap->keys[keycode / 8] >> (keycode % 8)) & 1) != 0);
    }
    swallowed_.settle(down, cookie.sequence);
    follow();
}

xcb_window_t X11KeyMonitor::ownFocusWindow() const {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(toolkit_, xcb_get_input_focus(toolkit_), nullptr));
    const auto* setup = xcb_get_setup(toolkit_);
    const bool isOwn =
        reply && (reply->focus & ~setup->resource_id_mask) == setup->resource_id_base;
    return isOwn ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
}

}  // namespace platform::x11
