// Shows a film as the permissions window does, on a private desktop, and prints what it costs: the
// processor time of this program and of the video helper while it plays, the wake-ups while it is
// hidden, and the memory before, while and after.
//
//   video FOLDER [SECONDS]      plays FOLDER/animation.mp4; QT_SCALE_FACTOR=2 for a dense display
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "base/log.h"
#include "desktop/desktop.h"
#include "platform/qt/event_source.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/video/film_resources.h"
#include "ui/looping_video_player.h"

namespace {

/// A value of /proc/self/status or of another process's.
long statusOf(pid_t process, const std::string& name) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return std::stol(line.substr(name.size() + 1));
        }
    }
    return 0;
}

/// User and system time, in milliseconds.
double cpuOf(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(file, text);
    std::istringstream rest(text.substr(text.rfind(')') + 1));
    std::string word;
    for (int column = 3; column < 14; ++column) {
        rest >> word;
    }
    double user = 0;
    double system = 0;
    rest >> user >> system;
    return (user + system) * 1000 / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

double cpuOfThis() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

/// The video helper, 0 when there is none.
pid_t helper() {
    const auto self = std::to_string(::getpid());
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "stat");
        std::string text;
        std::getline(file, text);
        // Behind the name come its state, which is one letter, and its parent.
        const std::size_t name = text.find("(lumaframe-video");
        const std::size_t end = text.rfind(") ");
        if (name != std::string::npos && text.substr(end + 4).starts_with(self + " ")) {
            return std::stoi(text);
        }
    }
    return 0;
}

void run(std::chrono::milliseconds time) {
    // Not the application's own loop, whose end closes the windows.
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

void printMemory(const char* when) {
    std::printf("%-28s %6.1f MiB, helper %6.1f MiB\n", when,
                static_cast<double>(statusOf(::getpid(), "VmRSS")) / 1024,
                static_cast<double>(statusOf(helper(), "VmRSS")) / 1024);
}

long wakeUps(pid_t process) {
    return process == 0 ? 0 : statusOf(process, "voluntary_ctxt_switches");
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount < 2) {
        std::fprintf(stderr, "Usage: video FOLDER [SECONDS]\n");
        return 2;
    }
    const std::chrono::seconds length(argumentCount > 2 ? std::atoi(arguments[2]) : 10);
    // As the program itself does it.
    ::mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    desktop::Desktop desktop;
    for (const auto& [name, value] : desktop.environment()) {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    QApplication application(argumentCount, arguments);
    platform::qt::QtMainQueue queue;
    base::StandardOutputLog log;
    platform::video::FilmResources films(arguments[1], LUMAFRAME_VIDEO_HELPER, queue,
                                         platform::qt::fileDescriptorWatch());
    QWidget window;
    window.resize(436, 282);
    window.show();
    run(std::chrono::milliseconds(1000));
    printMemory("before");

    auto player = std::make_unique<ui::LoopingVideoPlayer>(
        "animation", ui::LoopingVideoPlayer::Mediator{.loopers = films, .log = log}, &window);
    player->setCornerRadius(12);
    player->setGeometry(16, 16, 404, 250);
    player->show();
    run(std::chrono::milliseconds(1000));
    const pid_t child = helper();
    const double cpuBefore = cpuOfThis();
    const double childBefore = cpuOf(child);
    run(length);
    const double wall = static_cast<double>(length.count()) * 1000;
    const double own = 100 * (cpuOfThis() - cpuBefore) / wall;
    const double decoding = 100 * (cpuOf(child) - childBefore) / wall;
    std::printf(
        "playing                      %.1f %% of a core: helper %.1f %%, painting %.1f %%\n",
        own + decoding, decoding, own);
    printMemory("playing");

    window.showMinimized();
    run(std::chrono::milliseconds(1500));
    const long ownWakeUps = wakeUps(::getpid());
    const long childWakeUps = wakeUps(child);
    run(std::chrono::seconds(5));
    // One is the timer that ends the measurement.
    std::printf("minimised for 5 s            %ld wake-ups, helper %ld\n",
                wakeUps(::getpid()) - ownWakeUps - 1, wakeUps(child) - childWakeUps);
    run(std::chrono::seconds(6));
    printMemory("minimised for 12 s");
    window.showNormal();
    run(std::chrono::seconds(2));
    printMemory("shown again");
    player.reset();
    run(std::chrono::milliseconds(500));
    printMemory("player gone");
    return 0;
}
