#include "latency/overlay_session.h"

#include <algorithm>

#include "latency/monotonic.h"
#include "latency/pace.h"
#include "latency/process_usage.h"

namespace latency {

namespace {

namespace key = desktop::key;
using std::chrono::milliseconds;

constexpr int motionCount = 60;
/// A pointing device that reports 125 times a second.
constexpr milliseconds motionInterval{8};

/// A row of pixels that crosses every region and most windows.
constexpr int rowPart = 3;

desktop::Place between(const Drag& drag, int step, int steps) {
    return {drag.from.x + (drag.to.x - drag.from.x) * step / steps,
            drag.from.y + (drag.to.y - drag.from.y) * step / steps};
}

}  // namespace

OverlaySession::OverlaySession(BusyDesktop& desktop, Samples& samples)
    : desktop_(desktop),
      samples_(samples),
      input_(desktop.get().displayName()),
      screen_(desktop.get().displayName()),
      clipboard_(desktop.get().displayName()),
      files_(desktop.downloads()) {}

std::vector<Watch*> OverlaySession::watches(Program& program) {
    std::vector<Watch*> all{&screen_, &clipboard_, &files_};
    if (Watch* own = program.watch()) {
        all.push_back(own);
    }
    return all;
}

bool OverlaySession::waitForOverlay(Program& program) {
    const bool isOpen = watchUntil(
        watches(program), [&] { return screen_.mappedAt() && program.readyAt(); }, limit);
    if (!isOpen) {
        samples_.remark(program.name(), "now and then no overlay came after the trigger");
    }
    return isOpen;
}

bool OverlaySession::open(Program& program, const std::string& label) {
    input_.moveTo({screen_.width() / 2, screen_.height() / 2}).send();
    rest(pause);
    screen_.restart(screen_.height() / rowPart);
    const double begin = program.trigger(input_, Program::Purpose::open);
    const bool isOpen = waitForOverlay(program);
    if (isOpen) {
        samples_.addSpan(program.name(), "mapped " + label, begin, screen_.mappedAt());
        samples_.addSpan(program.name(), "ready " + label, begin,
                         std::max(*screen_.mappedAt(), *program.readyAt()));
    }
    dismiss();
    return isOpen;
}

bool OverlaySession::capture(Program& program, const Drag& drag, Motions motions) {
    input_.moveTo(drag.from).send();
    rest(pause);
    screen_.restart(screen_.height() / rowPart);
    files_.clean();
    program.trigger(input_, Program::Purpose::deliver);
    if (!waitForOverlay(program)) {
        dismiss();
        return false;
    }
    // Programs that show the screen as it was paint it after their window is there.
    screen_.waitUntilStill(limit);
    measureFirstDrag(program, drag);
    if (motions == Motions::measured) {
        measureMotions(program, drag);
    }
    input_.moveTo(drag.to).send();
    screen_.waitUntilStill(limit);
    measureRelease(program, drag.label);
    rest(pause);
    dismiss();
    return true;
}

bool OverlaySession::captureWindow(LumaframeProgram& program, desktop::Place place) {
    // Only windows of the application in front can be chosen.
    input_.moveTo({place.x - 1, place.y}).pressButton().releaseButton().send();
    screen_.waitUntilStill(limit);
    screen_.restart(place.y);
    files_.clean();
    program.trigger(input_, Program::Purpose::deliver);
    if (!waitForOverlay(program)) {
        dismiss();
        return false;
    }
    input_.press(key::space).release(key::space).moveTo(place).send();
    watchUntil(
        watches(program), [this] { return screen_.changedAt().has_value(); }, limit);
    screen_.waitUntilStill(limit);
    input_.pressButton().send();
    measureRelease(program, "window");
    dismiss();
    return true;
}

bool OverlaySession::selectWhenMapped(Program& program, const Drag& drag) {
    const auto isMapped = [this] { return screen_.mappedAt().has_value(); };
    if (!watchUntil(watches(program), isMapped, limit)) {
        return false;
    }
    input_.pressButton().moveTo(between(drag, 1, 2)).moveTo(drag.to).send();
    rest(pause);
    clipboard_.restart();
    files_.restart();
    input_.releaseButton().send();
    return true;
}

bool OverlaySession::captureQuickly(Program& program, const Drag& drag) {
    input_.moveTo(drag.from).send();
    screen_.restart(screen_.height() / rowPart);
    program.trigger(input_, Program::Purpose::deliver);
    const bool isDone =
        selectWhenMapped(program, drag) &&
        watchUntil(
            // A pasting program that stops in the middle keeps its picture in memory.
            watches(program), [this] { return files_.closedAt() && clipboard_.receivedAt(); },
            limit);
    dismiss();
    return isDone;
}

bool OverlaySession::recognize(LumaframeProgram& program, const Drag& drag) {
    input_.moveTo(drag.from).send();
    screen_.restart(screen_.height() / rowPart);
    program.triggerRecognition(input_);
    return selectWhenMapped(program, drag);
}

OverlaySession::Spending::Spending(Program& program, BusyDesktop& desktop)
    : watched_{{"", program.process()},
               {" (X server)", desktop.serverProcess()},
               {" (compositor)", desktop.compositorProcess()}} {
    for (Watched& watched : watched_) {
        watched.before = usageOf(watched.process).cpu;
    }
}

void OverlaySession::Spending::put(Samples& samples, const std::string& program,
                                   const std::string& quantity, int times) const {
    for (const Watched& watched : watched_) {
        if (watched.process != 0) {
            const double spent = usageOf(watched.process).cpu - watched.before;
            samples.add(program, quantity + watched.who, spent / times);
        }
    }
}

void OverlaySession::measureFirstDrag(Program& program, const Drag& drag) {
    input_.pressButton().send();
    screen_.waitUntilStill(limit);
    screen_.restart(screen_.height() / rowPart);
    const Spending spending(program, desktop_);
    const double begin = input_.moveTo(between(drag, 1, 2)).send();
    watchUntil(
        watches(program), [this] { return screen_.changedAt().has_value(); }, limit);
    samples_.addSpan(program.name(), "first drag painted " + drag.label, begin,
                     screen_.changedAt());
    rest(pause);
    spending.put(samples_, program.name(), "cpu of the first drag " + drag.label, 1);
}

void OverlaySession::measureMotions(Program& program, const Drag& drag) {
    const Spending spending(program, desktop_);
    for (int step = 0; step < motionCount; ++step) {
        input_.moveTo(between(drag, motionCount + step, 2 * motionCount)).send();
        rest(motionInterval);
    }
    rest(pause);
    spending.put(samples_, program.name(), "cpu per motion", motionCount);
}

void OverlaySession::measureRelease(Program& program, const std::string& label) {
    clipboard_.restart();
    files_.restart();
    screen_.drain();
    const double cpuBefore = usageOf(program.process()).cpu;
    const double begin = input_.releaseButton().send();
    if (program.delivery() == Program::Delivery::none) {
        return;
    }
    const bool isDelivered = watchUntil(
        watches(program), [this] { return files_.closedAt() && clipboard_.receivedAt(); }, limit);
    if (!isDelivered) {
        samples_.remark(program.name(), "the picture (" + label + ") was not delivered completely");
    }
    rest(pause);
    const std::string& who = program.name();
    samples_.addSpan(who, "release to file closed " + label, begin, files_.closedAt());
    samples_.addSpan(who, "release to clipboard owned " + label, begin, clipboard_.ownedAt());
    samples_.addSpan(who, "release to image/png received " + label, begin, clipboard_.receivedAt());
    samples_.add(who, "cpu from release " + label, usageOf(program.process()).cpu - cpuBefore);
    samples_.add(who, "bytes " + label, static_cast<double>(files_.size()));
}

void OverlaySession::dismiss() {
    constexpr int attempts = 20;
    for (int attempt = 0; attempt < attempts && screen_.isMapped(); ++attempt) {
        input_.press(key::escape).release(key::escape).send();
        rest(pause);
    }
}

}  // namespace latency
