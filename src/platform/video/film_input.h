#pragma once

#include <cstdint>
#include <memory>

#include "base/result.h"

struct AVFormatContext;
struct AVIOContext;

namespace platform::video {

/// A film file that is open already, taken apart into the packets of its tracks; nothing else is
/// ever opened. One thread.
class FilmInput {
  public:
    /// Reads the tables of the file behind `descriptor`, which outlives this.
    static base::Result<std::unique_ptr<FilmInput>> open(int descriptor);
    ~FilmInput();
    FilmInput(const FilmInput&) = delete;
    FilmInput& operator=(const FilmInput&) = delete;

    [[nodiscard]] AVFormatContext& format() const { return *format_; }
    /// The first track of pictures, -1 without one. The packets of the others are left out.
    [[nodiscard]] int selectVideoTrack();

  private:
    explicit FilmInput(int descriptor) : descriptor_(descriptor) {}
    base::Status openFormat();
    static int read(void* self, std::uint8_t* buffer, int length);
    static std::int64_t seek(void* self, std::int64_t offset, int origin);

    int descriptor_;
    std::int64_t length_ = 0;
    std::int64_t position_ = 0;
    AVIOContext* io_ = nullptr;
    AVFormatContext* format_ = nullptr;
};

}  // namespace platform::video
