#include "platform/freedesktop/notification_service.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <utility>

#include "platform/freedesktop/random_identifier.h"
#include "platform/freedesktop/session_bus.h"

namespace platform::freedesktop {

namespace {

using capture::Authorization;
using capture::NotificationRequest;

const QString notifications = QStringLiteral("org.freedesktop.Notifications");
const QString notificationsPath = QStringLiteral("/org/freedesktop/Notifications");
const QString busName = QStringLiteral("org.freedesktop.DBus");

// Long enough for a server that is being started, short enough to be of use to somebody.
constexpr int patienceMilliseconds = 5000;

QDBusMessage busCall(const char* method) {
    return QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"), busName,
                                          QString::fromLatin1(method));
}

QDBusMessage serverCall(const char* method) {
    return QDBusMessage::createMethodCall(notifications, notificationsPath, notifications,
                                          QString::fromLatin1(method));
}

}  // namespace

class NotificationService::Client final : public QObject {
  public:
    Client() : bus_(sessionBus()) {
        if (bus_) {
            // Another server may read markup where this one did not.
            auto* watcher = new QDBusServiceWatcher(notifications, *bus_,
                                                    QDBusServiceWatcher::WatchForOwnerChange, this);
            connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                    [this] { capabilities_.reset(); });
        }
    }

    [[nodiscard]] bool hasBus() const { return bus_.has_value(); }

    void findServer(std::function<void(Authorization)> completion) {
        call(busCall("NameHasOwner") << notifications,
             [this, completion](const QDBusMessage& reply) {
                 if (reply.arguments().value(0).toBool()) {
                     completion(Authorization::granted);
                     return;
                 }
                 findActivatableServer(completion);
             });
    }

    void show(const NotificationRequest& request) {
        if (!bus_) {
            return;
        }
        if (capabilities_) {
            notify(request, *capabilities_);
            return;
        }
        call(serverCall("GetCapabilities"), [this, request](const QDBusMessage& reply) {
            const QVariant list = reply.arguments().value(0);
            if (reply.type() == QDBusMessage::ReplyMessage &&
                list.metaType().id() == QMetaType::QStringList) {
                capabilities_ = list.toStringList();
            }
            // Of a server that does not say, expect the worst: that it reads markup.
            notify(request, capabilities_.value_or(QStringList{QStringLiteral("body-markup")}));
        });
    }

  private:
    /// `handler` is called once, with the reply or with an error, unless this object goes first.
    void call(const QDBusMessage& message, std::function<void(const QDBusMessage&)> handler) {
        auto* watcher =
            new QDBusPendingCallWatcher(bus_->asyncCall(message, patienceMilliseconds), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [handler = std::move(handler)](QDBusPendingCallWatcher* finished) {
                    finished->deleteLater();
                    handler(finished->reply());
                });
    }

    void findActivatableServer(std::function<void(Authorization)> completion) {
        call(busCall("ListActivatableNames"), [completion](const QDBusMessage& reply) {
            const bool canBeStarted =
                reply.arguments().value(0).toStringList().contains(notifications);
            completion(canBeStarted ? Authorization::granted : Authorization::denied);
        });
    }

    void notify(const NotificationRequest& request, const QStringList& capabilities) {
        const bool readsMarkup = capabilities.contains(QStringLiteral("body-markup"));
        const std::string body = readsMarkup ? escapedForMarkup(request.body) : request.body;
        QVariantMap hints{
            {QStringLiteral("desktop-entry"), QStringLiteral("app.lumaframe.Lumaframe")}};
        if (capabilities.contains(QStringLiteral("sound"))) {
            hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
        }
        QDBusMessage message = serverCall("Notify");
        message << QStringLiteral("Lumaframe") << 0U << QStringLiteral("app.lumaframe.Lumaframe")
                << QString::fromStdString(request.title) << QString::fromStdString(body)
                << QStringList() << hints << -1;
        // Nobody waits for the number that the server gives it.
        bus_->send(message);
    }

    std::optional<QDBusConnection> bus_;
    std::optional<QStringList> capabilities_;
};

NotificationService::NotificationService(base::MainQueue& queue)
    : queue_(queue), client_(std::make_shared<Client>()) {}

NotificationService::~NotificationService() = default;

void NotificationService::requestAuthorization(std::function<void(Authorization)> completion) {
    queue_.post([client = std::weak_ptr(client_), completion = std::move(completion)] {
        const auto alive = client.lock();
        if (alive && alive->hasBus()) {
            alive->findServer(completion);
        } else if (alive) {
            completion(Authorization::denied);
        }
    });
}

void NotificationService::add(const NotificationRequest& request) {
    queue_.post([client = std::weak_ptr(client_), request] {
        if (const auto alive = client.lock()) {
            alive->show(request);
        }
    });
}

std::string NotificationService::makeIdentifier() {
    return randomIdentifier();
}

std::string escapedForMarkup(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            default:
                escaped += character;
        }
    }
    return escaped;
}

}  // namespace platform::freedesktop
