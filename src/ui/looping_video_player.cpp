#include "ui/looping_video_player.h"

#include <QBrush>
#include <QEvent>
#include <QImage>
#include <QPainter>
#include <QTransform>
#include <chrono>
#include <cmath>

#include "ui/appearance.h"

namespace ui {

namespace {

/// The same pixels, which stay where they are.
QImage viewOf(const base::Image& image) {
    return {image.row(0), image.width(), image.height(),
            static_cast<qsizetype>(image.bytesPerRow()), QImage::Format_RGB32};
}

}  // namespace

LoopingVideoPlayer::LoopingVideoPlayer(const std::string& videoName, const Mediator& mediator,
                                       QWidget* parent)
    : QWidget(parent),
      coordinator_(videoName,
                   {.loopers = mediator.loopers,
                    .log = mediator.log,
                    .now = [] { return std::chrono::steady_clock::now(); },
                    .viewSize = [this] { return sizeInPixels(); },
                    .wakeAfter =
                        [this](std::chrono::microseconds delay) {
                            timer_.start(std::chrono::ceil<std::chrono::milliseconds>(delay));
                        },
                    .cancelWake = [this] { timer_.stop(); },
                    .show =
                        [this](const base::Image& image) {
                            image_ = image;
                            update();
                        },
                    .embed = [this](VideoView* view) { embed(view); }}) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { coordinator_.wake(); });
    // A picture and nothing to operate.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
}

LoopingVideoPlayer::~LoopingVideoPlayer() {
    embed(nullptr);
}

void LoopingVideoPlayer::embed(VideoView* view) {
    // The container first: it refers to the view.
    delete container_;
    view_ = view;
    if (view_ == nullptr) {
        return;
    }
    view_->setCornerRadius(cornerRadius_);
    QWindow* const native = QWindow::fromWinId(view_->handle());
    if (native == nullptr) {
        return;
    }
    container_ = createWindowContainer(native, this);
    container_->setFocusPolicy(Qt::NoFocus);
    container_->setGeometry(rect());
    container_->show();
}

void LoopingVideoPlayer::setCornerRadius(double radius) {
    cornerRadius_ = radius;
    if (view_ != nullptr) {
        view_->setCornerRadius(radius);
    }
    update();
}

bool LoopingVideoPlayer::eventFilter(QObject* watched, QEvent* event) {
    // Through the event filter and not the own events: a window manager that keeps the windows of
    // another workspace mapped marks them as minimised, and a child widget does not hear of it.
    if (event->type() == QEvent::Expose || event->type() == QEvent::WindowStateChange) {
        QMetaObject::invokeMethod(
            this, [this] { playOrPause(); }, Qt::QueuedConnection);
    }
    return QWidget::eventFilter(watched, event);
}

void LoopingVideoPlayer::showEvent(QShowEvent* /*event*/) {
    watchWindow();
    playOrPause();
}

void LoopingVideoPlayer::hideEvent(QHideEvent* /*event*/) {
    playOrPause();
}

void LoopingVideoPlayer::resizeEvent(QResizeEvent* /*event*/) {
    if (container_) {
        container_->setGeometry(rect());
    }
    playOrPause();
}

void LoopingVideoPlayer::watchWindow() {
    QWindow* const handle = window()->windowHandle();
    if (handle == window_) {
        return;
    }
    if (window_) {
        window_->removeEventFilter(this);
    }
    window_ = handle;
    if (window_) {
        window_->installEventFilter(this);
    }
}

bool LoopingVideoPlayer::isOnScreen() const {
    return isVisible() && !sizeInPixels().isEmpty() && window_ && window_->isExposed() &&
           (window_->windowStates() & Qt::WindowMinimized) == 0;
}

base::PixelSize LoopingVideoPlayer::sizeInPixels() const {
    const double ratio = devicePixelRatioF();
    return {static_cast<int>(std::lround(width() * ratio)),
            static_cast<int>(std::lround(height() * ratio))};
}

void LoopingVideoPlayer::playOrPause() {
    if (isOnScreen()) {
        coordinator_.play();
    } else {
        coordinator_.pause();
    }
}

void LoopingVideoPlayer::paintEvent(QPaintEvent* /*event*/) {
    if (image_.isEmpty()) {
        return;
    }
    QPainter painter(this);
    const QImage picture = viewOf(image_);
    if (cornerRadius_ <= 0) {
        painter.drawImage(rect(), picture);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    QBrush brush(picture);
    // Pixels of the picture are not points, and after a change of size it is not as large as this.
    brush.setTransform(QTransform::fromScale(static_cast<double>(width()) / picture.width(),
                                             static_cast<double>(height()) / picture.height()));
    painter.fillPath(continuousRectangle(rect(), cornerRadius_), brush);
}

}  // namespace ui
