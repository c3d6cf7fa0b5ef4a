#include "platform/qt/quiet_toolkit.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <filesystem>
#include <iterator>

#include "desktop/wait.h"
#include "platform/qt/qt_session.h"

namespace {

std::ptrdiff_t threadCount() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST(QuietToolkit, the_threads_of_a_large_painting_end_soon_after_it) {
    qt_tests::QtSession::shared();
    platform::qt::quietToolkit();
    const auto before = threadCount();
    QImage picture(4000, 2000, QImage::Format_ARGB32_Premultiplied);
    QLinearGradient colors(0, 0, 4000, 2000);
    colors.setColorAt(0, Qt::red);
    colors.setColorAt(1, Qt::blue);

    QPainter(&picture).fillRect(picture.rect(), colors);
    picture.convertTo(QImage::Format_RGB888);

    EXPECT_TRUE(desktop::waitUntil([&] { return threadCount() <= before; }));
}

TEST(QuietToolkit, no_pixmap_is_kept_for_a_timer_to_throw_out) {
    qt_tests::QtSession::shared();
    platform::qt::quietToolkit();
    QPixmap kept;

    QPixmapCache::insert(QStringLiteral("name"), QPixmap(16, 16));

    EXPECT_FALSE(QPixmapCache::find(QStringLiteral("name"), &kept));
}

}  // namespace
