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
                                         std::function<void(HostPresence presence)> onChange)
    : bus_(bus),
      serviceWatcher_(watcherName, bus, QDBusServiceWatcher::WatchForOwnerChange),
      onChange_(std::move(onChange)) {
    connect(&serviceWatcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& /*old*/, const QString& owner) {
                noteOwner(owner);
            });
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus_.connect(watcherName, watcherPath, watcherName, QString::fromLatin1(signal), this,
                     SLOT(askForHost()));
    }
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
        } else {
            note(HostPresence::absent);
        }
    });
}

void StatusNotifierWatch::noteOwner(const QString& owner) {
    note(HostPresence::absent);
    if (!owner.isEmpty()) {
        askForHost();
    }
}

void StatusNotifierWatch::askForHost() {
    auto question = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question.setAutoStartService(false);
    question << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    ask(bus_, question, *this, [this](const QDBusMessage& reply) {
        const auto value = reply.arguments().value(0).value<QDBusVariant>().variant();
        const bool isThere = reply.type() == QDBusMessage::ReplyMessage && value.toBool();
        note(isThere ? HostPresence::present : HostPresence::absent);
    });
}

void StatusNotifierWatch::note(HostPresence presence) {
    const auto knowledge =
        presence == HostPresence::present ? Knowledge::present : Knowledge::absent;
    if (std::exchange(knowledge_, knowledge) != knowledge) {
        onChange_(presence);
    }
}

}  // namespace platform::qt
