#include "platform/freedesktop/dbus_application.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>
#include <utility>

#include "platform/freedesktop/session_bus.h"

namespace platform::freedesktop {

namespace {

const QString serviceName = QStringLiteral("app.lumaframe.Lumaframe");
const QString objectPath = QStringLiteral("/app/lumaframe/Lumaframe");
const QString applicationInterface = QStringLiteral("org.freedesktop.Application");

constexpr int patienceMilliseconds = 1000;
// The numbers of the bus for "RequestName": a flag of the request, and an answer to it.
constexpr uint doNotQueue = 4;
constexpr uint nameExists = 3;

const char* const introspection = R"(
  <interface name="org.freedesktop.Application">
    <method name="Activate"><arg type="a{sv}" name="platform_data" direction="in"/></method>
    <method name="Open">
      <arg type="as" name="uris" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="ActivateAction">
      <arg type="s" name="action_name" direction="in"/>
      <arg type="av" name="parameter" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
  </interface>
)";

QDBusMessage callOfBus(const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), method);
    call.setArguments(arguments);
    return call;
}

}  // namespace

class DBusApplication::Service final : public QDBusVirtualObject {
  public:
    explicit Service(Hooks hooks) : hooks_(std::move(hooks)) {}
    ~Service() override {
        if (bus_) {
            // The name first, and until the bus has confirmed it: a call that comes now is to start
            // the program again, and not to find a name without an object.
            bus_->call(callOfBus(QStringLiteral("ReleaseName"), {serviceName}), QDBus::Block,
                       patienceMilliseconds);
            bus_->unregisterObject(objectPath);
        }
    }

    Instance start() {
        bus_ = sessionBus();
        if (!bus_) {
            return Instance::first;
        }
        // Before the name is taken: a message may come with it.
        bus_->registerVirtualObject(objectPath, this, QDBusConnection::SingleNode);
        const QDBusMessage reply =
            bus_->call(callOfBus(QStringLiteral("RequestName"), {serviceName, doNotQueue}),
                       QDBus::Block, patienceMilliseconds);
        const bool isTaken = reply.type() == QDBusMessage::ReplyMessage &&
                             reply.arguments().value(0).toUInt() == nameExists;
        if (isTaken) {
            activateTheFirst();
        }
        return isTaken ? Instance::second : Instance::first;
    }

    QString introspect(const QString& /*path*/) const override {
        return QString::fromLatin1(introspection);
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != applicationInterface && !message.interface().isEmpty()) {
            return false;
        }
        const QString call = message.member() + u'(' + message.signature() + u')';
        if (call == u"Activate(a{sv})" || call == u"Open(asa{sv})") {
            // There is no kind of file that this program opens: being asked to is being started.
            answer(message.createReply(), message, connection);
            hooks_.onActivate();
            return true;
        }
        if (call == u"ActivateAction(sava{sv})") {
            handleAction(message, connection);
            return true;
        }
        return false;
    }

  private:
    void handleAction(const QDBusMessage& message, const QDBusConnection& connection) {
        const QString action = message.arguments().value(0).toString();
        if (action != u"screenshot" && action != u"recognize-text") {
            answer(message.createErrorReply(QDBusError::InvalidArgs,
                                            QStringLiteral("There is no such action.")),
                   message, connection);
            return;
        }
        answer(message.createReply(), message, connection);
        hooks_.onAction(action.toStdString());
    }

    static void answer(const QDBusMessage& reply, const QDBusMessage& message,
                       const QDBusConnection& connection) {
        if (message.isReplyRequired()) {
            connection.send(reply);
        }
    }

    void activateTheFirst() {
        QDBusMessage request = QDBusMessage::createMethodCall(
            serviceName, objectPath, applicationInterface, QStringLiteral("Activate"));
        request << QVariantMap();
        // Its answer says that the request has left this process, which ends right after.
        bus_->call(request, QDBus::Block, patienceMilliseconds);
    }

    Hooks hooks_;
    std::optional<QDBusConnection> bus_;
};

DBusApplication::DBusApplication(Hooks hooks)
    : service_(std::make_unique<Service>(std::move(hooks))) {}

DBusApplication::~DBusApplication() = default;

DBusApplication::Instance DBusApplication::start() {
    return service_->start();
}

}  // namespace platform::freedesktop
