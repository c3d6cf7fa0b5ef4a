#include "platform/video/codec_error.h"

#include <string>

extern "C" {
#include <libavutil/error.h>
}

namespace platform::video {

base::Error codecError(int number) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    ::av_strerror(number, text, sizeof text);
    return {base::ErrorKind::invalid, std::string(text) + "."};
}

}  // namespace platform::video
