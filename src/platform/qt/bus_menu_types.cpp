#include "platform/qt/bus_menu_types.h"

#include <QDBusMetaType>

namespace platform::qt {

QDBusArgument& operator<<(QDBusArgument& argument, const MenuItemProperties& item) {
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuItemProperties& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuLayout& layout) {
    argument.beginStructure();
    argument << layout.id << layout.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const MenuLayout& child : layout.children) {
        argument << QDBusVariant(QVariant::fromValue(child));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLayout& layout) {
    argument.beginStructure();
    argument >> layout.id >> layout.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        layout.children.append(qdbus_cast<MenuLayout>(child.variant()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event) {
    argument.beginStructure();
    argument << event.id << event.name << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event) {
    argument.beginStructure();
    argument >> event.id >> event.name >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const IconPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.bytes;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, IconPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const IconToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, IconToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

void registerBusMenuTypes() {
    qDBusRegisterMetaType<MenuItemProperties>();
    qDBusRegisterMetaType<QList<MenuItemProperties>>();
    qDBusRegisterMetaType<MenuLayout>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<QList<MenuEvent>>();
    qDBusRegisterMetaType<IconPixmap>();
    qDBusRegisterMetaType<QList<IconPixmap>>();
    qDBusRegisterMetaType<IconToolTip>();
    qDBusRegisterMetaType<QList<QStringList>>();
}

}  // namespace platform::qt
