#include "platform/video/helper_video_looper.h"

#include <cerrno>
#include <cstring>
#include <utility>
#include <variant>

#include "platform/video/packet_socket.h"

namespace platform::video {

namespace {

base::Error nonsense() {
    return {base::ErrorKind::failed, "The video helper gave an answer that makes no sense."};
}

}  // namespace

base::Result<std::unique_ptr<HelperVideoLooper>> HelperVideoLooper::start(
    const std::string& helperPath, const OwnedDescriptor& film, base::MainQueue& mainQueue,
    const WatchFileDescriptor& watch) {
    auto memoryDescriptor = makeFrameMemory();
    if (!memoryDescriptor) {
        return memoryDescriptor.error();
    }
    auto memory = FrameMemory::map(memoryDescriptor.value().number(), FrameMemory::Access::read);
    auto sockets = makePacketSockets();
    if (!memory || !sockets) {
        return base::Error{
            base::ErrorKind::failed,
            std::string("The video helper cannot be reached: ") + std::strerror(errno) + "."};
    }
    auto child =
        helper::ChildProcess::start({.path = helperPath,
                                     .environment = helper::plainEnvironment(),
                                     .descriptors = {sockets->second.number(), film.number(),
                                                     memoryDescriptor.value().number()}});
    if (!child) {
        return child.error();
    }
    return std::unique_ptr<HelperVideoLooper>(new HelperVideoLooper(
        std::move(child.value()), std::move(sockets->first), std::move(memory), mainQueue, watch));
}

HelperVideoLooper::HelperVideoLooper(std::unique_ptr<helper::ChildProcess> helper,
                                     OwnedDescriptor socket, std::shared_ptr<FrameMemory> memory,
                                     base::MainQueue& mainQueue, const WatchFileDescriptor& watch)
    : helper_(std::move(helper)),
      socket_(std::move(socket)),
      memory_(std::move(memory)),
      mainQueue_(mainQueue),
      socketWatch_(watch(socket_.number(), alive_.guard([this] { receive(); }))) {}

HelperVideoLooper::~HelperVideoLooper() = default;

void HelperVideoLooper::nextFrame(base::PixelSize size, Completion completion) {
    completion_ = std::move(completion);
    if (!fitsSlot(size)) {
        giveUp({base::ErrorKind::invalid, "The video's view is too large."});
        return;
    }
    // The other one is on the screen.
    request_ = {(request_.slot + 1) % slotCount, size};
    if (!socketWatch_ || !sendPacket(socket_.number(), encodeRequest(request_))) {
        giveUp(reasonOfEnd());
    }
}

void HelperVideoLooper::receive() {
    const auto received = receivePacket(socket_.number(), answerLength, Waiting::none);
    if (const auto* const nothing = std::get_if<NoPacket>(&received)) {
        if (*nothing == NoPacket::closed) {
            giveUp(reasonOfEnd());
        }
        return;
    }
    const auto answer = decodeAnswer(std::get<std::string>(received));
    if (!answer || !completion_ || answer->request != request_) {
        giveUp(nonsense());
        return;
    }
    switch (answer->kind) {
        case AnswerKind::noVideo:
            giveUp({base::ErrorKind::notFound, "The file has no video track."});
            return;
        case AnswerKind::failure:
            giveUp({base::ErrorKind::invalid, answer->sentence});
            return;
        case AnswerKind::frame:
            if (answer->time < lastTime_) {
                giveUp(nonsense());
                return;
            }
            lastTime_ = answer->time;
            complete(ui::VideoFrame{imageIn(memory_, request_.slot, request_.size), answer->time});
            return;
    }
}

/// This object may be gone afterwards.
void HelperVideoLooper::complete(base::Result<ui::VideoFrame> result) {
    const Completion completion = std::exchange(completion_, nullptr);
    completion(std::move(result));
}

/// Nothing more is heard of the helper. Who waits learns of it in a later turn; who asks later,
/// then.
void HelperVideoLooper::giveUp(const base::Error& error) {
    socketWatch_.reset();
    helper_->killAndReap();
    if (completion_) {
        mainQueue_.post(alive_.guard([this, error] { complete(error); }));
    }
}

base::Error HelperVideoLooper::reasonOfEnd() {
    if (helper::saysMissingLibrary(helper_->killAndReap())) {
        return {base::ErrorKind::unavailable,
                "The libraries that decode video are missing; please install libavformat, "
                "libavcodec and libswscale."};
    }
    return {base::ErrorKind::failed, "The video helper has ended unexpectedly."};
}

}  // namespace platform::video
