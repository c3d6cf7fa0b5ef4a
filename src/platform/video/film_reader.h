#pragma once

#include <chrono>
#include <memory>

#include "base/result.h"
#include "platform/video/film_input.h"
#include "platform/video/frame_timeline.h"

struct AVCodecContext;
struct AVFrame;
struct AVPacket;

namespace platform::video {

/// A picture as it was coded.
struct DecodedFrame {
    /// Good until the next one is read.
    AVFrame* frame = nullptr;
    std::chrono::microseconds time{0};
};

/// Decodes the pictures of a film endlessly, on the thread that asks. One thread.
class FilmReader {
  public:
    /// Of the file behind `descriptor`, which outlives this. The kind `notFound` says that it has
    /// no track of pictures.
    static base::Result<std::unique_ptr<FilmReader>> open(int descriptor);
    ~FilmReader();
    FilmReader(const FilmReader&) = delete;
    FilmReader& operator=(const FilmReader&) = delete;

    /// What is damaged is skipped; an error when a whole round has no picture.
    base::Result<DecodedFrame> next();

  private:
    explicit FilmReader(std::unique_ptr<FilmInput> input) : input_(std::move(input)) {}
    base::Status openTrack();
    void feed();
    base::Status beginRound();
    [[nodiscard]] FrameTiming timingOfFrame() const;

    std::unique_ptr<FilmInput> input_;
    int track_ = -1;
    AVCodecContext* codec_ = nullptr;
    AVPacket* packet_ = nullptr;
    AVFrame* frame_ = nullptr;
    FrameTimeline timeline_;
    enum class Round { empty, hasPictures };
    Round round_ = Round::empty;
    /// What was wrong last, for the film that has no picture at all.
    int lastError_ = 0;
    /// How many were wrong in a row.
    int damageCount_ = 0;
};

}  // namespace platform::video
