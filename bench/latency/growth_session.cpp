#include "latency/growth_session.h"

#include <cstdio>
#include <string>
#include <vector>

#include "latency/input_burst.h"
#include "latency/lumaframe_program.h"
#include "latency/pace.h"
#include "latency/process_usage.h"
#include "latency/screen_watch.h"

namespace latency {

namespace {

namespace key = desktop::key;

/// The first opening is that of an idle program.
constexpr int openings = 6;

struct Arrangement {
    int count;
    int columns;
    int width;
    int height;

    [[nodiscard]] std::string name() const {
        return std::to_string(count) + " x " + std::to_string(width) + "x" + std::to_string(height);
    }
    [[nodiscard]] std::vector<desktop::Output> outputs() const {
        std::vector<desktop::Output> all;
        for (int number = 0; number < count; ++number) {
            all.push_back({.x = number % columns * width,
                           .y = number / columns * height,
                           .width = width,
                           .height = height});
        }
        return all;
    }
};

/// As large as a virtual screen gets: 7680x4320.
const std::vector<Arrangement> arrangements{
    {1, 1, 1920, 1080}, {2, 2, 1920, 1080}, {4, 4, 1920, 1080}, {8, 4, 1920, 1080},
    {1, 1, 3840, 2160}, {2, 2, 3840, 2160}, {4, 2, 3840, 2160}, {1, 1, 7680, 4320},
};

/// One arrangement and the program on it.
class GrowthSession {
  public:
    GrowthSession(const Arrangement& arrangement, const std::filesystem::path& lumaframe,
                  desktop::Compositor compositor, Samples& samples)
        : arrangement_(arrangement),
          samples_(samples),
          desktop_({.outputs = arrangement.outputs(), .compositor = compositor}, {}),
          input_(desktop_.get().displayName()),
          screen_(desktop_.get().displayName()),
          program_(lumaframe) {}

    void run() {
        program_.start(desktop_);
        const int row = arrangement_.height / 3;
        // Before the first one: the server keeps for the next opening what it had for the last.
        const double serverBefore = serverMemory();
        for (int opening = 0; opening < openings; ++opening) {
            input_.moveTo({arrangement_.width / 4, arrangement_.height / 4}).send();
            screen_.waitUntilStill(limit);
            screen_.restart(row);
            const double cpuBefore = processorTime();
            const double begin = program_.trigger(input_, Program::Purpose::open);
            if (!watchUntil(
                    {&screen_, program_.watch()}, [this] { return program_.readyAt().has_value(); },
                    limit)) {
                samples_.remark(program_.name(), "no overlay came on " + arrangement_.name());
                break;
            }
            samples_.addSpan(program_.name(),
                             opening == 0 ? named("ready first") : named("ready warm"), begin,
                             program_.readyAt());
            screen_.waitUntilStill(limit);
            put("cpu of opening", processorTime() - cpuBefore);
            measureDrag(row);
            put("rss while open", memoryOf(program_.process()));
            put("X server while open", serverMemory() - serverBefore);
            close();
        }
        program_.stop();
    }

  private:
    void measureDrag(int row) {
        input_.pressButton().send();
        screen_.waitUntilStill(limit);
        screen_.restart(row);
        const double begin =
            input_.moveTo({arrangement_.width / 2, arrangement_.height / 2}).send();
        watchUntil(
            {&screen_}, [this] { return screen_.changedAt().has_value(); }, limit);
        samples_.addSpan(program_.name(), named("first drag painted"), begin, screen_.changedAt());
        screen_.waitUntilStill(limit);
    }

    void close() {
        input_.press(key::escape).release(key::escape).send();
        screen_.waitUntilStill(limit);
        input_.releaseButton().send();
        rest(pause);
    }

    /// Of the program and the X server: the one's requests are the other's work.
    [[nodiscard]] double processorTime() {
        return usageOf(program_.process()).cpu + usageOf(desktop_.serverProcess()).cpu;
    }
    [[nodiscard]] double serverMemory() { return memoryOf(desktop_.serverProcess()); }
    static double memoryOf(pid_t process) {
        return mebibytes(usageOf(process, Memory::read).resident);
    }
    [[nodiscard]] std::string named(const std::string& quantity) const {
        return "on " + arrangement_.name() + ": " + quantity;
    }
    void put(const std::string& quantity, double value) {
        samples_.add(program_.name(), named(quantity), value);
    }

    const Arrangement& arrangement_;
    Samples& samples_;
    BusyDesktop desktop_;
    InputBurst input_;
    ScreenWatch screen_;
    LumaframeProgram program_;
};

}  // namespace

void measureGrowth(const std::filesystem::path& lumaframe, desktop::Compositor compositor,
                   Samples& samples) {
    for (const Arrangement& arrangement : arrangements) {
        std::fprintf(stderr, "Displays: %s\n", arrangement.name().c_str());
        GrowthSession(arrangement, lumaframe, compositor, samples).run();
    }
}

}  // namespace latency
