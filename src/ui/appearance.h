#pragma once

#include <QColor>
#include <QFont>
#include <QPainterPath>
#include <QPalette>
#include <QRectF>

/// How the parts of the windows look: fonts, tints and shapes. Lengths are points, and one point
/// is one device-independent pixel, for fonts too. Main thread.
namespace ui {

/// Sizes of the system's font.
inline constexpr int titleSize = 17;
inline constexpr int bodySize = 13;
inline constexpr int captionSize = 10;
inline constexpr int capsuleTextSize = 11;

/// The desktop's font in `size`.
QFont systemFont(int size, QFont::Weight weight = QFont::Normal);

/// The label colour, faded to `opacity`.
QColor primaryColor(const QPalette& palette, double opacity = 1);
/// The label colour of what matters less.
QColor secondaryColor(const QPalette& palette);
QColor separatorColor(const QPalette& palette);
/// What the desktop marks a choice with.
QColor accentColor(const QPalette& palette);

// What is as it should be, and what is not; legible as small text on windows and cards.
QColor grantedColor(const QPalette& palette);
QColor refusedColor(const QPalette& palette);

/// What makes a card out of the window's ground, which is the system's: the desktop's colour for
/// windows, or a material of its own that shines through.
QColor cardTint(const QPalette& palette);

/// A rectangle with continuous corners, into which the sides bend slowly: each corner is one curve
/// that begins 1.5 radii before it and goes through the middle of the circular arc. Where the sides
/// are too short for that it begins later; with half the height as radius it is a half circle.
QPainterPath continuousRectangle(const QRectF& rectangle, double radius);
/// The rectangle between two half circles.
QPainterPath capsule(const QRectF& rectangle);

}  // namespace ui
