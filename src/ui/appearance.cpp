#include "ui/appearance.h"

#include <QApplication>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace ui {

namespace {

constexpr double secondaryOpacity = 0.6;
constexpr double separatorOpacity = 0.1;
/// How much lighter than the window a card is; on a dark desktop little looks like much.
constexpr double lightCardShare = 0.65;
constexpr double darkCardShare = 0.055;

QColor mixed(const QColor& from, const QColor& to, double share) {
    const auto channel = [share](float a, float b) {
        return static_cast<float>(a + (b - a) * share);
    };
    return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
                            channel(from.blueF(), to.blueF()));
}

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

QColor windowMaterial(const QPalette& palette) {
    return palette.color(QPalette::Window);
}

QColor cardMaterial(const QPalette& palette) {
    return mixed(palette.color(QPalette::Window), Qt::white,
                 isDark(palette) ? darkCardShare : lightCardShare);
}

QPainterPath continuousRectangle(const QRectF& rectangle, double radius) {
    const double shortHalf = std::min(rectangle.width(), rectangle.height()) / 2;
    const double arc = std::min(radius, shortHalf);
    const double reach = std::min(1.5 * arc, shortHalf);
    if (reach <= 0) {
        QPainterPath path;
        path.addRect(rectangle);
        return path;
    }
    // On the diagonal a circle is arc (1 - 1/sqrt 2) away from the corner, the superellipse
    // |x|^n + |y|^n = reach^n is reach (1 - 2^(-1/n)) away; equal for this n.
    const double diagonal = 1 - arc / reach * (1 - 1 / std::numbers::sqrt2);
    const double exponent = -1 / std::log2(diagonal);
    constexpr int steps = 24;
    const std::array<QPointF, 4> corners{rectangle.bottomRight(), rectangle.bottomLeft(),
                                         rectangle.topLeft(), rectangle.topRight()};
    QPolygonF outline;
    for (std::size_t corner = 0; corner < corners.size(); ++corner) {
        const double inwardX = corner == 0 || corner == 3 ? -1 : 1;
        const double inwardY = corner < 2 ? -1 : 1;
        for (int step = 0; step <= steps; ++step) {
            // Clockwise: from the vertical side at the first corner, from the horizontal one at the
            // next.
            const int place = corner % 2 == 0 ? step : steps - step;
            const double angle = std::numbers::pi / 2 * place / steps;
            const double x = std::pow(std::cos(angle), 2 / exponent);
            const double y = std::pow(std::sin(angle), 2 / exponent);
            outline << corners.at(corner) +
                           QPointF(inwardX * reach * (1 - x), inwardY * reach * (1 - y));
        }
    }
    QPainterPath path;
    path.addPolygon(outline);
    path.closeSubpath();
    return path;
}

QPainterPath capsule(const QRectF& rectangle) {
    return continuousRectangle(rectangle, rectangle.height() / 2);
}

}  // namespace ui
