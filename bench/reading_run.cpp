#include "reading_run.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <fstream>
#include <iterator>

namespace bench {

namespace {

double millisecondsOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

double megapixelsOf(const base::Image& picture) {
    return picture.width() * static_cast<double>(picture.height()) / 1e6;
}

}  // namespace

base::Result<Reading> ReadingRun::read(const Sample& sample) {
    auto& reader = readers_[sample.languages];
    if (reader == nullptr) {
        auto created = platform::tesseract::ScreenTextReader::create(sample.languages, threads_);
        if (!created) {
            return created.error();
        }
        reader = std::move(created.value());
        // As in the helper, while a person drags.
        reader->prepare();
    }
    const auto picture = loadPicture(sample.file);
    if (!picture) {
        return picture.error();
    }
    const double cpuBefore = millisecondsOf(CLOCK_PROCESS_CPUTIME_ID);
    const double wallBefore = millisecondsOf(CLOCK_MONOTONIC);
    const auto observations = reader->read(picture.value());
    if (!observations) {
        return observations.error();
    }
    Reading reading{{},
                    millisecondsOf(CLOCK_PROCESS_CPUTIME_ID) - cpuBefore,
                    millisecondsOf(CLOCK_MONOTONIC) - wallBefore,
                    megapixelsOf(picture.value())};
    for (const auto& observation : observations.value()) {
        if (!observation.candidates.empty()) {
            reading.text += observation.candidates.front() + "\n";
        }
    }
    return reading;
}

Reading medianOf(std::vector<Reading> readings) {
    Reading median = readings.front();
    const auto middle = readings.begin() + static_cast<std::ptrdiff_t>(readings.size() / 2);
    for (double Reading::*const time : {&Reading::cpu, &Reading::wall}) {
        std::ranges::nth_element(readings, middle, {}, time);
        median.*time = (*middle).*time;
    }
    return median;
}

base::Result<Reading> readWithCommandLine(const Sample& sample) {
    const auto picture = loadPicture(sample.file);
    if (!picture) {
        return picture.error();
    }
    std::string languages;
    for (const std::string& language : sample.languages) {
        languages += (languages.empty() ? "" : "+") + language;
    }
    const std::filesystem::path output =
        std::filesystem::temp_directory_path() / ("ocr-" + std::to_string(getpid()));
    std::array<std::string, 5> words{"tesseract", sample.file.string(), output.string(), "-l",
                                     languages};
    std::array<char*, 6> arguments{};
    for (std::size_t index = 0; index < words.size(); ++index) {
        arguments[index] = words[index].data();
    }
    setenv("OMP_THREAD_LIMIT", "1", 1);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", 1, 0);
    pid_t child = 0;
    const int failure =
        posix_spawnp(&child, "tesseract", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) {
        return base::Error{base::ErrorKind::notFound, "The tesseract command is not installed."};
    }
    const double wallBefore = millisecondsOf(CLOCK_MONOTONIC);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    std::filesystem::path file = output;
    file += ".txt";
    std::ifstream source(file);
    Reading reading{std::string(std::istreambuf_iterator<char>(source), {}),
                    milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime),
                    millisecondsOf(CLOCK_MONOTONIC) - wallBefore, megapixelsOf(picture.value())};
    std::filesystem::remove(file);
    return reading;
}

}  // namespace bench
