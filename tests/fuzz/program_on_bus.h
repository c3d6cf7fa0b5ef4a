#pragma once

#include <QApplication>
#include <QMenu>
#include <array>
#include <map>
#include <memory>
#include <string>

#include "platform/freedesktop/dbus_application.h"
#include "platform/freedesktop/notification_service.h"
#include "platform/qt/color_scheme_watch.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/status_notifier_item.h"
#include "platform/qt/status_notifier_watch.h"

namespace fuzz {

/// What the program has done at the wish of others.
struct Deeds {
    int activations = 0;
    std::map<std::string, int> actions;
    /// By the identifier of the menu's item.
    std::map<int, int> triggers;
    int authorizations = 0;
};

/// All of the program that is on the session bus, which has to answer, without what is behind it.
class ProgramOnBus {
  public:
    static constexpr int items = 4;
    static constexpr int disabledItem = 2;
    static constexpr const char* notificationBody = "a <b>&amp;";

    ProgramOnBus();
    ProgramOnBus(const ProgramOnBus&) = delete;
    ProgramOnBus& operator=(const ProgramOnBus&) = delete;

    void askForAuthorization();
    void postNotification();
    /// Does what came in so far.
    void turn();
    /// Gives what was done since the last time.
    Deeds takeDeeds();

  private:
    int argumentCount_ = 1;
    std::array<char, 5> name_{"fuzz"};
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    QApplication qt_;
    platform::qt::QtMainQueue queue_;
    Deeds deeds_;
    QMenu menu_;
    platform::freedesktop::DBusApplication application_;
    platform::freedesktop::NotificationService notifications_{queue_};
    std::unique_ptr<platform::qt::StatusNotifierItem> item_;
    std::unique_ptr<platform::qt::StatusNotifierWatch> trayWatch_;
    std::unique_ptr<platform::qt::ColorSchemeWatch> colors_;
};

}  // namespace fuzz
