#include "ui/looping_video_player.h"

#include <gmock/gmock.h>

#include <QImage>
#include <memory>

#include "desktop/test_window.h"
#include "doubles/fake_log.h"
#include "doubles/fake_video_looper.h"
#include "platform/qt/qt_session.h"

namespace {

using namespace std::chrono_literals;
using qt_tests::runUntil;
using testing::ElementsAre;
using testing::IsEmpty;

/// A player in a red window on a private desktop.
class LoopingVideoPlayer : public testing::Test {
  protected:
    LoopingVideoPlayer() {
        qt_tests::QtSession::shared();
        window_ = std::make_unique<QWidget>();
        window_->setStyleSheet(QStringLiteral("background: #ff0000"));
        window_->resize(200, 150);
        player_ = new ui::LoopingVideoPlayer("animation", {.loopers = loopers_, .log = log_},
                                             window_.get());
        player_->setGeometry(20, 30, 160, 100);
    }
    void show() {
        window_->show();
        ASSERT_TRUE(runUntil([this] { return loopers_.hasRequest(); }));
    }
    void deliver(std::chrono::microseconds time, std::uint8_t grey) {
        const std::size_t requests = loopers_.requests.size();
        loopers_.deliver(time, grey);
        ASSERT_TRUE(runUntil([&] { return loopers_.requests.size() > requests; }));
    }
    /// What the window looks like.
    QImage picture() { return window_->grab().toImage(); }
    QColor colorAt(int x, int y) { return picture().pixelColor(x, y); }

    doubles::FakeVideoLoopers loopers_;
    doubles::FakeLog log_;
    std::unique_ptr<QWidget> window_;
    ui::LoopingVideoPlayer* player_ = nullptr;
};

TEST_F(LoopingVideoPlayer, opens_nothing_before_it_is_on_the_screen) {
    EXPECT_THAT(loopers_.opened, IsEmpty());
    show();
    EXPECT_THAT(loopers_.opened, ElementsAre("animation"));
}

TEST_F(LoopingVideoPlayer, is_blank_until_the_first_picture_and_then_fills_its_frame) {
    show();
    EXPECT_EQ(colorAt(100, 80), QColor(255, 0, 0));
    deliver(0us, 0x40);
    const QColor grey(0x40, 0x40, 0x40);
    EXPECT_EQ(colorAt(20, 30), grey);
    EXPECT_EQ(colorAt(179, 129), grey);
    EXPECT_EQ(colorAt(19, 30), QColor(255, 0, 0));
    EXPECT_EQ(colorAt(180, 129), QColor(255, 0, 0));
}

TEST_F(LoopingVideoPlayer, asks_for_pictures_in_pixels_of_the_display) {
    show();
    const double ratio = player_->devicePixelRatioF();
    EXPECT_THAT(loopers_.requests, ElementsAre(base::PixelSize{static_cast<int>(160 * ratio),
                                                               static_cast<int>(100 * ratio)}));
}

TEST_F(LoopingVideoPlayer, shows_each_picture_in_its_turn) {
    show();
    deliver(0us, 0x40);
    deliver(20ms, 0x60);
    EXPECT_EQ(colorAt(100, 80), QColor(0x60, 0x60, 0x60));
}

TEST_F(LoopingVideoPlayer, round_corners_let_the_window_shine_through) {
    player_->setCornerRadius(12);
    show();
    deliver(0us, 0x40);
    EXPECT_EQ(colorAt(20, 30), QColor(255, 0, 0));
    EXPECT_EQ(colorAt(179, 129), QColor(255, 0, 0));
    EXPECT_EQ(colorAt(20, 80), QColor(0x40, 0x40, 0x40));
    EXPECT_EQ(colorAt(100, 30), QColor(0x40, 0x40, 0x40));
    EXPECT_EQ(colorAt(100, 80), QColor(0x40, 0x40, 0x40));
}

TEST_F(LoopingVideoPlayer, a_picture_of_another_size_is_stretched_until_the_next_one) {
    show();
    deliver(0us, 0x40);
    player_->resize(120, 60);
    EXPECT_EQ(colorAt(20, 30), QColor(0x40, 0x40, 0x40));
    EXPECT_EQ(colorAt(139, 89), QColor(0x40, 0x40, 0x40));
    EXPECT_EQ(colorAt(140, 90), QColor(255, 0, 0));
    deliver(20ms, 0x60);
    EXPECT_EQ(loopers_.requests.back().width, 120);
}

TEST_F(LoopingVideoPlayer, plays_on_only_while_its_window_is_on_the_screen) {
    show();
    deliver(0us, 0x40);
    window_->showMinimized();
    ASSERT_TRUE(runUntil([this] { return !window_->windowHandle()->isExposed(); }));
    QCoreApplication::sendPostedEvents();
    const std::size_t requests = loopers_.requests.size();
    loopers_.deliver(0us, 0x60);
    EXPECT_EQ(loopers_.requests.size(), requests);

    window_->showNormal();
    EXPECT_TRUE(runUntil([&] { return loopers_.requests.size() > requests; }));
    EXPECT_EQ(colorAt(100, 80), QColor(0x60, 0x60, 0x60));
}

TEST_F(LoopingVideoPlayer, a_hidden_player_asks_for_nothing) {
    show();
    player_->hide();
    loopers_.deliver(0us, 0x40);
    EXPECT_EQ(loopers_.requests.size(), 1U);
    player_->show();
    EXPECT_TRUE(runUntil([&] { return loopers_.requests.size() == 2; }));
}

TEST_F(LoopingVideoPlayer, a_film_that_breaks_leaves_it_blank_with_one_line) {
    show();
    deliver(0us, 0x40);
    loopers_.fail({base::ErrorKind::invalid, "Invalid data found."});
    EXPECT_EQ(colorAt(100, 80), QColor(255, 0, 0));
    EXPECT_THAT(log_.lines, ElementsAre("Failed to load video: Invalid data found."));
}

TEST_F(LoopingVideoPlayer, a_view_of_the_systems_fills_it_and_follows_its_size) {
    const desktop::TestWindow native(
        qt_tests::QtSession::shared().desktop().displayName(),
        {.management = desktop::TestWindowOptions::Management::unmanaged});
    const desktop::XClient client(qt_tests::QtSession::shared().desktop().displayName());
    loopers_.viewHandle = native.id();
    player_->setCornerRadius(12);
    window_->show();
    const auto covers = [&](int width, int height) {
        const QPoint corner = player_->mapToGlobal(QPoint(0, 0));
        const desktop::Place place = native.place();
        const desktop::Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
            client.get(), xcb_get_geometry(client.get(), native.id()), nullptr));
        return geometry && place.x == corner.x() && place.y == corner.y() &&
               geometry->width == width && geometry->height == height;
    };
    EXPECT_TRUE(runUntil([&] { return covers(160, 100); }));
    EXPECT_EQ(loopers_.cornerRadius, 12);
    player_->resize(120, 60);
    EXPECT_TRUE(runUntil([&] { return covers(120, 60); }));
}

TEST_F(LoopingVideoPlayer, a_view_of_the_systems_that_fails_leaves_it_blank_with_one_line) {
    const desktop::TestWindow native(
        qt_tests::QtSession::shared().desktop().displayName(),
        {.management = desktop::TestWindowOptions::Management::unmanaged});
    loopers_.viewHandle = native.id();
    window_->show();
    ASSERT_TRUE(runUntil([this] { return player_->findChild<QWidget*>() != nullptr; }));
    loopers_.answerView(base::Error{base::ErrorKind::failed, "It is damaged."});
    EXPECT_EQ(player_->findChild<QWidget*>(), nullptr);
    EXPECT_EQ(colorAt(100, 80), QColor(255, 0, 0));
    EXPECT_THAT(log_.lines, ElementsAre("Failed to load video: It is damaged."));
}

TEST_F(LoopingVideoPlayer, its_end_closes_the_film) {
    show();
    window_.reset();
    EXPECT_EQ(loopers_.openCount(), 0);
}

TEST_F(LoopingVideoPlayer, leaves_clicks_and_keys_to_others) {
    EXPECT_TRUE(player_->testAttribute(Qt::WA_TransparentForMouseEvents));
    EXPECT_EQ(player_->focusPolicy(), Qt::NoFocus);
    EXPECT_THAT(player_->children(), testing::Not(testing::Contains(testing::Truly(
                                         [](QObject* o) { return o->isWidgetType(); }))));
}

}  // namespace
