#pragma once

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <memory>
#include <vector>

#include "platform/qt/qt_session.h"
#include "ui/content_view_world.h"

namespace ui_tests {

/// A settings view over fakes, on a desktop of its own. It is made by the first call of `view`.
class ContentViewFixture : public testing::Test {
  protected:
    ContentViewFixture() { qt_tests::QtSession::shared(); }
    ~ContentViewFixture() override { close(); }

    ui::ContentView& view() {
        if (!view_) {
            view_ = std::make_unique<ui::ContentView>(world_.mediator());
            view_->setObjectName(QStringLiteral("main"));
        }
        return *view_;
    }
    /// The view on the screen, active.
    ui::ContentView& shown() {
        view().show();
        view().activateWindow();
        EXPECT_TRUE(qt_tests::runUntil([this] { return view_->isActiveWindow(); }));
        return *view_;
    }
    void close() {
        view_.reset();
        QCoreApplication::sendPostedEvents();
    }

    template <typename Widget = QWidget>
    Widget& named(const char* name) {
        auto* widget = view().findChild<Widget*>(QLatin1String(name));
        if (widget == nullptr) {
            throw std::runtime_error(std::string("no widget is named ") + name);
        }
        return *widget;
    }
    QAbstractButton& button(const char* name) { return named<QAbstractButton>(name); }
    /// Where a widget lies in the view, once the layout is done.
    QRect frame(const QWidget& widget) {
        if (!view().isVisible()) {
            // The layout of what is inside is only done for a view that is shown.
            view().setAttribute(Qt::WA_DontShowOnScreen);
            view().show();
        }
        QCoreApplication::sendPostedEvents();
        return {widget.mapTo(&view(), QPoint()), widget.size()};
    }
    /// The text labels from the top.
    std::vector<QString> labelTexts() {
        std::vector<QString> texts;
        for (const QLabel* label : view().findChildren<QLabel*>()) {
            if (!label->text().isEmpty()) {
                texts.push_back(label->text());
            }
        }
        return texts;
    }
    void store(const char* key, app::SettingsValue value) {
        world_.backend.changeFromOutside(key, std::move(value));
    }

    ContentViewWorld world_;

  private:
    std::unique_ptr<ui::ContentView> view_;
};

}  // namespace ui_tests
