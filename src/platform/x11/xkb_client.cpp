#include "platform/x11/xkb_client.h"

// The header was written for C and has members named like the C++ keyword.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicitly  // NOLINT(readability-identifier-naming)
#include <xcb/xkb.h>
#undef explicit
#if defined(__clang__)
#pragma clang diagnostic pop
#endif

namespace platform::x11 {

std::uint8_t becomeXkbClient(Connection& connection) {
    const std::uint8_t firstEvent = connection.firstEvent(xcb_xkb_id);
    if (firstEvent == 0) {
        return 0;
    }
    auto* server = connection.get();
    const auto version =
        xcb_xkb_use_extension(server, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    constexpr std::uint32_t detectableRepeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const auto flags = xcb_xkb_per_client_flags(server, XCB_XKB_ID_USE_CORE_KBD, detectableRepeat,
                                                detectableRepeat, 0, 0, 0);
    constexpr std::uint16_t changes =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t mapParts =
        XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
    xcb_xkb_select_events(server, XCB_XKB_ID_USE_CORE_KBD, changes, 0, changes, mapParts, mapParts,
                          nullptr);
    const Reply<xcb_xkb_use_extension_reply_t> versionReply(
        xcb_xkb_use_extension_reply(server, version, nullptr));
    const Reply<xcb_xkb_per_client_flags_reply_t> flagsReply(
        xcb_xkb_per_client_flags_reply(server, flags, nullptr));
    return versionReply && versionReply->supported != 0 && flagsReply ? firstEvent
                                                                      : std::uint8_t{0};
}

bool isXkbMappingChange(const xcb_generic_event_t& event) {
    // Every event of the extension has one number; the second byte tells them apart.
    return event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event.pad0 == XCB_XKB_MAP_NOTIFY;
}

}  // namespace platform::x11
