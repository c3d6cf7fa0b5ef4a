#include "ui/push_button.h"

#include <QKeyEvent>
#include <QPainter>

#include "ui/appearance.h"

namespace ui {

namespace {

constexpr double borderWidth = 0.5;
constexpr double borderOpacity = 0.25;
constexpr double groundOpacity = 0.06;
constexpr double hoveredOpacity = 0.05;
constexpr double pressedOpacity = 0.14;

/// Points.
struct Measures {
    int textSize;
    int horizontalPadding;
    int verticalPadding;
    double cornerRadius;
};

Measures measuresOf(PushButton::ControlSize size) {
    switch (size) {
        case PushButton::ControlSize::small:
            return {capsuleTextSize, 8, 3, 5};
        case PushButton::ControlSize::regular:
            return {bodySize, 12, 4, 6};
        case PushButton::ControlSize::large:
            return {bodySize, 18, 7, 8};
    }
    return {};
}

}  // namespace

PushButton::PushButton(const QString& label, Style style, ControlSize controlSize)
    : QPushButton(label), style_(style), controlSize_(controlSize) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setControlSize(controlSize);
}

void PushButton::setControlSize(ControlSize controlSize) {
    controlSize_ = controlSize;
    setFont(systemFont(measuresOf(controlSize).textSize));
    updateGeometry();
    update();
}

double PushButton::cornerRadius() const {
    return measuresOf(controlSize_).cornerRadius;
}

QSize PushButton::sizeHint() const {
    const Measures measures = measuresOf(controlSize_);
    return {fontMetrics().horizontalAdvance(text()) + 2 * measures.horizontalPadding,
            fontMetrics().height() + 2 * measures.verticalPadding};
}

void PushButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QPushButton::keyPressEvent(event);
}

void PushButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter);
    painter.setPen(style_ == Style::prominent ? palette().color(QPalette::HighlightedText)
                                              : primaryColor(palette()));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

void PushButton::paintGround(QPainter& painter) const {
    const QPainterPath outline = continuousRectangle(rect(), cornerRadius());
    switch (style_) {
        case Style::bordered: {
            painter.fillPath(outline, primaryColor(palette(), groundOpacity));
            constexpr double inset = borderWidth / 2;
            const QRectF middle = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
            painter.strokePath(continuousRectangle(middle, cornerRadius() - inset),
                               QPen(primaryColor(palette(), borderOpacity), borderWidth));
            break;
        }
        case Style::prominent:
            painter.fillPath(outline, accentColor(palette()));
            break;
    }
    if (isDown() || underMouse()) {
        painter.fillPath(outline,
                         primaryColor(palette(), isDown() ? pressedOpacity : hoveredOpacity));
    }
}

}  // namespace ui
