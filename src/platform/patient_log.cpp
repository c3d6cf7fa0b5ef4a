#include "platform/patient_log.h"

#include <poll.h>
#include <unistd.h>

namespace platform {

void PatientLog::line(std::string_view text) {
    constexpr int patienceMilliseconds = 1000;
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    isReaderStalled_ = ::poll(&output, 1, isReaderStalled_ ? 0 : patienceMilliseconds) == 0;
    if (!isReaderStalled_) {
        output_.line(text);
    }
}

}  // namespace platform
