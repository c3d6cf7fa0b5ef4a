#include "ui/check_box.h"

#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "ui/appearance.h"

namespace ui {

namespace {

constexpr int boxSize = 14;
constexpr int boxToLabel = 6;
constexpr double boxRadius = 4;
constexpr double borderOpacity = 0.28;
constexpr double pressedOpacity = 0.12;
constexpr double hoveredOpacity = 0.05;
constexpr double tickWidth = 1.8;

}  // namespace

CheckBox::CheckBox(const QString& label) : QCheckBox(label) {
    setFont(systemFont(bodySize));
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize CheckBox::sizeHint() const {
    return {boxSize + boxToLabel + fontMetrics().horizontalAdvance(text()),
            std::max(boxSize + 2, fontMetrics().height())};
}

QRect CheckBox::boxRectangle() const {
    const QRect box(0, (height() - boxSize) / 2, boxSize, boxSize);
    return QStyle::visualRect(layoutDirection(), rect(), box);
}

bool CheckBox::hitButton(const QPoint& place) const {
    return rect().contains(place);
}

void CheckBox::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBox(painter);
    const QRect label = rect().adjusted(boxSize + boxToLabel, 0, 0, 0);
    painter.setPen(primaryColor(palette()));
    const auto alignment =
        QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(QStyle::visualRect(layoutDirection(), rect(), label),
                     static_cast<int>(alignment) | Qt::TextSingleLine, text());
}

void CheckBox::paintBox(QPainter& painter) const {
    const QRectF box = boxRectangle();
    const QPainterPath outline = continuousRectangle(box, boxRadius);
    if (isChecked()) {
        painter.fillPath(outline, accentColor(palette()));
    } else {
        painter.fillPath(outline, palette().color(QPalette::Base));
        painter.strokePath(continuousRectangle(box.adjusted(0.5, 0.5, -0.5, -0.5), boxRadius - 0.5),
                           QPen(primaryColor(palette(), borderOpacity), 1));
    }
    if (isDown() || underMouse()) {
        painter.fillPath(outline,
                         primaryColor(palette(), isDown() ? pressedOpacity : hoveredOpacity));
    }
    if (isChecked()) {
        const QPolygonF tick{box.topLeft() + QPointF(3.6, 7.4), box.topLeft() + QPointF(6.0, 9.9),
                             box.topLeft() + QPointF(10.5, 4.4)};
        painter.setPen(QPen(palette().color(QPalette::HighlightedText), tickWidth, Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(tick);
    }
}

}  // namespace ui
