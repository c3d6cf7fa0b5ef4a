#include "latency/idle_session.h"

#include "latency/process_usage.h"
#include "latency/watch.h"

namespace latency {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds idleTime{30000};
/// For what a program gives back a while after its last use.
constexpr milliseconds settling{5000};
/// The recognition helper ends a minute after its last use.
constexpr milliseconds helperTime{65000};
constexpr milliseconds recognitionLimit{120000};
constexpr int captures = 50;

}  // namespace

void measureIdle(const Program& program, const std::string& when, Samples& samples) {
    rest(settling);
    const ProcessUsage before = usageOf(program.process());
    rest(idleTime);
    const ProcessUsage after = usageOf(program.process(), Memory::read);
    samples.add(program.name(), "wake-ups in 30 s " + when,
                static_cast<double>(wakeUpsBetween(before, after)));
    samples.add(program.name(), "cpu in 30 s " + when, after.cpu - before.cpu);
    samples.add(program.name(), "rss " + when, mebibytes(after.resident));
    samples.add(program.name(), "pss " + when, mebibytes(after.proportional));
    samples.add(program.name(), "uss " + when, mebibytes(after.alone));
}

void measureLife(LumaframeProgram& program, BusyDesktop& desktop, OverlaySession& session,
                 const Drag& whole, const Drag& text, Samples& samples) {
    program.start(desktop);
    measureIdle(program, "fresh", samples);
    for (int capture = 0; capture < captures; ++capture) {
        session.captureQuickly(program, whole);
    }
    measureIdle(program, "after 50 captures", samples);
    session.recognize(program, text);
    watchUntil(
        {program.watch()}, [&] { return program.isRecognized(); }, recognitionLimit);
    rest(helperTime);
    measureIdle(program, "after a recognition", samples);
    program.stop();
}

}  // namespace latency
