#include "platform/x11/window_kind.h"

#include <array>
#include <utility>

namespace platform::x11 {

namespace {

constexpr std::array<std::pair<const char*, WindowKind>, 14> kinds{{
    {"_NET_WM_WINDOW_TYPE_NORMAL", WindowKind::ordinary},
    {"_NET_WM_WINDOW_TYPE_DIALOG", WindowKind::ordinary},
    {"_NET_WM_WINDOW_TYPE_UTILITY", WindowKind::ordinary},
    {"_NET_WM_WINDOW_TYPE_TOOLBAR", WindowKind::ordinary},
    {"_NET_WM_WINDOW_TYPE_SPLASH", WindowKind::ordinary},
    {"_NET_WM_WINDOW_TYPE_DESKTOP", WindowKind::desktop},
    {"_NET_WM_WINDOW_TYPE_DOCK", WindowKind::dock},
    {"_NET_WM_WINDOW_TYPE_MENU", WindowKind::menu},
    {"_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", WindowKind::menu},
    {"_NET_WM_WINDOW_TYPE_POPUP_MENU", WindowKind::menu},
    {"_NET_WM_WINDOW_TYPE_TOOLTIP", WindowKind::menu},
    {"_NET_WM_WINDOW_TYPE_COMBO", WindowKind::menu},
    {"_NET_WM_WINDOW_TYPE_DND", WindowKind::dragImage},
    {"_NET_WM_WINDOW_TYPE_NOTIFICATION", WindowKind::notification},
}};

}  // namespace

WindowKind kindOf(Connection& connection, const std::vector<std::uint32_t>& types,
                  Management management) {
    for (const std::uint32_t type : types) {
        for (const auto& [name, kind] : kinds) {
            if (type != XCB_ATOM_NONE && type == connection.atom(name)) {
                const bool isOnlyUnmanaged =
                    kind == WindowKind::ordinary && management == Management::unmanaged;
                return isOnlyUnmanaged ? WindowKind::unmanaged : kind;
            }
        }
    }
    return management == Management::unmanaged ? WindowKind::unmanaged : WindowKind::ordinary;
}

int layerOf(WindowKind kind) {
    switch (kind) {
        case WindowKind::ordinary:
            return 0;
        case WindowKind::desktop:
            return -1;
        case WindowKind::dock:
            return 20;
        case WindowKind::notification:
            return 25;
        case WindowKind::menu:
        case WindowKind::unmanaged:
            return 101;
        case WindowKind::dragImage:
            return 500;
        case WindowKind::overlay:
            return 1000;
    }
    return 0;
}

}  // namespace platform::x11
