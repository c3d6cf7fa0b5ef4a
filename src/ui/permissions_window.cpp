#include "ui/permissions_window.h"

#include <QShowEvent>
#include <QVBoxLayout>

namespace ui {

PermissionsWindow::PermissionsWindow(const Mediator& mediator) : control_(mediator.control) {
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSizeConstraint(QLayout::SetFixedSize);
    stack->addWidget(new FirstRunModal(mediator.panel));
}

void PermissionsWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Not when the window manager brings a minimised window back.
    if (!event->spontaneous()) {
        control_.noteShown();
    }
}

}  // namespace ui
