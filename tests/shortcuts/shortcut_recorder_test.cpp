#include "shortcuts/shortcut_recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QFontMetrics>
#include <QImage>
#include <QKeyEvent>
#include <QPalette>
#include <QVBoxLayout>
#include <algorithm>

#include "platform/qt/qt_session.h"
#include "shortcuts/recorder_fixture.h"

namespace {

using qt_tests::QtSession;
using testing::IsEmpty;

constexpr QRgb recordingColor = qRgb(128, 0, 255);

class ShortcutRecorderTest : public testing::Test {
  protected:
    ShortcutRecorderTest() {
        QtSession::shared();
        window = std::make_unique<QWidget>();
        recorder = new shortcuts::ShortcutRecorder(bound.fields(calls), keyboard, window.get());
        auto* column = new QVBoxLayout(window.get());
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(recorder);
        window->resize(200, recorder->sizeHint().height());
        keyboard.recordInto(calls);
    }
    void show() {
        window->show();
        EXPECT_TRUE(qt_tests::runUntil([&] { return window->isVisible(); }));
        QCoreApplication::sendPostedEvents();
    }
    QAbstractButton& pill() { return recorder->pill(); }
    QAbstractButton& resetButton() { return recorder->resetButton(); }
    QImage picture() {
        QCoreApplication::sendPostedEvents();
        return window->grab().toImage();
    }
    /// From the first to the last column that has something of the text.
    int textWidth() {
        window->setPalette(QPalette(Qt::black, Qt::white));
        const QImage image = picture();
        int first = image.width();
        int last = -1;
        for (int x = image.height(); x < pill().width() - image.height(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (qGray(image.pixel(x, y)) < 100) {
                    first = std::min(first, x);
                    last = x;
                }
            }
        }
        return last - first + 1;
    }
    static void send(QWidget& widget, QEvent::Type type, Qt::Key key, bool isRepeat = false) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), isRepeat);
        QCoreApplication::sendEvent(&widget, &event);
    }
    static bool contains(const QImage& image, QRgb color) {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if ((image.pixel(x, y) & 0xFFFFFF) == (color & 0xFFFFFF)) {
                    return true;
                }
            }
        }
        return false;
    }

    doubles::CallLog calls;
    doubles::FakeKeyMonitor keyboard;
    fixtures::BoundShortcut bound;
    std::unique_ptr<QWidget> window;
    shortcuts::ShortcutRecorder* recorder = nullptr;
};

TEST_F(ShortcutRecorderTest, the_pill_shows_the_pair_and_fills_the_width) {
    show();
    EXPECT_EQ(pill().text(), QStringLiteral("⌘⇧1"));
    EXPECT_FALSE(resetButton().isVisible());
    EXPECT_EQ(pill().width(), 200);
}

TEST_F(ShortcutRecorderTest, the_text_is_11_high_and_padded_by_8_and_3) {
    const QFont font = pill().font();
    EXPECT_EQ(font.pixelSize(), 11);
    EXPECT_EQ(font.weight(), QFont::Medium);
    const QFontMetrics metrics(font);
    EXPECT_EQ(pill().sizeHint().height(), metrics.height() + 6);
    EXPECT_EQ(pill().sizeHint().width(),
              metrics.horizontalAdvance(QStringLiteral("Press Shortcut…")) + 16);
}

TEST_F(ShortcutRecorderTest, a_click_records_in_its_colour_and_a_second_click_ends_it) {
    show();
    EXPECT_FALSE(contains(picture(), recordingColor));
    const QSize size = recorder->sizeHint();
    pill().click();
    EXPECT_EQ(pill().text(), QStringLiteral("Press Shortcut…"));
    EXPECT_TRUE(contains(picture(), recordingColor));
    EXPECT_EQ(recorder->sizeHint(), size);
    pill().click();
    EXPECT_EQ(pill().text(), QStringLiteral("⌘⇧1"));
    EXPECT_FALSE(contains(picture(), recordingColor));
}

TEST_F(ShortcutRecorderTest, the_capsule_is_the_label_colour_at_a_tenth) {
    window->setPalette(QPalette(Qt::black, Qt::white, Qt::white, Qt::white, Qt::white, Qt::black,
                                Qt::white, Qt::white, Qt::white));
    show();
    const QImage image = picture();
    EXPECT_NEAR(qGray(image.pixel(20, image.height() / 2)), 0.9 * 255, 1);
    EXPECT_EQ(qGray(image.pixel(0, 0)), 255);
    EXPECT_EQ(qGray(image.pixel(199, image.height() - 1)), 255);
}

TEST_F(ShortcutRecorderTest, another_shortcut_can_be_reset_and_leaves_room_for_the_button) {
    show();
    pill().click();
    keyboard.press(20, shortcuts::commandFlag);
    EXPECT_EQ(pill().text(), QStringLiteral("⌘3"));
    EXPECT_TRUE(resetButton().isVisible());
    picture();
    EXPECT_EQ(resetButton().width(), 14);
    EXPECT_EQ(resetButton().height(), 14);
    EXPECT_EQ(pill().width(), 200 - 8 - 14);
    EXPECT_NEAR(resetButton().geometry().center().y(), pill().geometry().center().y(), 1);
    resetButton().click();
    EXPECT_EQ(calls.calls().back(), "reset");
    EXPECT_EQ(pill().text(), QStringLiteral("⌘⇧1"));
    EXPECT_FALSE(resetButton().isVisible());
}

TEST_F(ShortcutRecorderTest, from_right_to_left_the_button_is_on_the_left) {
    window->setLayoutDirection(Qt::RightToLeft);
    bound.keyCode = 20;
    recorder->refresh();
    show();
    EXPECT_EQ(resetButton().x(), 0);
    EXPECT_EQ(pill().x(), 14 + 8);
}

TEST_F(ShortcutRecorderTest, the_symbols_keep_their_order_from_right_to_left) {
    show();
    const QImage leftToRight = picture();
    window->setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(picture(), leftToRight);
}

TEST_F(ShortcutRecorderTest, without_a_font_for_the_symbols_the_words_are_shown) {
    QFont plain(QStringLiteral("Liberation Sans"));
    plain.setStyleStrategy(QFont::NoFontMerging);
    plain.setPixelSize(11);
    ASSERT_FALSE(QFontMetrics(plain).inFontUcs4(U'⌘')) << "The package fonts-liberation is needed.";
    pill().setFont(plain);
    recorder->refresh();
    show();
    const QFontMetrics metrics(plain);
    EXPECT_NEAR(textWidth(), metrics.horizontalAdvance(QStringLiteral("Super+Shift+1")), 3);
    // Whoever reads it aloud gets both.
    EXPECT_EQ(pill().accessibleName(), QStringLiteral("⌘⇧1"));
    EXPECT_EQ(pill().accessibleDescription(), QStringLiteral("Super+Shift+1"));
    bound = {.keyCode = 0, .modifiers = 0};
    recorder->refresh();
    EXPECT_NEAR(textWidth(), metrics.horizontalAdvance(QStringLiteral("A")), 3);
}

TEST_F(ShortcutRecorderTest, shows_what_somebody_else_has_changed_when_it_is_asked_to) {
    show();
    bound.keyCode = 83;
    recorder->refresh();
    EXPECT_EQ(pill().text(), QStringLiteral("⌘⇧1"));
    EXPECT_TRUE(resetButton().isVisible());
}

TEST_F(ShortcutRecorderTest, space_and_return_click_when_they_are_let_go) {
    show();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        send(pill(), QEvent::KeyPress, key);
        EXPECT_EQ(keyboard.installedCount(), 0U);
        send(pill(), QEvent::KeyRelease, key);
        EXPECT_EQ(keyboard.installedCount(), 1U);
        pill().click();
    }
}

TEST_F(ShortcutRecorderTest, a_held_or_a_stray_return_does_not_click) {
    show();
    send(pill(), QEvent::KeyRelease, Qt::Key_Return);
    EXPECT_EQ(keyboard.installedCount(), 0U);
    send(pill(), QEvent::KeyPress, Qt::Key_Return);
    send(pill(), QEvent::KeyRelease, Qt::Key_Return, true);
    send(pill(), QEvent::KeyPress, Qt::Key_Return, true);
    EXPECT_EQ(keyboard.installedCount(), 0U);
}

TEST_F(ShortcutRecorderTest, both_controls_are_reached_by_tab) {
    EXPECT_TRUE((pill().focusPolicy() & Qt::TabFocus) != 0);
    EXPECT_TRUE((resetButton().focusPolicy() & Qt::TabFocus) != 0);
}

TEST_F(ShortcutRecorderTest, the_focus_goes_to_the_pill_when_the_reset_button_goes) {
    bound.keyCode = 20;
    recorder->refresh();
    show();
    resetButton().setFocus();
    resetButton().click();
    EXPECT_EQ(window->focusWidget(), &pill());
}

TEST_F(ShortcutRecorderTest, is_read_as_two_buttons_by_their_labels) {
    bound.keyCode = 20;
    recorder->refresh();
    show();
    for (QAbstractButton* button : {&pill(), &resetButton()}) {
        EXPECT_EQ(QAccessible::queryAccessibleInterface(button)->role(), QAccessible::Button);
    }
    const auto name = [](QAbstractButton& button) {
        return QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Name);
    };
    EXPECT_EQ(name(pill()), QStringLiteral("⌘⇧3"));
    EXPECT_EQ(pill().accessibleDescription(), QStringLiteral("Super+Shift+3"));
    EXPECT_EQ(name(resetButton()), QStringLiteral("Reset to default"));
    EXPECT_EQ(resetButton().toolTip(), QStringLiteral("Reset to default"));
    pill().click();
    EXPECT_EQ(name(pill()), QStringLiteral("Press Shortcut…"));
}

TEST_F(ShortcutRecorderTest, hiding_ends_a_recording) {
    show();
    pill().click();
    window->hide();
    EXPECT_EQ(keyboard.installedCount(), 0U);
    EXPECT_EQ(bound.keyCode, 18);
}

TEST_F(ShortcutRecorderTest, its_end_ends_a_recording) {
    show();
    pill().click();
    delete recorder;
    recorder = nullptr;
    EXPECT_EQ(keyboard.installedCount(), 0U);
}

}  // namespace
