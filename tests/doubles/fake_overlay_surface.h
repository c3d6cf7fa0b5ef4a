#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "doubles/call_log.h"
#include "overlay/overlay_surface.h"

namespace doubles {

/// One drawing that a surface was given.
struct Presentation {
    std::vector<overlay::DrawingStep> steps;
    base::Rect changed;
};

/// What is known of one surface; stays readable after the surface is gone. Input reaches the
/// program only while the surface is open.
class SurfaceRecord {
  public:
    enum class Lifetime { created, open, closed };

    SurfaceRecord(const base::Screen& initialScreen,
                  const overlay::PanelConfiguration& panelConfiguration,
                  overlay::SurfaceInput& surfaceInput)
        : screen(initialScreen), configuration(panelConfiguration), input_(&surfaceInput) {}

    void enter() {
        withInput([](auto& input) { input.mouseEntered(); });
    }
    void exit() {
        withInput([](auto& input) { input.mouseExited(); });
    }
    void move(base::Point point) {
        withInput([&](auto& input) { input.mouseMoved({point, 0}); });
    }
    void press(base::Point point, std::uint32_t flags = 0) {
        withInput([&](auto& input) { input.mouseDown({point, flags}); });
    }
    void drag(base::Point point, std::uint32_t flags = 0) {
        withInput([&](auto& input) { input.mouseDragged({point, flags}); });
    }
    void release(base::Point point, std::uint32_t flags = 0) {
        withInput([&](auto& input) { input.mouseUp({point, flags}); });
    }
    overlay::KeyVerdict key(std::uint32_t keyCode) {
        overlay::KeyVerdict verdict = overlay::KeyVerdict::unhandled;
        withInput([&](auto& input) { verdict = input.keyDown(keyCode); });
        return verdict;
    }
    void cancel() {
        withInput([](auto& input) { input.cancelOperation(); });
    }

    [[nodiscard]] const std::vector<overlay::DrawingStep>& lastSteps() const {
        static const std::vector<overlay::DrawingStep> nothing;
        return presentations.empty() ? nothing : presentations.back().steps;
    }

    /// None once the display is gone.
    std::optional<base::Screen> screen;
    overlay::PanelConfiguration configuration;
    Lifetime lifetime = Lifetime::created;
    std::vector<Presentation> presentations;
    int closeCount = 0;
    bool isDestroyed = false;

  private:
    template <typename Call>
    void withInput(Call call) {
        if (lifetime == Lifetime::open) {
            call(*input_);
        }
    }

    overlay::SurfaceInput* input_;
};

/// Makes surfaces that only remember. A character is 6 points wide and a line 12 high unless
/// `textSize` says otherwise. In a call log: "surface create: <display>", "surface show:
/// <display>", "surface close: <display>".
class FakeOverlaySurfaceFactory final : public overlay::OverlaySurfaceFactory, public Recorder {
  public:
    std::unique_ptr<overlay::OverlaySurface> create(
        const base::Screen& screen, const overlay::PanelConfiguration& configuration,
        overlay::SurfaceInput& input) override {
        auto surface = std::make_shared<SurfaceRecord>(screen, configuration, input);
        surfaces.push_back(surface);
        record("surface create: " + std::to_string(screen.displayID));
        return std::make_unique<Surface>(*this, surface, std::to_string(screen.displayID));
    }

    [[nodiscard]] std::vector<std::shared_ptr<SurfaceRecord>> openSurfaces() const {
        std::vector<std::shared_ptr<SurfaceRecord>> open;
        for (const auto& surface : surfaces) {
            if (surface->lifetime == SurfaceRecord::Lifetime::open) {
                open.push_back(surface);
            }
        }
        return open;
    }

    /// Every surface that was ever made, in its order.
    std::vector<std::shared_ptr<SurfaceRecord>> surfaces;
    /// The surface that was made key last and is still open.
    std::shared_ptr<SurfaceRecord> keySurface;
    std::optional<base::Size> textSize;
    std::vector<std::pair<std::string, overlay::Font>> measured;

  private:
    class Surface final : public overlay::OverlaySurface {
      public:
        Surface(FakeOverlaySurfaceFactory& factory, std::shared_ptr<SurfaceRecord> surface,
                std::string name)
            : factory_(factory), record_(std::move(surface)), name_(std::move(name)) {}
        Surface(const Surface&) = delete;
        Surface& operator=(const Surface&) = delete;
        ~Surface() override {
            endInput();
            record_->isDestroyed = true;
        }

        void makeKeyAndOrderFront() override {
            factory_.record("surface show: " + name_);
            record_->lifetime = SurfaceRecord::Lifetime::open;
            factory_.keySurface = record_;
        }
        void close() override {
            factory_.record("surface close: " + name_);
            ++record_->closeCount;
            endInput();
        }
        base::Size measure(const std::string& text, const overlay::Font& font) override {
            factory_.measured.emplace_back(text, font);
            return factory_.textSize.value_or(
                base::Size{6.0 * static_cast<double>(text.size()), 12});
        }
        void present(const std::vector<overlay::DrawingStep>& steps,
                     const base::Rect& changed) override {
            record_->presentations.push_back({steps, changed});
        }
        std::optional<base::Screen> screen() const override { return record_->screen; }

      private:
        void endInput() {
            record_->lifetime = SurfaceRecord::Lifetime::closed;
            if (factory_.keySurface == record_) {
                factory_.keySurface = nullptr;
            }
        }

        FakeOverlaySurfaceFactory& factory_;
        std::shared_ptr<SurfaceRecord> record_;
        std::string name_;
    };
};

}  // namespace doubles
