#pragma once

#include <string>
#include <utility>

#include "base/main_queue.h"
#include "platform/file_descriptor_watch.h"
#include "ui/video_looper.h"

namespace platform::video {

/// The films in a directory of the program, each played by a helper of its own. Main thread.
class FilmResources final : public ui::VideoLooperFactory {
  public:
    /// `helperPath` is the video helper; `mainQueue` outlives this and what it opens.
    FilmResources(std::string directory, std::string helperPath, base::MainQueue& mainQueue,
                  WatchFileDescriptor watch)
        : directory_(std::move(directory)),
          helperPath_(std::move(helperPath)),
          mainQueue_(mainQueue),
          watch_(std::move(watch)) {}

    base::Result<ui::Film> open(const std::string& videoName) override;

  private:
    std::string directory_;
    std::string helperPath_;
    base::MainQueue& mainQueue_;
    WatchFileDescriptor watch_;
};

}  // namespace platform::video
