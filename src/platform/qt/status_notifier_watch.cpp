#include "platform/qt/status_notifier_watch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <utility>

namespace platform::qt {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

/// `message` asked without waiting; `handler` gets the reply unless `receiver` goes first.
template <typename Handler>
void ask(const QDBusConnection& bus, const QDBusMessage& message, QObject& receiver,
         Handler handler) {
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(message), &receiver);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, &receiver,
                     [handler](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         handler(finished->reply());
                     });
}

}  // namespace

StatusNotifierWatch::StatusNotifierWatch(const QDBusConnection& bus,
                                         std::function<void()> onPresent)
    : bus_(bus),
      serviceWatcher_(watcherName, bus, QDBusServiceWatcher::WatchForRegistration),
      onPresent_(std::move(onPresent)) {
    connect(&serviceWatcher_, &QDBusServiceWatcher::serviceRegistered, this,
            &StatusNotifierWatch::askForHost);
    bus_.connect(watcherName, watcherPath, watcherName,
                 QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(onHostRegistered()));
    askForWatcher();
}

void StatusNotifierWatch::askForWatcher() {
    // By its owner first: a call to the name itself could start a watcher that nobody wants.
    auto question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question << watcherName;
    ask(bus_, question, *this, [this](const QDBusMessage& reply) {
        if (reply.arguments().value(0).toBool()) {
            askForHost();
        }
    });
}

void StatusNotifierWatch::askForHost() {
    auto question = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    ask(bus_, question, *this, [this](const QDBusMessage& reply) {
        const auto value = reply.arguments().value(0).value<QDBusVariant>().variant();
        if (reply.type() == QDBusMessage::ReplyMessage && value.toBool()) {
            onHostRegistered();
        }
    });
}

void StatusNotifierWatch::onHostRegistered() {
    if (const auto onPresent = std::exchange(onPresent_, nullptr)) {
        onPresent();
    }
}

}  // namespace platform::qt
