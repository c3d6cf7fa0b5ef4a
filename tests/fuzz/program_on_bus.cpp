#include "program_on_bus.h"

#include <QAction>
#include <QDBusConnection>
#include <QPixmap>
#include <optional>
#include <utility>

#include "fuzz_input.h"

namespace fuzz {

ProgramOnBus::ProgramOnBus()
    : qt_(argumentCount_, arguments_.data()),
      application_({.onActivate = [this] { ++deeds_.activations; },
                    .onAction = [this](const std::string& name) { ++deeds_.actions[name]; }}) {
    // What the library says of messages that it does not take.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    for (int id = 1; id <= items; ++id) {
        QAction* const action = menu_.addAction(QStringLiteral("Item_%1").arg(id));
        action->setEnabled(id != disabledItem);
        QObject::connect(action, &QAction::triggered, action,
                         [this, id] { ++deeds_.triggers[id]; });
    }
    menu_.actions().back()->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    require(application_.start() == platform::freedesktop::DBusApplication::Instance::first,
            "the program is the first");
    const QDBusConnection bus = QDBusConnection::sessionBus();
    QPixmap picture(16, 16);
    picture.fill(Qt::black);
    item_ = std::make_unique<platform::qt::StatusNotifierItem>(
        bus, menu_, platform::qt::StatusNotifierItem::Picture{{}, {}, QIcon(picture)});
    trayWatch_ = std::make_unique<platform::qt::StatusNotifierWatch>(
        bus, [this, last = std::optional<platform::qt::HostPresence>()](auto presence) mutable {
            require(presence != std::exchange(last, presence), "only changes are told");
            if (presence == platform::qt::HostPresence::present) {
                item_->registerWithHost();
            }
        });
    colors_ =
        std::make_unique<platform::qt::ColorSchemeWatch>(bus, [](platform::qt::ColorScheme scheme) {
            require(scheme == platform::qt::ColorScheme::unstated ||
                        scheme == platform::qt::ColorScheme::dark ||
                        scheme == platform::qt::ColorScheme::light,
                    "a scheme is one of three");
        });
}

void ProgramOnBus::askForAuthorization() {
    notifications_.requestAuthorization(
        [this](capture::Authorization) { ++deeds_.authorizations; });
}

void ProgramOnBus::postNotification() {
    notifications_.add({.identifier = "1", .title = "Title", .body = notificationBody});
}

void ProgramOnBus::turn() {
    // What is done is done in turns: a message, what it leaves for later, and what that does.
    constexpr int longestChain = 4;
    for (int link = 0; link < longestChain; ++link) {
        QCoreApplication::processEvents();
    }
    // An open menu would stay for the next input.
    menu_.hide();
}

Deeds ProgramOnBus::takeDeeds() {
    return std::exchange(deeds_, {});
}

}  // namespace fuzz
