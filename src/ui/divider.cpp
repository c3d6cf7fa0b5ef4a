#include "ui/divider.h"

#include <QPainter>

#include "ui/appearance.h"

namespace ui {

Divider::Divider(Qt::Orientation orientation) {
    if (orientation == Qt::Horizontal) {
        setFixedHeight(1);
    } else {
        setFixedWidth(1);
    }
}

void Divider::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), separatorColor(palette()));
}

}  // namespace ui
