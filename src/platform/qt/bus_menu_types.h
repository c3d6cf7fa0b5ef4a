#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

// The compound types of the interfaces com.canonical.dbusmenu and org.kde.StatusNotifierItem.
namespace platform::qt {

/// (ia{sv}): the properties of one menu item.
struct MenuItemProperties {
    int id = 0;
    QVariantMap properties;
};

/// (ia{sv}av): an item with the items below it.
struct MenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<MenuLayout> children;
};

/// (isvu): what has happened to an item on the screen.
struct MenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

/// (iiay): a picture, four bytes a pixel: alpha, red, green, blue.
struct IconPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
};

/// (sa(iiay)ss): what a pointer that rests on the icon shows.
struct IconToolTip {
    QString iconName;
    QList<IconPixmap> pixmaps;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const MenuItemProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuItemProperties& item);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event);
QDBusArgument& operator<<(QDBusArgument& argument, const IconPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, IconPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const IconToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, IconToolTip& toolTip);

/// Makes the types known to the bus library; before the first of them is sent or received.
void registerBusMenuTypes();

}  // namespace platform::qt
