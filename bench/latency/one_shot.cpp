#include "latency/one_shot.h"

#include <sys/resource.h>

#include "latency/monotonic.h"

namespace latency {

namespace {

constexpr std::chrono::milliseconds limit{60000};

/// Processor time of all children that have ended: milliseconds.
double childTime() {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

void measure(const OneShot& shot, std::vector<std::string> command, const std::string& label,
             BusyDesktop& desktop, Samples& samples) {
    if (command.empty()) {
        return;
    }
    FileWatch files(desktop.downloads());
    files.clean();
    for (std::string& word : command) {
        if (word == "{file}") {
            word = desktop.downloads() / "picture.png";
        }
    }
    const double cpuBefore = childTime();
    const double begin = now();
    const auto process = desktop.get().start("one-shot", std::move(command));
    const bool isDone = process->waitForExit(limit) == 0;
    files.drain();
    if (!isDone || !files.closedAt()) {
        samples.remark(shot.program, "the command for " + label + " failed");
        return;
    }
    samples.addSpan(shot.program, "command to file closed " + label, begin, files.closedAt());
    samples.add(shot.program, "cpu of the command " + label, childTime() - cpuBefore);
    samples.add(shot.program, "bytes of the command " + label, static_cast<double>(files.size()));
}

}  // namespace

std::vector<OneShot> oneShots() {
    return {
        {.program = "scrot",
         .whole = {"scrot", "--overwrite", "{file}"},
         .region = {"scrot", "--autoselect", "1400,300,1280,800", "--overwrite", "{file}"}},
        {.program = "maim",
         .whole = {"maim", "{file}"},
         .region = {"maim", "--geometry", "1280x800+1400+300", "{file}"}},
        {.program = "flameshot",
         .whole = {"flameshot", "full", "--path", "{file}"},
         .region = {"flameshot", "full", "--region", "1280x800+1400+300", "--path", "{file}"}},
        {.program = "ksnip", .whole = {"ksnip", "--fullscreen", "--saveto", "{file}"}},
        {.program = "spectacle",
         .whole = {"spectacle", "--background", "--nonotify", "--fullscreen", "--output",
                   "{file}"}},
        {.program = "imagemagick",
         .whole = {"import", "-window", "root", "{file}"},
         .region = {"import", "-window", "root", "-crop", "1280x800+1400+300", "+repage",
                    "{file}"}},
    };
}

void measureOneShot(const OneShot& shot, BusyDesktop& desktop, Samples& samples) {
    measure(shot, shot.whole, "3840x2160", desktop, samples);
    measure(shot, shot.region, "1280x800", desktop, samples);
}

}  // namespace latency
