#include "micro/benchmarks.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "micro/pictures.h"
#include "overlay/selection_geometry.h"
#include "platform/freedesktop/settings_document.h"
#include "platform/tesseract/page_analysis.h"
#include "platform/x11/key_map.h"
#include "shortcuts/shortcut_display.h"

namespace bench {

namespace {

/// All that a drag computes for one motion.
void dragOnce(benchmark::State& state) {
    overlay::SelectionState selection;
    selection.press({100, 100});
    double x = 100;
    for (auto step : state) {
        x = x < 3000 ? x + 1 : 101;
        selection.drag({x, 900}, overlay::OptionKey::released);
        const auto region = selection.capturableRegion();
        benchmark::DoNotOptimize(overlay::guideLines(*region));
        benchmark::DoNotOptimize(overlay::centreMark(*region));
        benchmark::DoNotOptimize(overlay::sizeLabelText(*region));
        benchmark::DoNotOptimize(overlay::sizeLabelFrame(*region, {60, 15}));
    }
}

/// The window under a pointer that moves over three hundred.
void hoverOnce(benchmark::State& state) {
    constexpr int windowCount = 300;
    std::vector<overlay::WindowCandidate> windows;
    for (int index = 0; index < windowCount; ++index) {
        windows.push_back(
            {static_cast<std::uint32_t>(index + 1), {index * 10.0, index * 5.0, 60, 60}, 0, 1});
    }
    overlay::SelectionState selection;
    selection.toggleWindowMode();
    selection.applyWindowList(windows, 1, base::Point{0, 0});
    double x = 0;
    for (auto step : state) {
        x = x < 3000 ? x + 7 : 0;
        benchmark::DoNotOptimize(selection.updateHoveredWindow({x, x / 2}));
    }
}

std::string settingsText() {
    platform::freedesktop::SettingsDocument document;
    for (int index = 0; index < 30; ++index) {
        const std::string number = std::to_string(index);
        if (!document.set("switch" + number, index % 2 == 0) ||
            !document.set("number" + number, std::int64_t{index}) ||
            !document.set("text" + number, "value " + number)) {
            return {};
        }
    }
    return document.text();
}

void parseSettings(benchmark::State& state) {
    const std::string text = settingsText();
    for (auto step : state) {
        benchmark::DoNotOptimize(platform::freedesktop::SettingsDocument::parse(text));
    }
}

void writeSettings(benchmark::State& state) {
    const auto document = platform::freedesktop::SettingsDocument::parse(settingsText());
    for (auto step : state) {
        benchmark::DoNotOptimize(document->text());
    }
}

/// A key press on its road to a stored shortcut and its label, for every X keycode.
void mapKeys(benchmark::State& state) {
    for (auto step : state) {
        for (int keycode = 8; keycode < 256; ++keycode) {
            const auto code = platform::x11::virtualKeyCodeOf(static_cast<xcb_keycode_t>(keycode));
            benchmark::DoNotOptimize(code);
        }
    }
}

void showShortcut(benchmark::State& state) {
    std::int64_t keyCode = 0;
    for (auto step : state) {
        keyCode = (keyCode + 1) % 128;
        benchmark::DoNotOptimize(shortcuts::shortcutDisplayString(keyCode, 0x1300));
    }
}

/// Where the text is, without reading it, in a megapixel.
void analysePage(benchmark::State& state, PictureKind kind) {
    const base::Image picture = drawPicture(kind, 1250, 800);
    for (auto step : state) {
        benchmark::DoNotOptimize(platform::tesseract::PageAnalysis(picture).lines().size());
    }
}

}  // namespace

void registerDecisionBenchmarks() {
    benchmark::RegisterBenchmark("geometry/drag", dragOnce);
    benchmark::RegisterBenchmark("geometry/hover-300-windows", hoverOnce);
    benchmark::RegisterBenchmark("settings/parse-90-keys", parseSettings);
    benchmark::RegisterBenchmark("settings/text-90-keys", writeSettings);
    benchmark::RegisterBenchmark("keys/all-keycodes", mapKeys);
    benchmark::RegisterBenchmark("keys/display", showShortcut);
    for (const PictureKind kind : allPictureKinds) {
        const std::string name = "page-analysis/" + std::string(nameOf(kind));
        benchmark::RegisterBenchmark(name.c_str(), analysePage, kind)
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace bench
