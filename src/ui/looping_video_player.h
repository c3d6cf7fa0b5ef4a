#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <string>

#include "base/image.h"
#include "base/log.h"
#include "ui/video_coordinator.h"
#include "ui/video_looper.h"

namespace ui {

/// Shows a film of the program's own, silently and endlessly, filling its frame, without controls.
/// Blank, which is to say transparent, until the first picture is there, and for good when there is
/// none. Where the system shows films by itself, its view fills this one. Plays only while it is on
/// the screen. Main thread.
class LoopingVideoPlayer final : public QWidget {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        VideoLooperFactory& loopers;
        base::Log& log;
    };
    using Coordinator = VideoCoordinator;

    /// `videoName` is the film's base name among the resources: "animation" for animation.mp4.
    LoopingVideoPlayer(const std::string& videoName, const Mediator& mediator,
                       QWidget* parent = nullptr);
    ~LoopingVideoPlayer() override;
    LoopingVideoPlayer(const LoopingVideoPlayer&) = delete;
    LoopingVideoPlayer& operator=(const LoopingVideoPlayer&) = delete;

    /// Clips the picture to a rectangle with continuous corners of this radius, in points; 0, as at
    /// first, for square ones.
    void setCornerRadius(double radius);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] bool isOnScreen() const;
    [[nodiscard]] base::PixelSize sizeInPixels() const;
    void playOrPause();
    void watchWindow();
    void embed(VideoView* view);

    QTimer timer_;
    double cornerRadius_ = 0;
    /// What is on the screen.
    base::Image image_;
    /// The system's own view of the film and what holds it among the widgets, where there is one.
    VideoView* view_ = nullptr;
    QPointer<QWidget> container_;
    /// The window that it is in, whose exposure and state are watched.
    QPointer<QWindow> window_;
    Coordinator coordinator_;
};

}  // namespace ui
