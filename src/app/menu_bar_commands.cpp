#include "app/menu_bar_commands.h"

#include <QKeySequence>
#include <QString>
#include <utility>

namespace app {

namespace {

const QKeySequence settingsKeys(Qt::CTRL | Qt::Key_Comma);
const QKeySequence quitKeys(Qt::CTRL | Qt::Key_Q);

}  // namespace

MenuBarCommands::MenuBarCommands(NotificationCenter& notificationCenter, Actions actions)
    : actions_(std::move(actions)),
      settingsCommand_(QStringLiteral("Settings...")),
      quitCommand_(QStringLiteral("Quit Lumaframe")) {
    settingsCommand_.setShortcut(settingsKeys);
    QObject::connect(
        &settingsCommand_, &QAction::triggered, &settingsCommand_,
        [&notificationCenter] { notificationCenter.post(openPermissionsWindowNotification); });
    quitCommand_.setShortcut(quitKeys);
    QObject::connect(&quitCommand_, &QAction::triggered, &quitCommand_,
                     [this] { actions_.terminate(); });

    QObject::connect(menu_.addAction(QStringLiteral("Show Lumaframe")), &QAction::triggered, &menu_,
                     [this] { actions_.showMainWindow(); });
    menu_.addSeparator();
    // Not the command above: from the menu the scene opens directly, without the notification.
    QAction* settings = menu_.addAction(QStringLiteral("Settings..."));
    settings->setShortcut(settingsKeys);
    QObject::connect(settings, &QAction::triggered, &menu_,
                     [this] { actions_.openPermissionsScene(); });
    menu_.addSeparator();
    menu_.addAction(&quitCommand_);

    observation_ = notificationCenter.observe(openPermissionsWindowNotification,
                                              [this] { actions_.openPermissionsScene(); });
}

MenuBarCommands::~MenuBarCommands() = default;

}  // namespace app
