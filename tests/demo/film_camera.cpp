#include "demo/film_camera.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace demo {

namespace {

using desktop::Place;

/// 0 to 1, slowly at both ends.
double eased(double share) {
    return share * share * share * (share * (share * 6 - 15) + 10);
}

QImage imageOf(const desktop::Picture& picture) {
    QImage image(picture.width, picture.height, QImage::Format_RGB32);
    for (int y = 0; y < picture.height; ++y) {
        std::copy_n(picture.pixels.begin() + std::ptrdiff_t{y} * picture.width, picture.width,
                    reinterpret_cast<std::uint32_t*>(image.scanLine(y)));
    }
    return image;
}

}  // namespace

FilmCamera::FilmCamera(desktop::Desktop& desktop, std::filesystem::path output, Place pointer)
    : desktop_(desktop),
      output_(std::move(output)),
      stillness_(desktop.client()),
      pointer_(pointer) {
    // The extension answers nothing before its version has been asked for.
    xcb_connection_t* connection = desktop_.client().get();
    const desktop::Reply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        connection, xcb_xfixes_query_version(connection, 4, 0), nullptr));
    desktop_.input().moveTo(pointer_);
}

void FilmCamera::hold(int pictures) {
    for (int picture = 0; picture < pictures; ++picture) {
        take();
    }
}

void FilmCamera::glide(Place place, int pictures) {
    const Place from = pointer_;
    for (int picture = 1; picture <= pictures; ++picture) {
        const double share = eased(static_cast<double>(picture) / pictures);
        pointer_ = {static_cast<int>(std::lround(std::lerp(from.x, place.x, share))),
                    static_cast<int>(std::lround(std::lerp(from.y, place.y, share)))};
        desktop_.input().moveTo(pointer_);
        take();
    }
}

void FilmCamera::pressButton() {
    desktop_.input().pressButton();
    button_ = Button::down;
}

void FilmCamera::releaseButton() {
    desktop_.input().releaseButton();
    button_ = Button::up;
}

void FilmCamera::fadeToBeginning(int pictures) {
    const QImage from = last_;
    for (int picture = 1; picture <= pictures; ++picture) {
        QImage mixed = from;
        QPainter painter(&mixed);
        painter.setOpacity(eased(static_cast<double>(picture) / (pictures + 1)));
        painter.drawImage(0, 0, first_);
        painter.end();
        keep(mixed);
    }
}

void FilmCamera::take() {
    caption_.step();
    ring_ = button_ == Button::down ? std::min(ring_ + 0.34, 1.0) : std::max(ring_ - 0.12, 0.0);
    stillness_.wait();
    QImage picture = imageOf(desktop::readScreen(desktop_.client()));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    caption_.paint(painter);
    paintRing(painter);
    paintPointer(painter);
    painter.end();
    keep(picture);
}

void FilmCamera::keep(const QImage& picture) {
    char name[16];
    std::snprintf(name, sizeof name, "%04d.png", taken_);
    if (!picture.save(QString::fromStdString(output_ / name), "PNG", 80)) {
        throw std::runtime_error("A picture of the film could not be written.");
    }
    first_ = taken_ == 0 ? picture : first_;
    last_ = picture;
    ++taken_;
}

void FilmCamera::paintRing(QPainter& painter) const {
    if (ring_ <= 0) {
        return;
    }
    const double radius = button_ == Button::down ? 18 + 8 * ring_ : 26 + 22 * (1 - ring_);
    painter.setOpacity(ring_);
    painter.setPen(QPen(QColor(0xff, 0xc2, 0x6b), 5));
    painter.setBrush(QColor(0xff, 0xc2, 0x6b, 0x50));
    painter.drawEllipse(QPointF(pointer_.x, pointer_.y), radius, radius);
    painter.setOpacity(1);
}

void FilmCamera::paintPointer(QPainter& painter) const {
    xcb_connection_t* connection = desktop_.client().get();
    const desktop::Reply<xcb_xfixes_get_cursor_image_reply_t> cursor(
        xcb_xfixes_get_cursor_image_reply(connection, xcb_xfixes_get_cursor_image(connection),
                                          nullptr));
    if (!cursor) {
        throw std::runtime_error("The pointer's picture could not be read.");
    }
    const QImage image(
        reinterpret_cast<const uchar*>(xcb_xfixes_get_cursor_image_cursor_image(cursor.get())),
        cursor->width, cursor->height, QImage::Format_ARGB32_Premultiplied);
    painter.drawImage(pointer_.x - cursor->xhot, pointer_.y - cursor->yhot, image);
}

}  // namespace demo
