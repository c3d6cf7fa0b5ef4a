#pragma once

#include <unistd.h>

#include <utility>

namespace platform::freedesktop {

/// Owns a file descriptor and closes it.
class FileHandle {
  public:
    explicit FileHandle(int descriptor = -1) : descriptor_(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileHandle() { static_cast<void>(close()); }

    [[nodiscard]] int get() const { return descriptor_; }
    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    /// 0, or -1 with errno set: some systems report a full disk only here.
    int close() {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor < 0 ? 0 : ::close(descriptor);
    }

  private:
    int descriptor_;
};

}  // namespace platform::freedesktop
