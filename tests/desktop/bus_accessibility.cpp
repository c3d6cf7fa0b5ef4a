#include "desktop/bus_accessibility.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QVariantList>
#include <iostream>
#include <utility>
#include <vector>

namespace desktop {
namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* busName = "org.a11y.Bus";
constexpr const char* busPath = "/org/a11y/bus";
/// Deeper than any window: an object that is its own child must not go on for ever.
constexpr int deepest = 20;

/// An object of some program: its bus name and its path.
using Reference = std::pair<QString, QString>;

QDBusMessage call(const QDBusConnection& bus, const Reference& object, const char* interface,
                  const char* method, const QVariantList& arguments = {}) {
    auto message = QDBusMessage::createMethodCall(object.first, object.second, interface, method);
    message.setArguments(arguments);
    return bus.call(message);
}

QVariant firstOf(const QDBusMessage& reply) {
    return reply.arguments().isEmpty() ? QVariant() : reply.arguments().front();
}

QString property(const QDBusConnection& bus, const Reference& object, const char* name) {
    const auto reply = call(bus, object, propertiesInterface, "Get",
                            {QString(accessibleInterface), QString(name)});
    return firstOf(reply).value<QDBusVariant>().variant().toString().simplified();
}

std::vector<Reference> childrenOf(const QDBusConnection& bus, const Reference& object) {
    std::vector<Reference> children;
    const auto answer = firstOf(call(bus, object, accessibleInterface, "GetChildren"));
    if (!answer.canConvert<QDBusArgument>()) {
        return children;
    }
    const auto list = answer.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Reference child;
        QDBusObjectPath path;
        list.beginStructure();
        list >> child.first >> path;
        list.endStructure();
        child.second = path.path();
        children.push_back(child);
    }
    return children;
}

quint64 statesOf(const QDBusConnection& bus, const Reference& object) {
    const auto answer = firstOf(call(bus, object, accessibleInterface, "GetState"));
    if (!answer.canConvert<QDBusArgument>()) {
        return 0;
    }
    QList<uint> words;
    answer.value<QDBusArgument>() >> words;
    return words.value(0) | static_cast<quint64>(words.value(1)) << 32U;
}

struct Extents {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

Extents extentsOf(const QDBusConnection& bus, const Reference& object) {
    constexpr uint screenCoordinates = 0;
    const auto answer =
        firstOf(call(bus, object, "org.a11y.atspi.Component", "GetExtents", {screenCoordinates}));
    Extents extents;
    if (answer.canConvert<QDBusArgument>()) {
        const auto structure = answer.value<QDBusArgument>();
        structure.beginStructure();
        structure >> extents.x >> extents.y >> extents.width >> extents.height;
        structure.endStructure();
    }
    return extents;
}

void print(const QDBusConnection& bus, const Reference& object, int depth) {
    const Extents extents = extentsOf(bus, object);
    const auto role = firstOf(call(bus, object, accessibleInterface, "GetRoleName")).toString();
    std::cout << depth << '\t' << qPrintable(role) << '\t' << extents.x << '\t' << extents.y << '\t'
              << extents.width << '\t' << extents.height << '\t' << statesOf(bus, object) << '\t'
              << qPrintable(property(bus, object, "Name")) << '\t'
              << qPrintable(property(bus, object, "Description")) << '\n';
    if (depth < deepest) {
        for (const Reference& child : childrenOf(bus, object)) {
            print(bus, child, depth + 1);
        }
    }
}

}  // namespace

int enableAccessibility() {
    const auto reply =
        call(QDBusConnection::sessionBus(), {busName, busPath}, propertiesInterface, "Set",
             {QString("org.a11y.Status"), QString("IsEnabled"),
              QVariant::fromValue(QDBusVariant(true))});
    if (reply.type() == QDBusMessage::ErrorMessage) {
        std::cerr << qPrintable(reply.errorMessage()) << '\n';
        return 1;
    }
    return 0;
}

int printAccessibles() {
    const auto address =
        firstOf(call(QDBusConnection::sessionBus(), {busName, busPath}, busName, "GetAddress"));
    const auto bus = QDBusConnection::connectToBus(address.toString(), "accessibility");
    if (!bus.isConnected()) {
        std::cerr << "No accessibility bus: " << qPrintable(bus.lastError().message()) << '\n';
        return 1;
    }
    const Reference registry{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
    for (const Reference& program : childrenOf(bus, registry)) {
        print(bus, program, 0);
    }
    return 0;
}

}  // namespace desktop
