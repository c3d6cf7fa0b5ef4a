// Any bytes as a film, read and drawn as the video helper does it.

#include <sys/mman.h>
#include <unistd.h>

#include <vector>

#include "fuzz_input.h"
#include "platform/video/film_reader.h"
#include "platform/video/frame_memory.h"
#include "platform/video/frame_scaler.h"

extern "C" {
#include <libavutil/log.h>
}

namespace {

/// The file of every execution.
int fileWith(fuzz::Input input) {
    static const int file = ::memfd_create("film", MFD_CLOEXEC);
    const auto bytes = input.rest();
    const bool isWritten =
        ::ftruncate(file, 0) == 0 &&
        ::pwrite(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
    fuzz::require(isWritten, "there is memory for the file");
    return file;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ::av_log_set_level(AV_LOG_QUIET);
    const auto reader = platform::video::FilmReader::open(fileWith(fuzz::Input(data, size)));
    if (!reader) {
        fuzz::require(!reader.error().sentence.empty(), "an error has a sentence");
        return 0;
    }
    constexpr base::PixelSize view{48, 20};
    const std::size_t row = platform::video::rowLength(view);
    // Exactly as long as it may be written.
    std::vector<std::uint8_t> pixels(row * view.height);
    platform::video::FrameScaler scaler;
    // More than the seeds have, so that it begins anew.
    for (int picture = 0; picture < 5; ++picture) {
        const auto frame = reader.value()->next();
        if (!frame) {
            fuzz::require(!frame.error().sentence.empty(), "an error has a sentence");
            return 0;
        }
        const auto drawn = scaler.scale(*frame.value().frame, view, pixels.data(), row);
        fuzz::require(drawn || !drawn.error().sentence.empty(), "an error has a sentence");
    }
    return 0;
}
