#include "platform/video/video_helper.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "platform/helper/confinement.h"
#include "platform/video/film_reader.h"
#include "platform/video/frame_memory.h"
#include "platform/video/frame_scaler.h"
#include "platform/video/packet_socket.h"
#include "platform/video/video_helper_command.h"
#include "platform/video/video_protocol.h"

extern "C" {
#include <libavutil/log.h>
}

namespace platform::video {

namespace {

/// The largest pictures that are accepted were seen to need 360 MB; more than this is a fault, and
/// fails instead of filling the machine.
constexpr unsigned long long memoryGrowth = 512ULL << 20U;

enum ExitStatus { socketClosed = 0, badRequest = 3 };

/// What the answers are made from.
class Film {
  public:
    /// Of the film, or why there is none.
    base::Status open() {
        // Before a byte of the film is read: everything that is needed is open already.
        if (auto confined = helper::confineToReading(); !confined) {
            return confined;
        }
        if (auto confined = helper::confineToComputing(memoryGrowth); !confined) {
            return confined;
        }
        memory_ = FrameMemory::map(memoryDescriptor, FrameMemory::Access::write);
        if (!memory_) {
            return base::Error{base::ErrorKind::failed, "There is no memory for pictures."};
        }
        auto reader = FilmReader::open(filmDescriptor);
        if (!reader) {
            return reader.error();
        }
        reader_ = std::move(reader.value());
        return base::Nothing{};
    }
    /// Decodes the picture that is asked for next, while nobody waits for it.
    void prepare() {
        if (!prepared_) {
            prepared_ = reader_->next();
        }
    }
    base::Result<std::chrono::microseconds> draw(const FrameRequest& request) {
        prepare();
        const auto decoded = *std::exchange(prepared_, std::nullopt);
        if (!decoded) {
            return decoded.error();
        }
        const auto drawn = scaler_.scale(*decoded.value().frame, request.size,
                                         memory_->slot(request.slot), rowLength(request.size));
        if (!drawn) {
            return drawn.error();
        }
        return decoded.value().time;
    }

  private:
    std::shared_ptr<FrameMemory> memory_;
    std::unique_ptr<FilmReader> reader_;
    FrameScaler scaler_;
    std::optional<base::Result<DecodedFrame>> prepared_;
};

FrameAnswer answerTo(const FrameRequest& request, const base::Error& error) {
    return error.kind == base::ErrorKind::notFound
               ? FrameAnswer{.kind = AnswerKind::noVideo, .request = request}
               : FrameAnswer{
                     .kind = AnswerKind::failure, .request = request, .sentence = error.sentence};
}

FrameAnswer answerTo(const FrameRequest& request, const base::Status& opened, Film& film) {
    if (!opened) {
        return answerTo(request, opened.error());
    }
    const auto time = film.draw(request);
    return time ? FrameAnswer{.request = request, .time = time.value()}
                : answerTo(request, time.error());
}

}  // namespace

int runVideoHelper() {
    ::av_log_set_level(AV_LOG_QUIET);
    Film film;
    const auto opened = film.open();
    for (;;) {
        if (opened) {
            film.prepare();
        }
        const auto received =
            receivePacket(socketDescriptor, requestLength, Waiting::untilSomethingComes);
        const auto* const packet = std::get_if<std::string>(&received);
        if (packet == nullptr) {
            return socketClosed;
        }
        const auto request = decodeRequest(*packet);
        if (!request) {
            return badRequest;
        }
        if (!sendPacket(socketDescriptor, encodeAnswer(answerTo(*request, opened, film)))) {
            return socketClosed;
        }
    }
}

}  // namespace platform::video
