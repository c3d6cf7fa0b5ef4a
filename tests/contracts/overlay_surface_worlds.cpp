#include "contracts/overlay_surface_contract.h"
#include "doubles/fake_displays.h"
#include "doubles/fake_overlay_surface.h"
#include "platform/x11/surface_rig.h"

namespace contracts {
namespace {

constexpr std::uint32_t spaceKeyCode = 49;

class FakeWorld final : public OverlaySurfaceWorld {
  public:
    overlay::OverlaySurfaceFactory& factory() override { return factory_; }
    base::Screen screen() override { return displays_.list.at(0); }
    void move(base::Point point) override {
        forEach([&](auto& surface) { surface.move(point); });
    }
    void press(base::Point point) override {
        forEach([&](auto& surface) { surface.press(point); });
    }
    void drag(base::Point point) override {
        forEach([&](auto& surface) { surface.drag(point); });
    }
    void release(base::Point point) override {
        forEach([&](auto& surface) { surface.release(point); });
    }
    void tapSpace() override {
        forEach([&](auto& surface) { surface.key(spaceKeyCode); });
    }

  private:
    template <typename Act>
    void forEach(Act act) {
        for (const auto& surface : factory_.openSurfaces()) {
            act(*surface);
        }
    }

    doubles::FakeDisplays displays_;
    doubles::FakeOverlaySurfaceFactory factory_;
};

class X11World final : public OverlaySurfaceWorld {
  public:
    X11World(desktop::Compositor compositor, double scale) : rig_(optionsOf(compositor), scale) {
        hands().moveTo({200, 50});
        rig_.settle();
    }

    overlay::OverlaySurfaceFactory& factory() override { return *rig_.factory; }
    base::Screen screen() override { return rig_.displays.screens().at(0); }
    void move(base::Point point) override {
        // The window is sent for, and not necessarily there, when the call has returned.
        rig_.settle();
        hands().moveTo(placeOf(point));
        rig_.settle();
    }
    void press(base::Point /*point*/) override {
        hands().pressButton();
        rig_.settle();
    }
    void drag(base::Point point) override { move(point); }
    void release(base::Point /*point*/) override {
        hands().releaseButton();
        rig_.settle();
    }
    void tapSpace() override {
        // As when another program holds the keyboard: then the keys come to the surface itself.
        rig_.factory->takeFocus();
        rig_.settle();
        hands().tap(desktop::key::space);
        rig_.settle();
    }

  private:
    static desktop::DesktopOptions optionsOf(desktop::Compositor compositor) {
        desktop::DesktopOptions options;
        options.outputs = {{0, 0, 400, 300}};
        options.windowManager = desktop::WindowManager::none;
        options.compositor = compositor;
        return options;
    }
    desktop::InputDriver& hands() { return rig_.desktop.input(); }
    [[nodiscard]] desktop::Place placeOf(base::Point point) const {
        return {static_cast<int>(point.x * rig_.scale),
                static_cast<int>(300 - point.y * rig_.scale)};
    }

    surface_rig::Rig rig_;
};

INSTANTIATE_TEST_SUITE_P(Fake, OverlaySurfaceContract,
                         testing::Values([] { return std::make_unique<FakeWorld>(); }));
INSTANTIATE_TEST_SUITE_P(X11Frozen, OverlaySurfaceContract, testing::Values([] {
                             return std::make_unique<X11World>(desktop::Compositor::none, 1.0);
                         }));
INSTANTIATE_TEST_SUITE_P(X11Live, OverlaySurfaceContract, testing::Values([] {
                             return std::make_unique<X11World>(desktop::Compositor::picom, 2.0);
                         }));

}  // namespace
}  // namespace contracts
