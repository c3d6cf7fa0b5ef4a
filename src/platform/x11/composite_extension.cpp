#include "platform/x11/composite_extension.h"

#include <xcb/composite.h>

namespace platform::x11 {

bool announceComposite(Connection& connection) {
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_composite_id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    const auto version = xcb_composite_query_version(connection.get(), XCB_COMPOSITE_MAJOR_VERSION,
                                                     XCB_COMPOSITE_MINOR_VERSION);
    xcb_discard_reply(connection.get(), version.sequence);
    return true;
}

}  // namespace platform::x11
