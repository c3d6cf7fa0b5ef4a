#include "ui/text_label.h"

#include <QPainter>
#include <QStyle>

#include "ui/appearance.h"

namespace ui {

TextLabel::TextLabel(const QString& text, const QFont& font, Prominence prominence)
    : QLabel(text), prominence_(prominence) {
    setFont(font);
    setTextFormat(Qt::PlainText);
}

void TextLabel::paintEvent(QPaintEvent* /*event*/) {
    // Not by a palette of its own, which would not change with the desktop's.
    QPainter painter(this);
    painter.setPen(prominence_ == Prominence::primary ? primaryColor(palette())
                                                      : secondaryColor(palette()));
    painter.drawText(
        rect(), static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())), text());
}

}  // namespace ui
