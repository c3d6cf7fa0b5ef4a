// The D-Bus side of the virtual desktop, a program of its own so that the tests need no event loop.
//
//   notification-recorder          owns org.freedesktop.Notifications; prints "ready", then
//                                  "notification<TAB>application<TAB>title<TAB>body" for each
//   tray-host                      owns org.kde.StatusNotifierWatcher; prints "ready", then
//                                  "item <bus name> <object path>" for each tray icon
//   settings-portal VALUE          owns org.freedesktop.portal.Desktop and announces the colour
//                                  scheme VALUE; a number, "hangs" (never answers), or a text that
//                                  is no colour scheme; prints "ready", then "asked" for each
//                                  question
//   color-scheme VALUE             lets the settings portal announce another one
//   wait-for-name NAME             ends with 0 when NAME is owned, with 1 after 15 s
//   activate                       org.freedesktop.Application Activate of Lumaframe
//   activate-action ACTION         org.freedesktop.Application ActivateAction of Lumaframe
//   enable-accessibility           makes programs show themselves to assistive programs
//   accessibles                    prints what they show (see bus_accessibility.h)
//   menu SERVICE                   prints the labels of SERVICE's /MenuBar, "-" for a separator
//   menu-click SERVICE LABEL       clicks the menu item with that label
//   menu-nonsense SERVICE          asks for items that the menu does not have
//   tray-item SERVICE              prints what the tray icon says of itself
//   figures SERVICE                prints how much SERVICE has on the bus (see bus_figures.h)
#include <QCoreApplication>
#include <QTimer>
#include <iostream>

#include "desktop/bus_accessibility.h"
#include "desktop/bus_figures.h"
#include "desktop/bus_menu.h"
#include "desktop/bus_services.h"
#include "desktop/settings_portal.h"
#include "desktop/tray_item.h"

namespace {

int waitForName(QCoreApplication& application, const QString& name) {
    auto bus = QDBusConnection::sessionBus();
    QDBusServiceWatcher watcher(name, bus, QDBusServiceWatcher::WatchForRegistration);
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &application,
                     [&application] { application.exit(0); });
    if (bus.interface()->isServiceRegistered(name)) {
        return 0;
    }
    QTimer::singleShot(15000, &application, [&application] { application.exit(1); });
    return QCoreApplication::exec();
}

int callApplication(const char* method, const QVariantList& arguments) {
    auto call =
        QDBusMessage::createMethodCall("app.lumaframe.Lumaframe", "/app/lumaframe/Lumaframe",
                                       "org.freedesktop.Application", method);
    call.setArguments(arguments);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        std::cerr << qPrintable(reply.errorMessage()) << '\n';
        return 1;
    }
    return 0;
}

template <typename Service>
int serve(QCoreApplication&, Service&& service) {
    if (!service.start()) {
        std::cerr << "The bus refused the service.\n";
        return 1;
    }
    std::cout << "ready" << std::endl;
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString command = arguments.value(1);
    if (command == "notification-recorder") {
        return serve(application, desktop::NotificationRecorder());
    }
    if (command == "tray-host") {
        return serve(application, desktop::TrayHost());
    }
    if (command == "settings-portal") {
        return serve(application, desktop::SettingsPortal(arguments.value(2)));
    }
    if (command == "color-scheme") {
        return desktop::announceColorScheme(arguments.value(2));
    }
    if (command == "wait-for-name") {
        return waitForName(application, arguments.value(2));
    }
    if (command == "activate") {
        return callApplication("Activate", {QVariantMap()});
    }
    if (command == "activate-action") {
        return callApplication("ActivateAction",
                               {arguments.value(2), QVariantList(), QVariantMap()});
    }
    if (command == "enable-accessibility") {
        return desktop::enableAccessibility();
    }
    if (command == "accessibles") {
        return desktop::printAccessibles();
    }
    if (command == "menu") {
        return desktop::printMenu(arguments.value(2));
    }
    if (command == "menu-click") {
        return desktop::clickMenuItem(arguments.value(2), arguments.value(3));
    }
    if (command == "menu-nonsense") {
        return desktop::askMenuForNonsense(arguments.value(2));
    }
    if (command == "tray-item") {
        return desktop::printTrayItem(arguments.value(2));
    }
    if (command == "figures") {
        return desktop::printBusFigures(arguments.value(2));
    }
    std::cerr << "Unknown command.\n";
    return 2;
}
