#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "overlay/overlay_surface.h"

namespace contracts {

/// A desktop of one display with the makings of surfaces, and the hands of the person.
class OverlaySurfaceWorld {
  public:
    virtual ~OverlaySurfaceWorld() = default;
    virtual overlay::OverlaySurfaceFactory& factory() = 0;
    virtual base::Screen screen() = 0;
    // In view space, whole pixels; the button is pressed and released where the pointer is. What
    // they cause has been reported when they return.
    virtual void move(base::Point point) = 0;
    virtual void press(base::Point point) = 0;
    virtual void drag(base::Point point) = 0;
    virtual void release(base::Point point) = 0;
    virtual void tapSpace() = 0;
};

using MakeOverlaySurfaceWorld = std::function<std::unique_ptr<OverlaySurfaceWorld>()>;

/// Keeps what a surface reports: "down 10 20".
class ReportedInput final : public overlay::SurfaceInput {
  public:
    void mouseEntered() override {}
    void mouseExited() override {}
    void mouseMoved(const overlay::MouseEvent& event) override { add("moved", event.location); }
    void mouseDown(const overlay::MouseEvent& event) override { add("down", event.location); }
    void mouseDragged(const overlay::MouseEvent& event) override { add("dragged", event.location); }
    void mouseUp(const overlay::MouseEvent& event) override { add("up", event.location); }
    overlay::KeyVerdict keyDown(std::uint32_t keyCode) override {
        reports.push_back("key " + std::to_string(keyCode));
        return overlay::KeyVerdict::handled;
    }
    void cancelOperation() override { reports.emplace_back("cancel"); }

    std::vector<std::string> reports;
    /// Called after each report of the mouse.
    std::function<void()> reaction;

  private:
    void add(const std::string& what, base::Point point) {
        reports.push_back(what + " " + std::to_string(static_cast<int>(point.x)) + " " +
                          std::to_string(static_cast<int>(point.y)));
        if (reaction) {
            const auto react = reaction;
            react();
        }
    }
};

/// What every overlay surface does, whatever shows it.
class OverlaySurfaceContract : public testing::TestWithParam<MakeOverlaySurfaceWorld> {
  protected:
    std::unique_ptr<overlay::OverlaySurface> make() {
        return world_->factory().create(world_->screen(), {}, input_);
    }

    std::unique_ptr<OverlaySurfaceWorld> world_ = GetParam()();
    ReportedInput input_;
};

}  // namespace contracts
