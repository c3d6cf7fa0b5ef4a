#include "ui/granted_label.h"

#include <QPainter>

#include "ui/appearance.h"

namespace ui {

namespace {

constexpr int horizontalPadding = 8;
constexpr int verticalPadding = 3;
constexpr float groundOpacity = 0.1F;

}  // namespace

GrantedLabel::GrantedLabel() : QLabel(QStringLiteral("Granted")) {
    setFont(systemFont(capsuleTextSize, QFont::Medium));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize GrantedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 2 * horizontalPadding,
            fontMetrics().height() + 2 * verticalPadding};
}

void GrantedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = grantedColor(palette());
    QColor ground = color;
    ground.setAlphaF(groundOpacity);
    painter.fillPath(capsule(rect()), ground);
    painter.setPen(color);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

}  // namespace ui
