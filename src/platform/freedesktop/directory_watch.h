#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/file_descriptor_watch.h"
#include "platform/freedesktop/file_handle.h"

namespace platform::freedesktop {

/// Tells when something in one directory was replaced, moved, removed or written and closed; while
/// the directory does not exist, its parent is watched for it. Main thread.
///
/// Silent where the system has no watches left: what is watched must then be looked at when used.
class DirectoryWatch {
  public:
    DirectoryWatch(std::string directory, const WatchFileDescriptor& watch,
                   std::function<void()> onChange);
    DirectoryWatch(const DirectoryWatch&) = delete;
    DirectoryWatch& operator=(const DirectoryWatch&) = delete;

    /// To be called after the directory was made by this program.
    void follow();

  private:
    void readEvents();

    std::string directory_;
    std::function<void()> onChange_;
    FileHandle events_;
    int watch_ = -1;
    std::shared_ptr<void> token_;
};

}  // namespace platform::freedesktop
