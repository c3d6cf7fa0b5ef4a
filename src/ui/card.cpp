#include "ui/card.h"

#include <QPainter>

#include "ui/appearance.h"

namespace ui {

namespace {

constexpr double strokeWidth = 0.5;
constexpr double strokeOpacity = 0.15;

}  // namespace

void Card::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(continuousRectangle(rect(), cornerRadius_), cardTint(palette()));
    // Inside, where nothing of the stroke is cut off.
    constexpr double inset = strokeWidth / 2;
    const QRectF middle = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    painter.strokePath(continuousRectangle(middle, cornerRadius_ - inset),
                       QPen(primaryColor(palette(), strokeOpacity), strokeWidth));
}

}  // namespace ui
