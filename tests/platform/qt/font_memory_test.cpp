#include "platform/qt/font_memory.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QLabel>
#include <QPainter>
#include <fstream>
#include <string>

#include "platform/qt/qt_session.h"

namespace {

/// Font files that this process has mapped.
int openFonts() {
    std::ifstream maps("/proc/self/maps");
    int count = 0;
    for (std::string line; std::getline(maps, line);) {
        count += line.ends_with(".ttf") || line.ends_with(".otf") ? 1 : 0;
    }
    return count;
}

QImage drawn(const QFont& font) {
    QImage image(200, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    painter.drawText(10, 30, QStringLiteral("Quick fox"));
    return image;
}

TEST(FontMemory, the_fonts_of_closed_windows_are_closed) {
    qt_tests::QtSession::shared();
    drawn(QFont());
    ASSERT_GT(openFonts(), 0);

    platform::qt::giveFontsBack();

    EXPECT_EQ(openFonts(), 0);
}

TEST(FontMemory, a_font_that_lives_on_draws_the_same_again) {
    qt_tests::QtSession::shared();
    const QFont font(QStringLiteral("DejaVu Sans"), 14);
    const QImage before = drawn(font);

    platform::qt::giveFontsBack();

    EXPECT_EQ(drawn(font), before);
}

TEST(FontMemory, the_fonts_of_a_window_that_is_shown_stay_open) {
    qt_tests::QtSession::shared();
    QLabel window(QStringLiteral("Quick fox"));
    window.show();
    ASSERT_TRUE(qt_tests::runUntil([&] { return window.isVisible(); }));
    drawn(QFont());
    const int before = openFonts();

    platform::qt::giveFontsBack();

    EXPECT_GT(before, 0);
    EXPECT_EQ(openFonts(), before);
}

}  // namespace
