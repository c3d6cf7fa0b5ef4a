#include "ui/focus_ring.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>

#include "ui/appearance.h"
#include "ui/check_box.h"
#include "ui/push_button.h"

namespace ui {

namespace {

/// The ring lies this far outside of the control, and is as wide.
constexpr int ringWidth = 3;
constexpr double checkBoxRadius = 4;
constexpr double ringOpacity = 0.5;

}  // namespace

FocusRing::FocusRing(QWidget& view) : QFocusFrame(&view) {
    hide();
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*old*/, QWidget* focus) { follow(focus); });
}

void FocusRing::follow(QWidget* focus) {
    if (control_ != nullptr) {
        control_->removeEventFilter(this);
    }
    const bool isMine = focus != nullptr && parentWidget()->isAncestorOf(focus) &&
                        focus->window() == parentWidget()->window();
    control_ = isMine ? focus : nullptr;
    if (control_ != nullptr) {
        control_->installEventFilter(this);
    }
    place();
}

void FocusRing::place() {
    const bool isVisible = control_ != nullptr && control_->isVisible() &&
                           control_->window()->testAttribute(Qt::WA_KeyboardFocusChange);
    setVisible(isVisible);
    if (!isVisible) {
        return;
    }
    const auto* box = dynamic_cast<const CheckBox*>(control_.data());
    const QRect inside = box != nullptr ? box->boxRectangle() : control_->rect();
    const QPoint origin = control_->mapTo(parentWidget(), inside.topLeft());
    setGeometry(
        QRect(origin, inside.size()).adjusted(-ringWidth, -ringWidth, ringWidth, ringWidth));
    raise();
}

bool FocusRing::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::Hide:
        case QEvent::MouseButtonPress:
            place();
            break;
        default:
            break;
    }
    return false;
}

QPainterPath FocusRing::outlineAround(const QRectF& middle) const {
    constexpr double half = ringWidth / 2.0;
    if (dynamic_cast<const CheckBox*>(control_.data()) != nullptr) {
        return continuousRectangle(middle, checkBoxRadius + half);
    }
    if (const auto* button = dynamic_cast<const PushButton*>(control_.data())) {
        return continuousRectangle(middle, button->cornerRadius() + half);
    }
    return capsule(middle);
}

void FocusRing::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor color = accentColor(palette());
    color.setAlphaF(ringOpacity);
    constexpr double half = ringWidth / 2.0;
    const QRectF middle = QRectF(rect()).adjusted(half, half, -half, -half);
    painter.strokePath(outlineAround(middle), QPen(color, ringWidth));
}

}  // namespace ui
