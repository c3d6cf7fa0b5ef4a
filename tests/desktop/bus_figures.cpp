#include "desktop/bus_figures.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QRegularExpression>
#include <QVariantMap>
#include <iostream>

namespace desktop {
namespace {

QVariant ask(const QString& service, const QString& path, const QString& interface,
             const QString& method, const QVariantList& arguments = {}) {
    auto call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        std::cerr << qPrintable(reply.errorMessage()) << '\n';
    }
    return reply.arguments().value(0);
}

/// The objects at and below `path`, as their introspection names them.
int objectsUnder(const QString& service, const QString& path) {
    const QString text =
        ask(service, path, "org.freedesktop.DBus.Introspectable", "Introspect").toString();
    static const QRegularExpression node("<node name=\"([^\"/]+)\"");
    int count = 1;
    for (auto found = node.globalMatch(text); found.hasNext();) {
        count +=
            objectsUnder(service, (path == "/" ? path : path + '/') + found.next().captured(1));
    }
    return count;
}

}  // namespace

int printBusFigures(const QString& service) {
    const auto figures = qdbus_cast<QVariantMap>(
        ask("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.Debug.Stats",
            "GetConnectionStats", {service}));
    if (!figures.contains("BusNames") || !figures.contains("MatchRules")) {
        return 1;
    }
    std::cout << "names " << figures["BusNames"].toUInt() << "\nmatch rules "
              << figures["MatchRules"].toUInt() << "\nobjects " << objectsUnder(service, "/")
              << '\n';
    return 0;
}

}  // namespace desktop
