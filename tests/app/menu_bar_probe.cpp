// The tray menu alone, as a process of its own. Says "ready" and the name of each action that
// is asked for.
#include <QApplication>
#include <QDBusConnection>
#include <iostream>
#include <string>

#include "app/menu_bar_commands.h"
#include "platform/qt/application_icon.h"
#include "platform/qt/event_source.h"
#include "platform/qt/tray_icon.h"
#include "platform/x11/connection.h"
#include "platform/x11/system_tray_watch.h"

namespace {

void say(const std::string& line) {
    std::cout << line << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const auto connection = std::move(platform::x11::Connection::open().value());
    app::NotificationCenter center;
    app::MenuBarCommands commands(center, {.showMainWindow = [] { say("show main window"); },
                                           .openPermissionsScene = [] { say("open permissions"); },
                                           .terminate =
                                               [] {
                                                   say("terminate");
                                                   QCoreApplication::exit(0);
                                               }});
    const QIcon icon = platform::qt::applicationIcon(argv[1]);
    platform::qt::TrayIcon tray(commands.menu(), icon, platform::qt::symbolicIcon(argv[1], icon),
                                QDBusConnection::sessionBus());
    const platform::x11::SystemTrayWatch systemTray(*connection, [&] { tray.noteEmbeddingTray(); });
    const platform::qt::EventSource source(connection->fileDescriptor(),
                                           [&] { return connection->dispatchNextEvent(); });
    say("ready");
    return QApplication::exec();
}
