#include "ui/appearance.h"

#include <QApplication>
#include <algorithm>
#include <array>
#include <numbers>

namespace ui {

namespace {

constexpr double secondaryOpacity = 0.6;
constexpr double separatorOpacity = 0.1;
/// How much lighter than the window a card is; on a dark desktop little looks like much.
constexpr float lightCardShare = 0.65F;
constexpr float darkCardShare = 0.055F;
/// How many radii before the corner a continuous corner begins.
constexpr double cornerReach = 1.5;

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightnessF() <
           palette.color(QPalette::WindowText).lightnessF();
}

}  // namespace

QFont systemFont(int size, QFont::Weight weight) {
    QFont font = QApplication::font();
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

QColor primaryColor(const QPalette& palette, double opacity) {
    QColor color = palette.color(QPalette::WindowText);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

QColor secondaryColor(const QPalette& palette) {
    return primaryColor(palette, secondaryOpacity);
}

QColor separatorColor(const QPalette& palette) {
    return primaryColor(palette, separatorOpacity);
}

QColor accentColor(const QPalette& palette) {
    return palette.color(QPalette::Active, QPalette::Highlight);
}

QColor grantedColor(const QPalette& palette) {
    return isDark(palette) ? QColor(0x32, 0xd7, 0x4b) : QColor(0x1a, 0x7f, 0x37);
}

QColor refusedColor(const QPalette& palette) {
    return isDark(palette) ? QColor(0xff, 0x7b, 0x72) : QColor(0xc9, 0x28, 0x22);
}

QColor cardTint(const QPalette& palette) {
    QColor tint(Qt::white);
    tint.setAlphaF(isDark(palette) ? darkCardShare : lightCardShare);
    return tint;
}

QPainterPath continuousRectangle(const QRectF& rectangle, double radius) {
    const double shortHalf = std::min(rectangle.width(), rectangle.height()) / 2;
    const double arc = std::min(radius, shortHalf);
    const double reach = std::min(cornerReach * arc, shortHalf);
    QPainterPath path;
    if (reach <= 0) {
        path.addRect(rectangle);
        return path;
    }
    // With the corner as origin a curve from (reach, 0) to (0, reach), whose handles are `handle`
    // long, has its middle at (4 reach - 3 handle) / 8, the arc of a circle at arc (1 - 1/sqrt 2).
    const double handle = (4 * reach - 8 * arc * (1 - 1 / std::numbers::sqrt2)) / 3;
    const std::array corners{rectangle.topRight(), rectangle.bottomRight(), rectangle.bottomLeft(),
                             rectangle.topLeft()};
    // The way along the sides, clockwise: towards each corner, and on to the next.
    const std::array<QPointF, 5> ways{QPointF(1, 0), QPointF(0, 1), QPointF(-1, 0), QPointF(0, -1),
                                      QPointF(1, 0)};
    path.moveTo(corners[0] - ways[0] * reach);
    for (std::size_t index = 0; index < corners.size(); ++index) {
        const QPointF begin = corners.at(index) - ways.at(index) * reach;
        const QPointF end = corners.at(index) + ways.at(index + 1) * reach;
        path.lineTo(begin);
        path.cubicTo(begin + ways.at(index) * handle, end - ways.at(index + 1) * handle, end);
    }
    path.closeSubpath();
    return path;
}

QPainterPath capsule(const QRectF& rectangle) {
    return continuousRectangle(rectangle, rectangle.height() / 2);
}

}  // namespace ui
