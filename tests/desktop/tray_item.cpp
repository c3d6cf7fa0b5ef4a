#include "desktop/tray_item.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QVariantMap>
#include <iostream>

namespace desktop {
namespace {

struct Event {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Event& event) {
    argument.beginStructure();
    argument << event.id << event.name << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Event& event) {
    argument.beginStructure();
    argument >> event.id >> event.name >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

/// The widths in a(iiay), each checked against its bytes.
QString widthsOf(const QDBusArgument& pictures) {
    QStringList widths;
    pictures.beginArray();
    while (!pictures.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray bytes;
        pictures.beginStructure();
        pictures >> width >> height >> bytes;
        pictures.endStructure();
        widths << (bytes.size() == width * height * 4 ? QString::number(width) : "broken");
    }
    pictures.endArray();
    return widths.join(' ');
}

QString textOf(const QString& name, const QVariant& value) {
    if (name == "IconPixmap") {
        return widthsOf(value.value<QDBusArgument>());
    }
    if (value.canConvert<QDBusObjectPath>()) {
        return value.value<QDBusObjectPath>().path();
    }
    return value.toString();
}

QDBusMessage callMenu(const QString& service, const char* method, const QVariantList& arguments) {
    auto call =
        QDBusMessage::createMethodCall(service, "/MenuBar", "com.canonical.dbusmenu", method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

const char* outcomeOf(const QDBusMessage& reply) {
    return reply.type() == QDBusMessage::ErrorMessage ? "error" : "success";
}

}  // namespace

int printTrayItem(const QString& service) {
    auto call = QDBusMessage::createMethodCall(service, "/StatusNotifierItem",
                                               "org.freedesktop.DBus.Properties", "GetAll");
    call << QString("org.kde.StatusNotifierItem");
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        std::cerr << qPrintable(reply.errorMessage()) << '\n';
        return 1;
    }
    const auto properties = qdbus_cast<QVariantMap>(reply.arguments().value(0));
    for (auto entry = properties.begin(); entry != properties.end(); ++entry) {
        std::cout << qPrintable(entry.key()) << ": "
                  << qPrintable(textOf(entry.key(), entry.value())) << '\n';
    }
    return 0;
}

int askMenuForNonsense(const QString& service) {
    qDBusRegisterMetaType<Event>();
    qDBusRegisterMetaType<QList<Event>>();
    constexpr int noItem = 99;
    const QVariant noNames = QVariant::fromValue(QStringList());
    const QVariant nothing = QVariant::fromValue(QDBusVariant(0));
    std::cout << "layout: " << outcomeOf(callMenu(service, "GetLayout", {noItem, -1, noNames}))
              << "\nproperty: "
              << outcomeOf(callMenu(service, "GetProperty", {noItem, QString("label")}))
              << "\nevent: "
              << outcomeOf(callMenu(service, "Event", {-1, QString("clicked"), nothing, 0U}))
              << "\nabout to show: " << outcomeOf(callMenu(service, "AboutToShow", {noItem}));
    const QList<Event> events{{noItem, "clicked", QDBusVariant(0), 0},
                              {1, "no such event", QDBusVariant(0), 0}};
    const auto refused = qdbus_cast<QList<int>>(
        callMenu(service, "EventGroup", {QVariant::fromValue(events)}).arguments().value(0));
    std::cout << "\nevent group: " << refused.value(0, -1);
    const auto group = callMenu(service, "GetGroupProperties",
                                {QVariant::fromValue(QList<int>{noItem, -7}), noNames});
    const auto items = group.arguments().value(0).value<QDBusArgument>();
    int count = 0;
    items.beginArray();
    for (; !items.atEnd(); ++count) {
        int id = 0;
        QVariantMap properties;
        items.beginStructure();
        items >> id >> properties;
        items.endStructure();
    }
    items.endArray();
    std::cout << "\ngroup properties: " << count << '\n';
    return 0;
}

}  // namespace desktop
