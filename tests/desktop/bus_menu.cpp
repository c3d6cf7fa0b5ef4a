#include "desktop/bus_menu.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDateTime>
#include <iostream>
#include <optional>
#include <vector>

namespace desktop {
namespace {

struct Item {
    int id = 0;
    QVariantMap properties;
    [[nodiscard]] QString label() const {
        if (properties.value("type") == "separator") {
            return "-";
        }
        return properties.value("label").toString().remove('_');
    }
};

QDBusMessage callMenu(const QString& service, const char* method, const QVariantList& arguments) {
    auto call =
        QDBusMessage::createMethodCall(service, "/MenuBar", "com.canonical.dbusmenu", method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

/// The children of the root in GetLayout's answer, which is (u, (i a{sv} av)).
std::optional<std::vector<Item>> itemsOf(const QString& service) {
    const QDBusMessage reply =
        callMenu(service, "GetLayout", {0, -1, QVariant::fromValue(QStringList())});
    if (reply.type() == QDBusMessage::ErrorMessage || reply.arguments().size() != 2) {
        std::cerr << "No menu: " << qPrintable(reply.errorMessage()) << '\n';
        return std::nullopt;
    }
    std::vector<Item> items;
    Item root;
    const auto layout = reply.arguments().at(1).value<QDBusArgument>();
    layout.beginStructure();
    layout >> root.id >> root.properties;
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant variant;
        layout >> variant;
        const auto child = variant.variant().value<QDBusArgument>();
        Item item;
        child.beginStructure();
        child >> item.id >> item.properties;
        child.endStructure();
        items.push_back(item);
    }
    return items;
}

}  // namespace

int printMenu(const QString& service) {
    const auto items = itemsOf(service);
    if (!items) {
        return 1;
    }
    for (const Item& item : *items) {
        std::cout << qPrintable(item.label()) << '\n';
    }
    return 0;
}

int clickMenuItem(const QString& service, const QString& label) {
    const auto items = itemsOf(service);
    if (!items) {
        return 1;
    }
    for (const Item& item : *items) {
        if (item.label() == label) {
            const auto time = static_cast<uint>(QDateTime::currentSecsSinceEpoch());
            callMenu(service, "Event",
                     {item.id, QString("clicked"), QVariant::fromValue(QDBusVariant(0)), time});
            return 0;
        }
    }
    std::cerr << "No menu item \"" << qPrintable(label) << "\".\n";
    return 1;
}

}  // namespace desktop
