#include "ui/text_label.h"

#include <QPainter>
#include <QStyle>

#include "ui/appearance.h"

namespace ui {

namespace {

QColor colorOf(TextLabel::Prominence prominence, const QPalette& palette) {
    switch (prominence) {
        case TextLabel::Prominence::primary:
            return primaryColor(palette);
        case TextLabel::Prominence::secondary:
            return secondaryColor(palette);
        case TextLabel::Prominence::refused:
            return refusedColor(palette);
    }
    return primaryColor(palette);
}

}  // namespace

TextLabel::TextLabel(const QString& text, const QFont& font, Prominence prominence)
    : QLabel(text), prominence_(prominence) {
    setFont(font);
    setTextFormat(Qt::PlainText);
}

void TextLabel::paintEvent(QPaintEvent* /*event*/) {
    // Not by a palette of its own, which would not change with the desktop's.
    QPainter painter(this);
    painter.setPen(colorOf(prominence_, palette()));
    const auto place = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment()));
    painter.drawText(rect(), wordWrap() ? place | Qt::TextWordWrap : place, text());
}

}  // namespace ui
