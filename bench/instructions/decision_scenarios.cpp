#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "instructions/scenarios.h"
#include "overlay/selection_drawing.h"
#include "overlay/selection_geometry.h"
#include "platform/freedesktop/settings_document.h"
#include "platform/qt/qt_text_rasterizer.h"
#include "platform/x11/key_map.h"
#include "platform/x11/native_region.h"
#include "platform/x11/overlay_figure.h"
#include "platform/x11/paint_plan.h"
#include "shortcuts/shortcut_display.h"

namespace bench {

namespace {

using platform::freedesktop::SettingsDocument;

constexpr base::Rect display{{0, 0}, {3840, 2160}};
constexpr platform::x11::NativeRect wholeWindow{0, 0, 3840, 2160};

/// What an overlay does for one motion, up to what it asks the server to paint.
class Repainting {
  public:
    void show(const overlay::SelectionState& state) {
        auto drawing =
            overlay::drawSelection(state, display, display.size.height,
                                   [this](const std::string& text, const overlay::Font& font) {
                                       return rasterizer_.measure(text, font);
                                   });
        const base::Rect changed = overlay::changedRect(drawing_, drawing, display);
        auto figures = builder_.build(drawing.steps);
        const auto clip = platform::x11::intersection(
            wholeWindow, {static_cast<std::int32_t>(changed.minX()) - 1,
                          wholeWindow.height - static_cast<std::int32_t>(changed.maxY()) - 1,
                          static_cast<std::int32_t>(changed.size.width) + 3,
                          static_cast<std::int32_t>(changed.size.height) + 3});
        areaCount_ += platform::x11::planChange(figures_, figures, clip).areas.size();
        figures_ = std::move(figures);
        drawing_ = std::move(drawing);
    }

  private:
    platform::qt::QtTextRasterizer rasterizer_;
    platform::x11::FigureBuilder builder_{1.0, wholeWindow.height, rasterizer_};
    overlay::SelectionDrawing drawing_;
    std::vector<platform::x11::Figure> figures_;
    std::size_t areaCount_ = 0;
};

void drag(int motions) {
    Repainting repainting;
    overlay::SelectionState selection;
    selection.press({200, 2000});
    for (int motion = 1; motion <= motions; ++motion) {
        selection.drag({200.0 + motion * 30, 2000.0 - motion * 16}, overlay::OptionKey::released);
        repainting.show(selection);
    }
}

/// The pointer over three hundred windows.
void hover(int motions) {
    constexpr std::uint32_t windowCount = 300;
    std::vector<overlay::WindowCandidate> windows;
    for (std::uint32_t index = 0; index < windowCount; ++index) {
        windows.push_back({index + 1, {{index * 10.0, index * 5.0}, {60, 60}}, 0, 1});
    }
    Repainting repainting;
    overlay::SelectionState selection;
    selection.toggleWindowMode();
    selection.applyWindowList(windows, 1, base::Point{0, 0});
    for (int motion = 0; motion < motions; ++motion) {
        const double x = motion * 29.0;
        if (selection.updateHoveredWindow({x, x / 2}) == overlay::Redraw::needed) {
            repainting.show(selection);
        }
    }
}

SettingsDocument manySettings() {
    SettingsDocument document;
    for (int index = 0; index < 30; ++index) {
        const std::string number = std::to_string(index);
        (void)document.set("switch" + number, index % 2 == 0);
        (void)document.set("number" + number, std::int64_t{index});
        (void)document.set("text" + number, "value " + number);
    }
    return document;
}

void mapKeys() {
    constexpr int smallestKeycode = 8;
    constexpr int largestKeycode = 255;
    for (int keycode = smallestKeycode; keycode <= largestKeycode; ++keycode) {
        const auto code = platform::x11::virtualKeyCodeOf(static_cast<xcb_keycode_t>(keycode));
        if (code && platform::x11::keycodeOf(*code) == keycode) {
            (void)shortcuts::shortcutDisplayString(*code, 0x1300);
        }
    }
}

}  // namespace

std::vector<Scenario> decisionScenarios() {
    auto settings = std::make_shared<const SettingsDocument>(manySettings());
    return {
        {"drag: 100 motions, as far as the server", [] { drag(100); }},
        {"window mode: 100 motions over 300 windows", [] { hover(100); }},
        {"settings: 90 keys read", [text = settings->text()] { SettingsDocument::parse(text); }},
        {"settings: 90 keys written", [settings] { (void)settings->text(); }},
        {"keys: every keycode to its label", mapKeys},
    };
}

}  // namespace bench
