#include "demo/film_caption.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

namespace demo {

namespace {

// Pixels of the film, which the permissions window shows at a third of its size.
constexpr double middleX = 640;
constexpr double middleY = 652;
constexpr double plateHeight = 92;
constexpr double margin = 24;
constexpr double capHeight = 58;
constexpr double capPadding = 18;
constexpr double gap = 12;
constexpr double textGap = 22;
constexpr double tickSize = 34;

QFont captionFont(int pixelSize) {
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(pixelSize);
    font.setBold(true);
    return font;
}

QFont capFont() {
    return captionFont(31);
}

QFont textFont() {
    return captionFont(35);
}

double capWidth(const QString& key) {
    return std::max(capHeight, QFontMetricsF(capFont()).horizontalAdvance(key) + 2 * capPadding);
}

/// Takes `value` towards `target`, at most `step` at a time.
double towards(double value, double target, double step) {
    return value < target ? std::min(value + step, target) : std::max(value - step, target);
}

void paintCap(QPainter& painter, const QString& key, QRectF place, double depth) {
    constexpr double height = 7;
    const QRectF top = place.translated(0, depth * height);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x8b, 0x93, 0xb0));
    painter.drawRoundedRect(place.translated(0, height), 11, 11);
    const QColor resting(0xfb, 0xfc, 0xff);
    const QColor pressed(0xff, 0xc2, 0x6b);
    painter.setBrush(
        QColor::fromRgbF(static_cast<float>(std::lerp(resting.redF(), pressed.redF(), depth)),
                         static_cast<float>(std::lerp(resting.greenF(), pressed.greenF(), depth)),
                         static_cast<float>(std::lerp(resting.blueF(), pressed.blueF(), depth))));
    painter.drawRoundedRect(top, 11, 11);
    painter.setPen(QColor(0x1a, 0x20, 0x38));
    painter.setFont(capFont());
    painter.drawText(top, Qt::AlignCenter, key);
}

void paintTick(QPainter& painter, double left, double middle) {
    painter.setPen(QPen(QColor(0x6f, 0xe3, 0x9a), 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const QPointF points[] = {{left + 3, middle + 1},
                              {left + tickSize * 0.38, middle + tickSize * 0.36},
                              {left + tickSize - 2, middle - tickSize * 0.38}};
    painter.drawPolyline(points, 3);
}

}  // namespace

double FilmCaption::Content::width() const {
    double width = 0;
    for (const QString& key : keys) {
        width += capWidth(key) + gap;
    }
    width += keys.empty() ? 0 : textGap - gap;
    width += mark == Mark::done ? tickSize + textGap * 0.7 : 0;
    return width + QFontMetricsF(textFont()).horizontalAdvance(text);
}

void FilmCaption::show(std::vector<QString> keys, QString text, Mark mark) {
    leaving_ = std::move(shown_);
    const std::vector<double> depths(keys.size(), 0.0);
    shown_ = {std::move(keys), std::move(text), mark, depths, 0};
    pressed_ = 0;
    if (leaving_.isEmpty()) {
        width_ = shown_.width();
    }
}

void FilmCaption::step() {
    leaving_.opacity = towards(leaving_.opacity, 0, 0.25);
    if (leaving_.opacity <= 0) {
        shown_.opacity = towards(shown_.opacity, 1, 0.2);
    }
    for (std::size_t index = 0; index < shown_.depths.size(); ++index) {
        shown_.depths[index] = towards(shown_.depths[index], index < pressed_ ? 1 : 0, 0.4);
    }
    if (!shown_.isEmpty()) {
        width_ += (shown_.width() - width_) * 0.4;
    }
    plateOpacity_ = towards(plateOpacity_, shown_.isEmpty() ? 0 : 1, 0.2);
}

void FilmCaption::paint(QPainter& painter) const {
    if (plateOpacity_ <= 0) {
        return;
    }
    const QRectF plate(middleX - width_ / 2 - margin, middleY - plateHeight / 2,
                       width_ + 2 * margin, plateHeight);
    painter.setPen(Qt::NoPen);
    painter.setOpacity(plateOpacity_);
    painter.setBrush(QColor(0x12, 0x17, 0x2c, 0xe6));
    painter.drawRoundedRect(plate, 22, 22);
    painter.setClipRect(plate);
    for (const Content* content : {&leaving_, &shown_}) {
        painter.setOpacity(plateOpacity_ * content->opacity);
        paintContent(painter, *content, middleX - content->width() / 2, middleY);
    }
    painter.setOpacity(1);
    painter.setClipping(false);
}

void FilmCaption::paintContent(QPainter& painter, const Content& content, double left,
                               double middle) {
    for (std::size_t index = 0; index < content.keys.size(); ++index) {
        const double width = capWidth(content.keys[index]);
        paintCap(painter, content.keys[index], {left, middle - capHeight / 2 - 4, width, capHeight},
                 content.depths[index]);
        left += width + gap;
    }
    left += content.keys.empty() ? 0 : textGap - gap;
    if (content.mark == Mark::done) {
        paintTick(painter, left, middle);
        left += tickSize + textGap * 0.7;
    }
    painter.setPen(QColor(0xff, 0xff, 0xff));
    painter.setFont(textFont());
    painter.drawText(QRectF(left, middle - plateHeight / 2, 1280, plateHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, content.text);
}

}  // namespace demo
