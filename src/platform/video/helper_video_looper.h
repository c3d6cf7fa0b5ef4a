#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "base/alive.h"
#include "base/main_queue.h"
#include "platform/file_descriptor_watch.h"
#include "platform/helper/child_process.h"
#include "platform/video/frame_memory.h"
#include "platform/video/video_protocol.h"
#include "ui/video_looper.h"

namespace platform::video {

/// Has a film decoded by the video helper, a confined process that lives as long as this, so that
/// no codec is ever part of this process. The pictures come through shared memory. Nothing here
/// waits for the helper; what it says is not trusted. Main thread.
class HelperVideoLooper final : public ui::VideoLooper {
  public:
    /// Starts the program at `helperPath`, which gets the open file `film` and nothing else.
    /// `mainQueue` outlives this.
    static base::Result<std::unique_ptr<HelperVideoLooper>> start(const std::string& helperPath,
                                                                  const OwnedDescriptor& film,
                                                                  base::MainQueue& mainQueue,
                                                                  const WatchFileDescriptor& watch);
    ~HelperVideoLooper() override;

    void nextFrame(base::PixelSize size, Completion completion) override;

    /// Of the helper, 0 when it is gone.
    [[nodiscard]] int helperProcessIdentifier() const { return helper_->pid(); }

  private:
    HelperVideoLooper(std::unique_ptr<helper::ChildProcess> helper, OwnedDescriptor socket,
                      std::shared_ptr<FrameMemory> memory, base::MainQueue& mainQueue,
                      const WatchFileDescriptor& watch);
    void receive();
    void complete(base::Result<ui::VideoFrame> result);
    void giveUp(const base::Error& error);
    base::Error reasonOfEnd();

    std::unique_ptr<helper::ChildProcess> helper_;
    OwnedDescriptor socket_;
    std::shared_ptr<FrameMemory> memory_;
    base::MainQueue& mainQueue_;
    FrameRequest request_;
    std::chrono::microseconds lastTime_{0};
    Completion completion_;
    base::Alive alive_;
    /// Released before the socket closes; empty once the helper was given up.
    std::shared_ptr<void> socketWatch_;
};

}  // namespace platform::video
