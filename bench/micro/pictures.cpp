#include "micro/pictures.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace bench {

namespace {

constexpr std::uint32_t seed = 7;

/// A smooth scene with the grain of a camera: a few waves a channel, then Gaussian noise.
QImage photograph(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    std::mt19937 random(seed);
    std::normal_distribution<float> grain(0.0F, 3.0F);
    // Drawing each value anew would take most of the benchmark's time.
    std::vector<float> grains(65'521);
    std::ranges::generate(grains, [&] { return grain(random); });
    std::size_t next = 0;
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        const float v = static_cast<float>(y) / static_cast<float>(height);
        for (int x = 0; x < width; ++x) {
            const float u = static_cast<float>(x) / static_cast<float>(width);
            const auto level = [&](float a, float b, float c) {
                const float wave = std::sin(a * u + 3 * v) + std::cos(b * v - 2 * u) +
                                   0.4F * std::sin(c * (u + v));
                next = next + 1 < grains.size() ? next + 1 : 0;
                return std::clamp(static_cast<int>(128 + 45 * wave + grains[next]), 0, 255);
            };
            row[x] = qRgb(level(5, 4, 31), level(6, 3, 23), level(4, 7, 41));
        }
    }
    return image;
}

QString sentence(std::mt19937& random, int words) {
    static const QStringList vocabulary =
        QString::fromLatin1(
            "the of a window region capture pixel monitor display quick image "
            "encode channel buffer latency desktop overlay pointer select drag "
            "event server client colour depth scale notify sound file save "
            "clipboard text read line word page frame time cost memory thread")
            .split(QLatin1Char(' '));
    QString text;
    for (int word = 0; word < words; ++word) {
        text += vocabulary[static_cast<qsizetype>(random() %
                                                  static_cast<std::uint32_t>(vocabulary.size()))] +
                QLatin1Char(' ');
    }
    return text;
}

/// Lines of 13-pixel text over `area`, in columns of 900 pixels.
void drawText(QPainter& painter, QRect area, const QString& family, QColor ink, QColor paper) {
    std::mt19937 random(seed);
    painter.setClipRect(area);
    painter.fillRect(area, paper);
    QFont font(family);
    font.setPixelSize(13);
    painter.setFont(font);
    painter.setPen(ink);
    constexpr int columnWidth = 900;
    constexpr int lineHeight = 19;
    for (int left = area.left() + 12; left < area.right(); left += columnWidth) {
        for (int y = area.top() + 24; y < area.bottom(); y += lineHeight) {
            painter.drawText(left, y, sentence(random, 4 + static_cast<int>(random() % 14)));
        }
    }
    painter.setClipping(false);
}

QImage text(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    drawText(painter, image.rect(), QStringLiteral("DejaVu Sans"), QColor(0x222222), Qt::white);
    return image;
}

/// Panels, cards and rounded buttons of one colour each.
QImage flat(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(0xF6F7F9));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x24292F));
    painter.drawRect(0, 0, width, height / 40);
    std::mt19937 random(seed);
    for (int y = height / 20; y < height; y += height / 6) {
        for (int x = width / 40; x < width; x += width / 5) {
            painter.setBrush(Qt::white);
            painter.drawRoundedRect(x, y, width / 6, height / 8, 12, 12);
            painter.setBrush(QColor::fromHsv(static_cast<int>(random() % 360), 140, 220));
            painter.drawRoundedRect(x + 20, y + height / 12, width / 20, height / 40, 6, 6);
        }
    }
    return image;
}

/// Two windows of text and a dark terminal before a wallpaper: a third of the screen is text.
QImage desktop(int width, int height) {
    QImage image = photograph(width, height);
    QPainter painter(&image);
    drawText(painter, {width / 30, height / 27, width * 9 / 20, height * 7 / 10},
             QStringLiteral("DejaVu Sans"), QColor(0x222222), Qt::white);
    drawText(painter, {width * 8 / 15, height / 18, width * 3 / 10, height * 7 / 20},
             QStringLiteral("DejaVu Sans Mono"), QColor(0xCDD6F4), QColor(0x1E1E2E));
    drawText(painter, {width * 3 / 5, height * 9 / 20, width / 3, height * 2 / 5},
             QStringLiteral("DejaVu Sans Mono"), Qt::black, Qt::white);
    return image;
}

QImage noise(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    std::mt19937 random(seed);
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::generate_n(row, width, [&] { return static_cast<QRgb>(random()); });
    }
    return image;
}

QImage draw(PictureKind kind, int width, int height) {
    switch (kind) {
        case PictureKind::desktop:
            return desktop(width, height);
        case PictureKind::photograph:
            return photograph(width, height);
        case PictureKind::text:
            return text(width, height);
        case PictureKind::flat:
            return flat(width, height);
        case PictureKind::noise:
            return noise(width, height);
    }
    return {};
}

}  // namespace

std::string_view nameOf(PictureKind kind) {
    switch (kind) {
        case PictureKind::desktop:
            return "desktop";
        case PictureKind::photograph:
            return "photograph";
        case PictureKind::text:
            return "text";
        case PictureKind::flat:
            return "flat";
        case PictureKind::noise:
            return "noise";
    }
    return "";
}

base::Image drawPicture(PictureKind kind, int width, int height) {
    const QImage drawn = draw(kind, width, height);
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(drawn.sizeInBytes()));
    std::memcpy(pixels.data(), drawn.constBits(), pixels.size());
    return base::Image::fromPixels(width, height, std::move(pixels), base::AlphaChannel::none);
}

}  // namespace bench
