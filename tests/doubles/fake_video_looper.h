#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ui/video_looper.h"

namespace doubles {

/// Hands out films whose pictures come when the test says so, or that the system shows.
class FakeVideoLoopers final : public ui::VideoLooperFactory {
  public:
    base::Result<ui::Film> open(const std::string& videoName) override {
        opened.push_back(videoName);
        if (openError) {
            return *openError;
        }
        if (viewHandle) {
            return ui::Film(std::make_unique<View>(*this));
        }
        return ui::Film(std::make_unique<Looper>(*this));
    }

    /// Answers the request that is open with a picture of the size that was asked for, all of one
    /// grey.
    void deliver(std::chrono::microseconds time, std::uint8_t grey = 0x80) {
        const base::PixelSize size = requests.back();
        std::vector<std::uint8_t> pixels(
            static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * 4, grey);
        finish(ui::VideoFrame{base::Image::fromPixels(size.width, size.height, std::move(pixels),
                                                      base::AlphaChannel::none),
                              time});
    }
    void fail(const base::Error& error) { finish(error); }
    /// Answers for the system's view.
    void answerView(const base::Status& result) {
        const auto completion = std::exchange(viewPending_, nullptr);
        completion(result);
    }

    [[nodiscard]] bool hasRequest() const { return static_cast<bool>(pending_); }
    [[nodiscard]] int openCount() const { return openCount_; }

    std::optional<base::Error> openError;
    std::vector<std::string> opened;
    /// The sizes that pictures were asked for in.
    std::vector<base::PixelSize> requests;
    /// The system's view, when films are to be shown in one.
    std::optional<std::uintptr_t> viewHandle;
    double cornerRadius = 0;

  private:
    class View final : public ui::VideoView {
      public:
        explicit View(FakeVideoLoopers& owner) : owner_(owner) { ++owner_.openCount_; }
        ~View() override {
            --owner_.openCount_;
            owner_.viewPending_ = nullptr;
        }
        View(const View&) = delete;
        View& operator=(const View&) = delete;
        [[nodiscard]] std::uintptr_t handle() const override { return *owner_.viewHandle; }
        void setCornerRadius(double radius) override { owner_.cornerRadius = radius; }
        void play(Completion completion) override { owner_.viewPending_ = std::move(completion); }

      private:
        FakeVideoLoopers& owner_;
    };
    class Looper final : public ui::VideoLooper {
      public:
        explicit Looper(FakeVideoLoopers& owner) : owner_(owner) { ++owner_.openCount_; }
        ~Looper() override {
            --owner_.openCount_;
            owner_.pending_ = nullptr;
        }
        Looper(const Looper&) = delete;
        Looper& operator=(const Looper&) = delete;
        void nextFrame(base::PixelSize size, Completion completion) override {
            owner_.requests.push_back(size);
            owner_.pending_ = std::move(completion);
        }

      private:
        FakeVideoLoopers& owner_;
    };

    void finish(base::Result<ui::VideoFrame> result) {
        const auto completion = std::exchange(pending_, nullptr);
        completion(std::move(result));
    }

    ui::VideoLooper::Completion pending_;
    ui::VideoView::Completion viewPending_;
    int openCount_ = 0;
};

}  // namespace doubles
