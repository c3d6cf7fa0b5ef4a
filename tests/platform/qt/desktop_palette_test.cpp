#include "platform/qt/desktop_palette.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

#include "platform/qt/qt_session.h"

namespace {

using platform::qt::DesktopPalette;
using qt_tests::QtSession;
using qt_tests::runUntil;

bool isDark() {
    const QPalette palette = QApplication::palette();
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

class DesktopColors : public testing::Test {
  protected:
    DesktopColors() : desktop_(QtSession::shared().desktop()) {}
    ~DesktopColors() override { QApplication::setPalette(QPalette()); }

    void open() {
        window_ = std::make_unique<QWidget>();
        palette_.follow(*window_);
    }
    void startPortal(const std::string& scheme) { portal_ = desktop_.startSettingsPortal(scheme); }
    void announce(const std::string& scheme) { desktop_.bus({"color-scheme", scheme}); }
    [[nodiscard]] bool wasAsked(std::size_t times = 1) const {
        return runUntil([&] { return portal_->countOf("asked") == times; });
    }

    desktop::Desktop& desktop_;
    DesktopPalette palette_{[] { return std::optional(QDBusConnection::sessionBus()); }};
    std::unique_ptr<desktop::Process> portal_;
    std::unique_ptr<QWidget> window_;
};

TEST_F(DesktopColors, a_dark_desktop_makes_the_windows_dark) {
    startPortal("1");
    open();
    EXPECT_TRUE(runUntil(isDark));
}

TEST_F(DesktopColors, they_follow_the_desktop_while_a_window_is_open) {
    startPortal("0");
    open();
    ASSERT_TRUE(wasAsked());
    const QPalette before = QApplication::palette();
    for (const char* light : {"2", "0", "7"}) {
        announce("1");
        ASSERT_TRUE(runUntil(isDark));
        announce(light);
        EXPECT_TRUE(runUntil([] { return !isDark(); })) << light;
        EXPECT_EQ(QApplication::palette(), before);
    }
}

TEST_F(DesktopColors, nonsense_changes_nothing) {
    startPortal("green");
    open();
    ASSERT_TRUE(wasAsked());
    announce("1");
    ASSERT_TRUE(runUntil(isDark));
    announce("green");
    EXPECT_FALSE(runUntil([] { return !isDark(); }, std::chrono::milliseconds(100)));
    announce("2");
    EXPECT_TRUE(runUntil([] { return !isDark(); }));
}

TEST_F(DesktopColors, a_portal_that_never_answers_is_not_waited_for_and_still_heard) {
    startPortal("hangs");
    open();
    ASSERT_TRUE(wasAsked());
    EXPECT_FALSE(isDark());
    announce("1");
    EXPECT_TRUE(runUntil(isDark));
}

TEST_F(DesktopColors, a_portal_that_comes_later_and_again_is_asked) {
    open();
    startPortal("1");
    ASSERT_TRUE(runUntil(isDark));
    portal_.reset();
    startPortal("2");
    EXPECT_TRUE(runUntil([] { return !isDark(); }));
}

TEST_F(DesktopColors, without_a_window_nobody_asks_and_the_next_window_asks_anew) {
    startPortal("1");
    open();
    ASSERT_TRUE(runUntil(isDark));
    window_.reset();
    announce("2");
    EXPECT_FALSE(runUntil([] { return !isDark(); }, std::chrono::milliseconds(100)));
    open();
    EXPECT_TRUE(runUntil([] { return !isDark(); }));
    EXPECT_TRUE(wasAsked(2));
}

TEST_F(DesktopColors, the_colours_of_a_theme_stay) {
    QPalette theme = QApplication::palette();
    theme.setColor(QPalette::Window, QColor(0xef, 0xf0, 0xf1));
    theme.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    QApplication::setPalette(theme);
    startPortal("1");
    open();
    ASSERT_TRUE(wasAsked());
    // An answer that is heard after another one: the first has been heard by then.
    announce("1");
    EXPECT_FALSE(runUntil(isDark, std::chrono::milliseconds(100)));
}

}  // namespace
