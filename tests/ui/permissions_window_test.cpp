#include "ui/permissions_window.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QWindow>
#include <future>
#include <map>
#include <memory>

#include "platform/qt/qt_session.h"
#include "ui/content_view_world.h"
#include "ui/tool_tip.h"

namespace ui_tests {
namespace {

using namespace std::chrono_literals;
using qt_tests::runUntil;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// The permissions window over fakes, on a desktop of its own.
class PermissionsWindow : public testing::Test {
  protected:
    PermissionsWindow() { qt_tests::QtSession::shared(); }
    ~PermissionsWindow() override { window_.reset(); }

    ui::PermissionsWindow& shown() {
        window_ = std::make_unique<ui::PermissionsWindow>(world_.permissionsWindowMediator());
        window_->show();
        EXPECT_TRUE(runUntil([this] { return window_->isActiveWindow(); }));
        return *window_;
    }
    QWidget& named(const char* name) {
        auto* widget = window_->findChild<QWidget*>(QLatin1String(name));
        if (widget == nullptr) {
            throw std::runtime_error(std::string("no widget is named ") + name);
        }
        return *widget;
    }
    /// The one label with this text.
    QLabel& textLabel(const char* text) {
        for (QLabel* label : window_->findChildren<QLabel*>()) {
            if (label->text() == QLatin1String(text)) {
                return *label;
            }
        }
        throw std::runtime_error(std::string("no label says ") + text);
    }
    QRect frame(const char* name) { return frame(named(name)); }
    QRect frame(QWidget& widget) { return {widget.mapTo(window_.get(), QPoint()), widget.size()}; }
    /// All texts that are seen outside the rows, from the top.
    std::vector<QString> textsFromTheTop() {
        std::map<int, QString> texts;
        for (QWidget* part : window_->findChildren<QWidget*>()) {
            const auto* label = dynamic_cast<const QLabel*>(part);
            const auto* button = dynamic_cast<const QAbstractButton*>(part);
            const QString text = label != nullptr    ? label->text()
                                 : button != nullptr ? button->text()
                                                     : QString();
            if (part->isVisible() && !text.isEmpty() &&
                !named("permissionGroup").isAncestorOf(part)) {
                texts[frame(*part).top()] = text;
            }
        }
        std::vector<QString> sorted;
        for (const auto& [top, text] : texts) {
            sorted.push_back(text);
        }
        return sorted;
    }
    QAbstractButton& action() { return dynamic_cast<QAbstractButton&>(named("action")); }
    /// The texts of a row that are seen.
    std::vector<QString> textsOf(const char* row) {
        std::vector<QString> texts;
        for (const QWidget* part : named(row).findChildren<QWidget*>()) {
            const auto* label = dynamic_cast<const QLabel*>(part);
            const auto* button = dynamic_cast<const QAbstractButton*>(part);
            if (part->isVisible() && (label != nullptr || button != nullptr)) {
                texts.push_back(label != nullptr ? label->text() : button->text());
            }
        }
        return texts;
    }
    /// As the pointer does.
    void clickAction() {
        const QPointF place = action().rect().center();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, place, action().mapToGlobal(place), Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(&action(), &event);
        }
    }
    void activateAgain() { world_.notifications.post(app::applicationDidBecomeActiveNotification); }

    ContentViewWorld world_;
    std::unique_ptr<ui::PermissionsWindow> window_;
};

TEST_F(PermissionsWindow, is_laid_out_as_it_is_drawn_up) {
    const QSize size = shown().size();
    EXPECT_EQ(size.width(), 500);
    EXPECT_EQ(frame("applicationIcon").size(), QSize(80, 80));
    EXPECT_EQ(frame("applicationIcon").top(), 32);
    EXPECT_EQ(frame("applicationIcon").center().x(), 249);
    const QRect title = frame(textLabel("Drag App Icon to the Settings"));
    EXPECT_EQ(title.top() - frame("applicationIcon").bottom() - 1, 12);
    EXPECT_EQ(frame("video"), QRect(32 + 16, title.bottom() + 1 + 24, 500 - 2 * 48, 250));
    const QRect request =
        frame(textLabel("To get started, please grant the following permissions:"));
    EXPECT_EQ(request.top() - frame("video").bottom() - 1, 24);
    const QRect group = frame("permissionGroup");
    EXPECT_EQ(group.top() - request.bottom() - 1, 24);
    EXPECT_EQ(group.left(), 32);
    EXPECT_EQ(group.width(), 500 - 2 * 32);
    const QRect first = frame("Screen Recording");
    const QRect second = frame("Accessibility");
    const QRect third = frame("Files and Folders");
    EXPECT_EQ(first.topLeft(), group.topLeft() + QPoint(12, 12));
    EXPECT_EQ(first.width(), group.width() - 24);
    // The spacing on both sides of the line between them.
    EXPECT_EQ(second.top() - first.bottom() - 1, 12 + 1 + 12);
    EXPECT_EQ(third.top() - second.bottom() - 1, 12 + 1 + 12);
    EXPECT_EQ(group.bottom(), third.bottom() + 12);
    EXPECT_EQ(frame("action").top() - group.bottom() - 1, 24 + 8);
    EXPECT_EQ(frame("action").center().x(), 249);
    EXPECT_EQ(size.height() - frame("action").bottom() - 1, 32);
}

TEST_F(PermissionsWindow, says_what_to_do_from_the_top_to_the_button) {
    shown();
    EXPECT_THAT(
        textsFromTheTop(),
        ElementsAre("Drag App Icon to the Settings",
                    "To get started, please grant the following permissions:", "Get Started"));
    EXPECT_LT(frame("applicationIcon").bottom(),
              frame(textLabel("Drag App Icon to the Settings")).top());
}

TEST_F(PermissionsWindow, the_icon_of_a_program_without_a_location_is_dragged_as_nothing) {
    world_.bundle.location.clear();
    shown();
    auto& session = qt_tests::QtSession::shared().desktop();
    const auto target = session.start("drop-target", {LUMAFRAME_TEST_DROP_TARGET});
    target->waitForLine("ready");
    window_->raise();
    const QPoint center = named("applicationIcon").rect().center();
    const QPoint icon = named("applicationIcon").mapToGlobal(center);
    // Somebody else's hand: the toolkit stays in the drag until it ends.
    auto hand = std::async(std::launch::async, [&] {
        session.input().moveTo({icon.x(), icon.y()});
        session.input().pressButton();
        session.input().moveInSteps({icon.x(), icon.y()}, {120, 140}, 20);
        target->waitForLine("entered");
        session.input().releaseButton();
        const auto index = target->waitForLine("dropped");
        return target->outputLines().at(index);
    });
    ASSERT_TRUE(runUntil([&] { return hand.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(hand.get(), "dropped nothing");
}

TEST_F(PermissionsWindow, shows_what_is_granted_when_it_is_shown) {
    world_.permissions.accessibilityIsTrusted = false;
    shown();
    EXPECT_THAT(textsOf("Screen Recording"), ElementsAre("Screen Recording", "Granted"));
    EXPECT_THAT(textsOf("Accessibility"),
                ElementsAre("Accessibility", "Not Granted", "Open Settings"));
    EXPECT_THAT(textsOf("Files and Folders"), ElementsAre("Files and Folders", "Granted"));
    EXPECT_EQ(action().text(), "Refresh Status");
}

TEST_F(PermissionsWindow, without_an_icon_there_is_only_the_text) {
    world_.bundle.icon.clear();
    const int height = shown().height();
    EXPECT_EQ(window_->findChild<QWidget*>(QStringLiteral("applicationIcon")), nullptr);
    world_.bundle.icon = LUMAFRAME_APPLICATION_ICON;
    EXPECT_EQ(shown().height(), height + 80 + 12);
}

TEST_F(PermissionsWindow, that_comes_back_from_the_task_bar_is_neither_raised_nor_asked_again) {
    shown();
    world_.windows.add("permissions");
    world_.queue.runAll();
    ASSERT_THAT(world_.calls.calls(), Contains("activate"));
    const auto isSeen = [this] { return window_->windowHandle()->isExposed(); };
    window_->showMinimized();
    ASSERT_TRUE(runUntil([&] { return !isSeen(); }));
    world_.calls.clear();
    world_.permissions.accessibilityIsTrusted = false;

    // As the window manager does it.
    auto& client = qt_tests::QtSession::shared().desktop().client();
    xcb_map_window(client.get(), static_cast<xcb_window_t>(window_->winId()));
    client.synchronize();
    ASSERT_TRUE(runUntil([&] { return isSeen() && !window_->isMinimized(); }));
    world_.queue.runAll();
    EXPECT_THAT(world_.calls.calls(), Not(Contains("activate")));
    EXPECT_THAT(textsOf("Accessibility"), ElementsAre("Accessibility", "Granted"));
}

TEST_F(PermissionsWindow, rows_and_button_follow_when_the_program_becomes_active) {
    world_.fileManager.downloads.clear();
    shown();
    EXPECT_EQ(action().text(), "Refresh Status");
    const int height = window_->height();
    world_.fileManager.downloads = {"/home/someone/Downloads"};
    activateAgain();
    EXPECT_THAT(textsOf("Files and Folders"), ElementsAre("Files and Folders", "Granted"));
    EXPECT_TRUE(runUntil([this] { return action().text() == "Get Started"; }));
    EXPECT_TRUE(runUntil([this] { return action().height() > 28; }));
    EXPECT_TRUE(runUntil([&] { return window_->height() > height; }));
    world_.permissions.screenIsAllowed = false;
    activateAgain();
    EXPECT_TRUE(runUntil([this] { return action().text() == "Refresh Status"; }));
}

TEST_F(PermissionsWindow, drawing_alone_chooses_the_button_afresh) {
    world_.fileManager.downloads.clear();
    shown();
    world_.fileManager.downloads = {"/home/someone/Downloads"};
    action().parentWidget()->update();
    EXPECT_TRUE(runUntil([this] { return action().text() == "Get Started"; }));
    // Nobody has refreshed.
    EXPECT_THAT(textsOf("Files and Folders"), Contains("Not Granted"));
}

TEST_F(PermissionsWindow, neither_the_film_nor_the_pointer_makes_the_button_ask) {
    shown();
    ASSERT_TRUE(runUntil([this] { return world_.videoLoopers.hasRequest(); }));
    EXPECT_THAT(world_.videoLoopers.opened, ElementsAre("animation"));
    world_.queue.runAll();
    world_.calls.clear();
    for (int frame = 0; frame < 3; ++frame) {
        named("video").repaint();
        // The pointer on it.
        action().repaint();
    }
    EXPECT_THAT(world_.calls.calls(), testing::IsEmpty());
}

TEST_F(PermissionsWindow, refresh_status_refreshes_the_rows) {
    world_.fileManager.downloads.clear();
    shown();
    world_.permissions.accessibilityIsTrusted = false;
    action().click();
    EXPECT_THAT(textsOf("Accessibility"), Contains("Not Granted"));
    EXPECT_FALSE(world_.settings.boolForKey(app::keys::hasCompletedFirstRun));
}

TEST_F(PermissionsWindow, get_started_is_stored_and_closes_the_window) {
    shown();
    const auto handle = world_.windows.add("permissions");
    world_.windows.add("permissions");
    world_.calls.clear();
    action().click();
    EXPECT_TRUE(world_.settings.boolForKey(app::keys::hasCompletedFirstRun));
    EXPECT_THAT(world_.calls.calls(), Contains("close: " + std::to_string(handle)));
    EXPECT_EQ(world_.windows.list.size(), 1U);
}

TEST_F(PermissionsWindow, a_click_that_was_meant_for_the_button_before_is_ignored) {
    world_.fileManager.downloads.clear();
    shown();
    world_.fileManager.downloads = {"/home/someone/Downloads"};
    activateAgain();
    EXPECT_TRUE(runUntil([this] { return action().text() == "Get Started"; }));
    clickAction();
    EXPECT_FALSE(action().isDown());
    EXPECT_FALSE(world_.settings.boolForKey(app::keys::hasCompletedFirstRun));
    EXPECT_TRUE(runUntil([this] {
        clickAction();
        return world_.settings.boolForKey(app::keys::hasCompletedFirstRun);
    }));
}

TEST_F(PermissionsWindow, the_keyboard_presses_the_new_button_at_once) {
    world_.fileManager.downloads.clear();
    shown();
    world_.fileManager.downloads = {"/home/someone/Downloads"};
    activateAgain();
    EXPECT_TRUE(runUntil([this] { return action().text() == "Get Started"; }));
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, Qt::Key_Space, Qt::NoModifier);
        QCoreApplication::sendEvent(&action(), &event);
    }
    EXPECT_TRUE(world_.settings.boolForKey(app::keys::hasCompletedFirstRun));
}

TEST_F(PermissionsWindow, an_assistive_program_presses_the_new_button_at_once) {
    world_.fileManager.downloads.clear();
    shown();
    world_.fileManager.downloads = {"/home/someone/Downloads"};
    activateAgain();
    EXPECT_TRUE(runUntil([this] { return action().text() == "Get Started"; }));
    QAccessible::queryAccessibleInterface(&action())->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    // The toolkit shows the button pressed for a moment, of 100 ms.
    EXPECT_TRUE(
        runUntil([this] { return world_.settings.boolForKey(app::keys::hasCompletedFirstRun); }));
}

TEST_F(PermissionsWindow, a_ground_of_the_system_shines_through) {
    shown();
    const QPoint beside(4, 4);
    EXPECT_EQ(window_->grab().toImage().pixelColor(beside),
              window_->palette().color(QPalette::Window));
    window_->setAttribute(Qt::WA_TranslucentBackground);
    EXPECT_EQ(window_->grab().toImage().pixelColor(beside).alpha(), 0);
}

TEST_F(PermissionsWindow, a_row_opens_its_page_by_the_keyboard) {
    world_.permissions.screenIsAllowed = false;
    shown();
    auto* button = named("Screen Recording").findChild<QAbstractButton*>();
    button->setFocus();
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(button, &press);
    ASSERT_EQ(world_.permissions.openedPages.size(), 1U);
    EXPECT_THAT(world_.permissions.openedPages.front(), HasSubstr("Privacy_ScreenCapture"));
}

TEST_F(PermissionsWindow, each_row_says_what_it_is_for_and_why_it_is_refused) {
    world_.permissions.screenIsAllowed = false;
    world_.permissions.accessibilityIsTrusted = false;
    world_.permissions.screenLimit = "Not <here>.";
    world_.permissions.keyboardLimit = "Held.";
    shown();
    for (const char* row : {"Screen Recording", "Accessibility", "Files and Folders"}) {
        EXPECT_THAT(named(row).toolTip().toStdString(), HasSubstr("Lumaframe ")) << row;
    }
    EXPECT_THAT(named("Screen Recording").toolTip().toStdString(), HasSubstr("Not &lt;here&gt;."));
    EXPECT_EQ(named("Accessibility").toolTip(),
              ui::toolTipOf("Lumaframe listens for its shortcuts in every program.\nHeld."));
}

TEST_F(PermissionsWindow, a_long_text_is_wrapped_and_never_widens_the_window) {
    const QFont usual = QApplication::font();
    QApplication::setFont(QFont(QStringLiteral("monospace")));
    EXPECT_EQ(shown().width(), 500);
    window_.reset();
    QApplication::setFont(usual);
}

}  // namespace
}  // namespace ui_tests
