#include "platform/x11/render_formats.h"

namespace platform::x11 {

namespace {

bool isArgb(const xcb_render_pictforminfo_t& format) {
    const auto& direct = format.direct;
    return format.type == XCB_RENDER_PICT_TYPE_DIRECT && format.depth == 32 &&
           direct.alpha_mask == 0xFF && direct.alpha_shift == 24 && direct.red_mask == 0xFF &&
           direct.red_shift == 16 && direct.green_mask == 0xFF && direct.green_shift == 8 &&
           direct.blue_mask == 0xFF && direct.blue_shift == 0;
}

xcb_render_pictformat_t findArgb(const xcb_render_query_pict_formats_reply_t& reply) {
    auto formats = xcb_render_query_pict_formats_formats_iterator(&reply);
    for (; formats.rem > 0; xcb_render_pictforminfo_next(&formats)) {
        if (isArgb(*formats.data)) {
            return formats.data->id;
        }
    }
    return 0;
}

/// Calls `each` for every visual of the connection's screen.
template <typename Each>
void forEachVisual(const xcb_render_query_pict_formats_reply_t& reply, int screenNumber,
                   Each each) {
    auto screens = xcb_render_query_pict_formats_screens_iterator(&reply);
    for (; screens.rem > 0 && screenNumber > 0; --screenNumber) {
        xcb_render_pictscreen_next(&screens);
    }
    if (screens.rem == 0) {
        return;
    }
    auto depths = xcb_render_pictscreen_depths_iterator(screens.data);
    for (; depths.rem > 0; xcb_render_pictdepth_next(&depths)) {
        auto visuals = xcb_render_pictdepth_visuals_iterator(depths.data);
        for (; visuals.rem > 0; xcb_render_pictvisual_next(&visuals)) {
            each(*visuals.data);
        }
    }
}

}  // namespace

base::Result<RenderFormats> RenderFormats::query(Connection& connection) {
    const base::Error error{base::ErrorKind::unavailable,
                            "This X server cannot blend: it has no RENDER extension."};
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_render_id);
    if (extension == nullptr || extension->present == 0) {
        return error;
    }
    // The server answers the other requests only after it was told the version.
    const auto versionCookie = xcb_render_query_version(connection.get(), 0, 11);
    const auto formatsCookie = xcb_render_query_pict_formats(connection.get());
    const Reply<xcb_render_query_version_reply_t> version(
        xcb_render_query_version_reply(connection.get(), versionCookie, nullptr));
    const Reply<xcb_render_query_pict_formats_reply_t> reply(
        xcb_render_query_pict_formats_reply(connection.get(), formatsCookie, nullptr));
    if (!version || !reply) {
        return error;
    }
    RenderFormats formats;
    formats.argb = findArgb(*reply);
    forEachVisual(*reply, connection.screenNumber(), [&](const xcb_render_pictvisual_t& visual) {
        if (visual.visual == connection.screen().root_visual) {
            formats.root = visual.format;
        } else if (visual.format == formats.argb && formats.argbVisual == 0) {
            formats.argbVisual = visual.visual;
        }
    });
    if (formats.argb == 0 || formats.argbVisual == 0 || formats.root == 0) {
        return error;
    }
    return formats;
}

}  // namespace platform::x11
