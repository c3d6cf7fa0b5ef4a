#include "platform/x11/x11_displays.h"

#include <xcb/randr.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/x11/icc_profile.h"

namespace platform::x11 {

namespace {

/// Larger profiles, which no monitor has, are not read.
constexpr std::uint32_t maximumProfileWords = 1U << 20U;

bool isSamePlace(const NativeDisplay& first, const NativeDisplay& second) {
    return first.id == second.id && first.native == second.native && first.scale == second.scale &&
           first.role == second.role;
}

/// A name stands for one profile: two monitors of one model often have profiles that differ and
/// call themselves the same.
void tellApart(std::vector<NativeDisplay>& displays) {
    for (auto display = displays.begin(); display != displays.end(); ++display) {
        const bool isTaken = std::any_of(displays.begin(), display, [&](const auto& other) {
            return display->colorSpace && other.colorSpace &&
                   other.colorSpace->name == display->colorSpace->name &&
                   other.colorSpace->iccProfile != display->colorSpace->iccProfile;
        });
        if (isTaken) {
            display->colorSpace = std::make_shared<const base::ColorSpace>(
                base::ColorSpace{display->colorSpace->name + " (" + display->name + ")",
                                 display->colorSpace->iccProfile});
        }
    }
}

bool isSameArrangement(const DisplayLayout& first, const DisplayLayout& second) {
    return std::equal(first.displays().begin(), first.displays().end(), second.displays().begin(),
                      second.displays().end(), isSamePlace);
}

}  // namespace

X11Displays::X11Displays(Connection& connection, base::MainQueue& mainQueue,
                         ScaleOfMonitor scaleOfMonitor)
    : connection_(connection),
      mainQueue_(mainQueue),
      scaleOfMonitor_(std::move(scaleOfMonitor)),
      monitors_(connection) {
    if (!monitors_.hasRandr()) {
        return;
    }
    firstRandrEvent_ = connection.firstEvent(xcb_randr_id);
    xcb_randr_select_input(connection.get(), connection.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    subscription_ =
        connection.subscribe([this](const xcb_generic_event_t& event) { return handle(event); });
}

std::vector<base::Screen> X11Displays::screens() {
    return readLayout().screens();
}

void X11Displays::setChangeHandler(std::function<void()> handler) {
    changeHandler_ = std::move(handler);
    announced_ = layout();
}

const DisplayLayout& X11Displays::layout() {
    return freshness_ == Freshness::fresh ? layout_ : readLayout();
}

const DisplayLayout& X11Displays::readLayout() {
    layout_ = read();
    freshness_ = Freshness::fresh;
    return layout_;
}

DisplayLayout X11Displays::read() {
    monitors_.ask();
    std::vector<ProfileRequest> requests;
    for (std::size_t index = 0; index < profileCount_; ++index) {
        requests.push_back(askForProfile(index));
    }
    const std::vector<Monitor> monitors = monitors_.read();
    for (const Monitor& monitor : monitors) {
        while (requests.size() <= monitor.index) {
            requests.push_back(askForProfile(requests.size()));
        }
    }
    std::vector<std::shared_ptr<const base::ColorSpace>> profiles(requests.size());
    for (std::size_t index = 0; index < requests.size(); ++index) {
        const auto monitor = std::find_if(monitors.begin(), monitors.end(),
                                          [&](const Monitor& one) { return one.index == index; });
        profiles[index] =
            readProfile(requests[index], monitor == monitors.end() ? "" : monitor->name);
    }
    profileCount_ = std::max<std::size_t>(monitors.empty() ? 1 : monitors.back().index + 1, 1);

    std::vector<NativeDisplay> displays;
    displays.reserve(monitors.size());
    for (const Monitor& monitor : monitors) {
        displays.push_back({monitor.id, monitor.name, monitor.native, scaleOf(monitor.name),
                            monitor.role, profiles[monitor.index]});
    }
    tellApart(displays);
    return DisplayLayout(std::move(displays));
}

X11Displays::ProfileRequest X11Displays::askForProfile(std::size_t index) {
    const std::string property =
        index == 0 ? "_ICC_PROFILE" : "_ICC_PROFILE_" + std::to_string(index);
    return {xcb_get_property(connection_.get(), 0, connection_.root(), connection_.atom(property),
                             XCB_GET_PROPERTY_TYPE_ANY, 0, maximumProfileWords)};
}

std::shared_ptr<const base::ColorSpace> X11Displays::readProfile(ProfileRequest request,
                                                                 const std::string& name) {
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_.get(), request.cookie, nullptr));
    if (!reply || reply->format != 8 || reply->bytes_after != 0) {
        return nullptr;
    }
    const auto* bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
    auto profile = checkedIccProfile({bytes, bytes + xcb_get_property_value_length(reply.get())});
    if (!profile) {
        return nullptr;
    }
    std::string description = iccDescription(*profile);
    if (description.empty()) {
        description = "Profile of " + name;
    }
    return std::make_shared<const base::ColorSpace>(
        base::ColorSpace{std::move(description), std::move(*profile)});
}

double X11Displays::scaleOf(const std::string& monitorName) const {
    const double scale = scaleOfMonitor_(monitorName);
    // Below 1 a display would be larger in points than in pixels and reach into its neighbours,
    // whose origins are in pixels; a selection there was taken from the wrong one.
    return std::isfinite(scale) ? std::max(scale, 1.0) : 1.0;
}

Connection::EventVerdict X11Displays::handle(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7F;
    if (type != firstRandrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY &&
        type != firstRandrEvent_ + XCB_RANDR_NOTIFY) {
        return Connection::EventVerdict::pass;
    }
    freshness_ = Freshness::outdated;
    // One change comes as several events; all of them are here before the next turn.
    if (announcement_ == Announcement::none) {
        announcement_ = Announcement::queued;
        mainQueue_.post(alive_.guard([this] { announce(); }));
    }
    return Connection::EventVerdict::pass;
}

void X11Displays::announce() {
    announcement_ = Announcement::none;
    if (isSameArrangement(layout(), announced_)) {
        return;
    }
    announced_ = layout_;
    if (changeHandler_) {
        // By a copy, since the handler may set another one.
        const auto handler = changeHandler_;
        handler();
    }
}

}  // namespace platform::x11
