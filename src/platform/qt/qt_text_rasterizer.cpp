#include "platform/qt/qt_text_rasterizer.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QString>
#include <algorithm>
#include <cmath>

namespace platform::qt {

namespace {

QFont toQFont(const overlay::Font& font) {
    QFont result = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    result.setPixelSize(std::max(static_cast<int>(std::lround(font.size)), 1));
    switch (font.weight) {
        case overlay::FontWeight::regular:
            result.setWeight(QFont::Normal);
            break;
        case overlay::FontWeight::medium:
            result.setWeight(QFont::Medium);
            break;
    }
    // Sharp feet and heads, but no letter moved sideways to a whole pixel: the box must be the same
    // at every scale. Grey, since colour fringes would show over an unknown ground.
    result.setHintingPreference(QFont::PreferVerticalHinting);
    result.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return result;
}

}  // namespace

base::Size QtTextRasterizer::measure(const std::string& text, const overlay::Font& font) {
    const QFontMetricsF metrics(toQFont(font));
    return {metrics.horizontalAdvance(QString::fromStdString(text)), metrics.height()};
}

TextBitmap QtTextRasterizer::rasterize(const std::string& text, const overlay::Font& font,
                                       double scale) {
    const QFont qtFont = toQFont(font);
    const QFontMetricsF metrics(qtFont);
    const QString line = QString::fromStdString(text);
    // Letters may reach a little out of their box.
    const int margin = static_cast<int>(std::ceil(scale));
    // The baseline on a whole pixel keeps the feet of the letters sharp.
    const int baseline = margin + static_cast<int>(std::ceil(metrics.ascent() * scale));
    const int descent = static_cast<int>(std::lround(metrics.descent() * scale));

    TextBitmap bitmap;
    bitmap.width =
        static_cast<int>(std::ceil(metrics.horizontalAdvance(line) * scale)) + 2 * margin;
    bitmap.height = baseline + descent + margin;
    bitmap.offsetX = -margin;
    bitmap.offsetY = -(baseline + descent);

    QImage image(bitmap.width, bitmap.height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(qtFont);
    painter.setPen(Qt::white);
    painter.translate(margin, baseline);
    painter.scale(scale, scale);
    painter.drawText(QPointF(0, 0), line);
    painter.end();

    bitmap.coverage.reserve(static_cast<std::size_t>(bitmap.width) *
                            static_cast<std::size_t>(bitmap.height));
    for (int y = 0; y < bitmap.height; ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        std::transform(row, row + bitmap.width, std::back_inserter(bitmap.coverage),
                       [](QRgb pixel) { return static_cast<std::uint8_t>(qAlpha(pixel)); });
    }
    return bitmap;
}

}  // namespace platform::qt
