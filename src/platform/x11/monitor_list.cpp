#include "platform/x11/monitor_list.h"

#include <xcb/randr.h>

#include <algorithm>
#include <utility>

#include "platform/x11/native_region.h"

namespace platform::x11 {

namespace {

std::string outputName(Connection& connection, xcb_randr_output_t output) {
    const Reply<xcb_randr_get_output_info_reply_t> reply(xcb_randr_get_output_info_reply(
        connection.get(), xcb_randr_get_output_info(connection.get(), output, XCB_CURRENT_TIME),
        nullptr));
    if (!reply) {
        return {};
    }
    return {reinterpret_cast<const char*>(xcb_randr_get_output_info_name(reply.get())),
            static_cast<std::size_t>(xcb_randr_get_output_info_name_length(reply.get()))};
}

bool holds(const NativeRect& outer, const NativeRect& inner) {
    return outer.x <= inner.x && outer.y <= inner.y &&
           outer.x + outer.width >= inner.x + inner.width &&
           outer.y + outer.height >= inner.y + inner.height;
}

}  // namespace

MonitorReader::MonitorReader(Connection& connection) : connection_(connection) {
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_randr_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    const Reply<xcb_randr_query_version_reply_t> version(xcb_randr_query_version_reply(
        connection.get(), xcb_randr_query_version(connection.get(), 1, 5), nullptr));
    if (!version) {
        return;
    }
    const auto minor = version->major_version > 1 ? 5U : version->minor_version;
    if (minor >= 5) {
        support_ = Support::monitors;
    } else if (minor >= 3) {
        support_ = Support::controllers;
    }
}

void MonitorReader::ask() {
    // Asked for each time: the connection only knows how large the screen was at the start.
    screenSequence_ = xcb_get_geometry(connection_.get(), connection_.root()).sequence;
    switch (support_) {
        case Support::none:
            break;
        case Support::controllers:
            sequence_ =
                xcb_randr_get_screen_resources_current(connection_.get(), connection_.root())
                    .sequence;
            break;
        case Support::monitors:
            sequence_ = xcb_randr_get_monitors(connection_.get(), connection_.root(), 1).sequence;
            break;
    }
}

std::vector<Monitor> MonitorReader::read() {
    std::vector<Monitor> monitors;
    switch (support_) {
        case Support::none:
            break;
        case Support::controllers:
            monitors = readControllers();
            break;
        case Support::monitors:
            monitors = readMonitors();
            break;
    }
    if (const auto screen = readScreenSize()) {
        for (Monitor& monitor : monitors) {
            monitor.native = intersection(monitor.native, *screen);
        }
        std::erase_if(monitors, [](const Monitor& monitor) { return monitor.native.isEmpty(); });
        if (monitors.empty()) {
            monitors = {{connection_.root(), "screen", *screen, DisplayRole::primary, 0}};
        }
    }
    return mergeMirrored(std::move(monitors));
}

const std::string& MonitorReader::nameOf(xcb_atom_t atom) {
    const auto known = names_.find(atom);
    if (known != names_.end()) {
        return known->second;
    }
    const Reply<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(
        connection_.get(), xcb_get_atom_name(connection_.get(), atom), nullptr));
    std::string name;
    if (reply) {
        name.assign(xcb_get_atom_name_name(reply.get()),
                    static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
    }
    return names_.emplace(atom, std::move(name)).first->second;
}

std::vector<Monitor> MonitorReader::readMonitors() {
    const Reply<xcb_randr_get_monitors_reply_t> reply(
        xcb_randr_get_monitors_reply(connection_.get(), {sequence_}, nullptr));
    std::vector<Monitor> monitors;
    if (!reply) {
        return monitors;
    }
    auto entries = xcb_randr_get_monitors_monitors_iterator(reply.get());
    for (std::size_t index = 0; entries.rem > 0; xcb_randr_monitor_info_next(&entries), ++index) {
        const auto& entry = *entries.data;
        if (entry.width == 0 || entry.height == 0) {
            continue;
        }
        monitors.push_back({entry.name,
                            nameOf(entry.name),
                            {entry.x, entry.y, entry.width, entry.height},
                            entry.primary != 0 ? DisplayRole::primary : DisplayRole::secondary,
                            index});
    }
    return monitors;
}

std::vector<Monitor> MonitorReader::readControllers() {
    const auto primaryCookie = xcb_randr_get_output_primary(connection_.get(), connection_.root());
    const Reply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(connection_.get(), {sequence_}, nullptr));
    const Reply<xcb_randr_get_output_primary_reply_t> primary(
        xcb_randr_get_output_primary_reply(connection_.get(), primaryCookie, nullptr));
    std::vector<Monitor> monitors;
    if (!resources) {
        return monitors;
    }
    const auto* controllers = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    const int count = xcb_randr_get_screen_resources_current_crtcs_length(resources.get());
    for (int i = 0; i < count; ++i) {
        const Reply<xcb_randr_get_crtc_info_reply_t> info(xcb_randr_get_crtc_info_reply(
            connection_.get(),
            xcb_randr_get_crtc_info(connection_.get(), controllers[i], XCB_CURRENT_TIME), nullptr));
        if (!info || info->mode == 0 || info->num_outputs == 0) {
            continue;
        }
        const auto* outputs = xcb_randr_get_crtc_info_outputs(info.get());
        const bool isPrimary = primary && std::find(outputs, outputs + info->num_outputs,
                                                    primary->output) != outputs + info->num_outputs;
        monitors.push_back({controllers[i],
                            outputName(connection_, outputs[0]),
                            {info->x, info->y, info->width, info->height},
                            isPrimary ? DisplayRole::primary : DisplayRole::secondary,
                            monitors.size()});
    }
    return monitors;
}

std::optional<NativeRect> MonitorReader::readScreenSize() {
    const Reply<xcb_get_geometry_reply_t> root(
        xcb_get_geometry_reply(connection_.get(), {screenSequence_}, nullptr));
    if (!root) {
        return std::nullopt;
    }
    return NativeRect{0, 0, root->width, root->height};
}

std::vector<Monitor> mergeMirrored(std::vector<Monitor> monitors) {
    std::vector<Monitor> merged;
    // The largest first, so that each one meets whoever holds it; equal ones stay in their order.
    std::stable_sort(monitors.begin(), monitors.end(), [](const auto& first, const auto& second) {
        return std::int64_t{first.native.width} * first.native.height >
               std::int64_t{second.native.width} * second.native.height;
    });
    for (Monitor& monitor : monitors) {
        const auto holder = std::find_if(merged.begin(), merged.end(), [&](const Monitor& other) {
            return holds(other.native, monitor.native);
        });
        if (holder == merged.end()) {
            merged.push_back(std::move(monitor));
        } else if (monitor.role == DisplayRole::primary) {
            holder->role = DisplayRole::primary;
        }
    }
    std::sort(merged.begin(), merged.end(),
              [](const auto& first, const auto& second) { return first.index < second.index; });
    return merged;
}

}  // namespace platform::x11
