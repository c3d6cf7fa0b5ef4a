#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/alive.h"
#include "base/displays.h"
#include "base/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/display_layout.h"
#include "platform/x11/monitor_list.h"

namespace platform::x11 {

/// The displays of the X screen: places by RandR, scale factors by the toolkit, colour profiles by
/// the properties `_ICC_PROFILE` and `_ICC_PROFILE_n` of the root window. Main thread.
class X11Displays final : public base::Displays {
  public:
    /// Native pixels for each point of the monitor with the RandR name; what is less than 1 or no
    /// number counts as 1.
    using ScaleOfMonitor = std::function<double(const std::string& monitorName)>;

    /// The connection, whose events somebody dispatches, and the main queue outlive it.
    X11Displays(Connection& connection, base::MainQueue& mainQueue, ScaleOfMonitor scaleOfMonitor);

    [[nodiscard]] std::vector<base::Screen> screens() override;
    void setChangeHandler(std::function<void()> handler) override;

    /// The displays as they were last read; asks the server only after it has told of a change.
    [[nodiscard]] const DisplayLayout& layout();
    /// Read afresh: one round trip, one more for the name of each monitor that is new.
    const DisplayLayout& readLayout();

  private:
    enum class Freshness { fresh, outdated };
    enum class Announcement { none, queued };

    struct ProfileRequest {
        xcb_get_property_cookie_t cookie;
    };

    [[nodiscard]] ProfileRequest askForProfile(std::size_t index);
    [[nodiscard]] std::shared_ptr<const base::ColorSpace> readProfile(ProfileRequest request,
                                                                      const std::string& name);
    [[nodiscard]] double scaleOf(const std::string& monitorName) const;
    [[nodiscard]] DisplayLayout read();
    Connection::EventVerdict handle(const xcb_generic_event_t& event);
    void announce();

    Connection& connection_;
    base::MainQueue& mainQueue_;
    ScaleOfMonitor scaleOfMonitor_;
    MonitorReader monitors_;
    std::uint8_t firstRandrEvent_ = 0;
    DisplayLayout layout_;
    Freshness freshness_ = Freshness::outdated;
    /// What the change handler knows of.
    DisplayLayout announced_;
    Announcement announcement_ = Announcement::none;
    std::size_t profileCount_ = 1;
    std::function<void()> changeHandler_;
    Connection::Subscription subscription_;
    base::Alive alive_;
};

}  // namespace platform::x11
