#include "platform/x11/decoration_source.h"

#include "platform/x11/compositor.h"
#include "platform/x11/window_property.h"

namespace platform::x11 {

DecorationSource decorationSource(Connection& connection) {
    if (!isCompositorRunning(connection)) {
        return DecorationSource::pixmap;
    }
    const auto manager = readNumber(
        connection, askForProperty(connection, connection.root(), "_NET_SUPPORTING_WM_CHECK"),
        XCB_ATOM_WINDOW);
    if (!manager) {
        return DecorationSource::pixmap;
    }
    const auto names = readTexts(connection, askForProperty(connection, *manager, "_NET_WM_NAME"));
    const bool isKWin = !names.empty() && names.front() == "KWin";
    return isKWin ? DecorationSource::screen : DecorationSource::pixmap;
}

}  // namespace platform::x11
