#include "platform/qt/desktop_palette.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <array>
#include <utility>

namespace platform::qt {

namespace {

QPalette darkPalette() {
    const QColor text(0xf2, 0xf2, 0xf2);
    QPalette palette(QColor(0x3a, 0x3a, 0x3d), QColor(0x2b, 0x2b, 0x2e));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x26, 0x28));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3a, 0x3d));
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x84));
    }
    palette.setColor(QPalette::PlaceholderText, QColor(0x98, 0x98, 0x9c));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8f, 0xf5));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xae, 0xff));
    return palette;
}

/// Whether nobody but the toolkit has chosen the application's colours: they are those of its plain
/// style, in light.
bool isUnthemed() {
    const std::unique_ptr<QStyle> plain(QStyleFactory::create(QStringLiteral("fusion")));
    const QPalette standard = plain ? plain->standardPalette() : QPalette();
    const QPalette current = QApplication::palette();
    constexpr std::array roles{QPalette::Window, QPalette::WindowText, QPalette::Base,
                               QPalette::Text,   QPalette::Button,     QPalette::Highlight};
    for (const auto role : roles) {
        if (current.color(role) != standard.color(role)) {
            return false;
        }
    }
    return current.color(QPalette::Window).lightness() >
           current.color(QPalette::WindowText).lightness();
}

}  // namespace

DesktopPalette::DesktopPalette(Bus bus) : bus_(std::move(bus)) {}

void DesktopPalette::follow(QWidget& window) {
    ++windows_;
    QObject::connect(&window, &QObject::destroyed, &receiver_, [this] {
        if (--windows_ == 0) {
            watch_.reset();
        }
    });
    QMetaObject::invokeMethod(
        &receiver_, [this] { startWatching(); }, Qt::QueuedConnection);
}

void DesktopPalette::startWatching() {
    if (windows_ == 0 || watch_) {
        return;
    }
    if (const auto bus = bus_()) {
        watch_ =
            std::make_unique<ColorSchemeWatch>(*bus, [this](ColorScheme scheme) { apply(scheme); });
    }
}

void DesktopPalette::apply(ColorScheme scheme) {
    switch (scheme) {
        case ColorScheme::dark:
            if (colors_ == Colors::desktops && isUnthemed()) {
                colors_ = Colors::dark;
                QApplication::setPalette(darkPalette());
            }
            return;
        case ColorScheme::light:
        case ColorScheme::unstated:
            if (std::exchange(colors_, Colors::desktops) == Colors::dark) {
                QApplication::setPalette(QPalette());
            }
            return;
    }
}

}  // namespace platform::qt
