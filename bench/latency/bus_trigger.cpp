#include "latency/bus_trigger.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusVariant>

#include "latency/monotonic.h"

namespace latency {

namespace {

constexpr const char* connectionName = "latency";
constexpr const char* menuInterface = "com.canonical.dbusmenu";
constexpr const char* menuPath = "/MenuBar";

}  // namespace

BusTrigger::BusTrigger(const std::string& address)
    : connection_(QDBusConnection::connectToBus(QString::fromStdString(address), connectionName)) {}

BusTrigger::~BusTrigger() {
    QDBusConnection::disconnectFromBus(connectionName);
}

bool BusTrigger::isThere(const std::string& service) {
    return connection_.interface()->isServiceRegistered(QString::fromStdString(service));
}

double BusTrigger::send(const QDBusMessage& message) {
    const double at = now();
    connection_.asyncCall(message);
    return at;
}

double BusTrigger::call(const std::string& service, const std::string& path,
                        const std::string& interface, const std::string& method, int argument) {
    auto message = QDBusMessage::createMethodCall(
        QString::fromStdString(service), QString::fromStdString(path),
        QString::fromStdString(interface), QString::fromStdString(method));
    message << argument;
    return send(message);
}

/// From the children of the root in GetLayout's answer, which is (u, (i a{sv} av)).
std::optional<int> BusTrigger::menuItem(const QString& service, const QString& label) {
    auto question = QDBusMessage::createMethodCall(service, menuPath, menuInterface, "GetLayout");
    question << 0 << -1 << QStringList();
    const QDBusMessage answer = connection_.call(question);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().size() != 2) {
        return std::nullopt;
    }
    const auto layout = answer.arguments().at(1).value<QDBusArgument>();
    int root = 0;
    QVariantMap rootProperties;
    layout.beginStructure();
    layout >> root >> rootProperties;
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant variant;
        layout >> variant;
        const auto child = variant.variant().value<QDBusArgument>();
        int id = 0;
        QVariantMap properties;
        child.beginStructure();
        child >> id >> properties;
        child.endStructure();
        if (properties.value("label").toString().remove('_') == label) {
            return id;
        }
    }
    return std::nullopt;
}

std::optional<double> BusTrigger::clickMenuItem(const std::string& service,
                                                const std::string& label) {
    const QString name = QString::fromStdString(service);
    const auto id = menuItem(name, QString::fromStdString(label));
    if (!id) {
        return std::nullopt;
    }
    auto message = QDBusMessage::createMethodCall(name, menuPath, menuInterface, "Event");
    message << *id << QString("clicked") << QVariant::fromValue(QDBusVariant(0)) << 0U;
    return send(message);
}

}  // namespace latency
