#include "helper_run.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <optional>

#include "base/main_queue.h"
#include "picture_set.h"
#include "platform/tesseract/helper_text_recognizer.h"

namespace bench {

namespace {

/// Nothing here waits for a timer: the helper ends with its recogniser.
class NoQueue final : public base::MainQueue {
  public:
    void post(std::function<void()>) override {}
    void postAfter(std::chrono::milliseconds, std::function<void()>) override {}
};

double childMilliseconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

long residentBytes() {
    long whole = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

}  // namespace

base::Result<FirstUse> measureFirstUse(const std::filesystem::path& helper,
                                       const std::string& locale,
                                       const std::filesystem::path& picture) {
    const auto image = loadPicture(picture);
    if (!image) {
        return image.error();
    }
    setenv("LC_ALL", locale.c_str(), 1);
    NoQueue queue;
    FirstUse use;
    use.residentBefore = residentBytes();
    const double before = childMilliseconds();
    {
        platform::tesseract::HelperTextRecognizer recognizer(
            helper.string(), queue,
            [](int, const std::function<void()>&) { return std::shared_ptr<void>(); });
        const auto observations = recognizer.recognize(image.value());
        if (!observations) {
            return observations.error();
        }
    }
    use.cpu = childMilliseconds() - before;
    use.residentAfter = residentBytes();
    return use;
}

}  // namespace bench
