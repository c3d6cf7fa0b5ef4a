#include "platform/qt/status_notifier_item.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QImage>
#include <QtEndian>
#include <utility>

namespace platform::qt {

namespace {

const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuPath = QStringLiteral("/MenuBar");

IconPixmap pixmapOf(const QIcon& icon, const QSize& size) {
    const QImage image = icon.pixmap(size).toImage().convertToFormat(QImage::Format_ARGB32);
    IconPixmap pixmap{image.width(), image.height(), {}};
    pixmap.bytes.resize(image.sizeInBytes());
    // The interface wants the bytes of each pixel in network order.
    qToBigEndian<quint32>(image.constBits(), image.sizeInBytes() / 4, pixmap.bytes.data());
    return pixmap;
}

}  // namespace

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& bus, QMenu& menu, Picture picture)
    : bus_(bus),
      menu_(menu),
      picture_(std::move(picture)),
      serviceName_(QStringLiteral("org.kde.StatusNotifierItem-%1-1")
                       .arg(QCoreApplication::applicationPid())),
      menuServer_(menu) {
    registerBusMenuTypes();
    constexpr auto exported = QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                              QDBusConnection::ExportAllProperties;
    bus_.registerObject(menuPath, &menuServer_, exported);
    bus_.registerObject(itemPath, this, exported);
    bus_.registerService(serviceName_);
}

StatusNotifierItem::~StatusNotifierItem() {
    bus_.unregisterService(serviceName_);
    bus_.unregisterObject(itemPath);
    bus_.unregisterObject(menuPath);
}

void StatusNotifierItem::registerWithHost() {
    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.kde.StatusNotifierWatcher"),
                                                  QStringLiteral("/StatusNotifierWatcher"),
                                                  QStringLiteral("org.kde.StatusNotifierWatcher"),
                                                  QStringLiteral("RegisterStatusNotifierItem"));
    message << serviceName_;
    bus_.send(message);
}

QList<IconPixmap> StatusNotifierItem::iconPixmap() const {
    QList<IconPixmap> pixmaps;
    for (const QSize& size : picture_.icon.availableSizes()) {
        pixmaps.append(pixmapOf(picture_.icon, size));
    }
    return pixmaps;
}

IconToolTip StatusNotifierItem::toolTip() const {
    return {{}, {}, title(), {}};
}

QDBusObjectPath StatusNotifierItem::menu() const {
    return QDBusObjectPath(menuPath);
}

void StatusNotifierItem::ContextMenu(int x, int y) {
    menu_.popup(QPoint(x, y));
}

void StatusNotifierItem::Activate(int x, int y) {
    menu_.popup(QPoint(x, y));
}

void StatusNotifierItem::SecondaryActivate(int x, int y) {
    menu_.popup(QPoint(x, y));
}

void StatusNotifierItem::Scroll(int /*delta*/, const QString& /*orientation*/) {}

}  // namespace platform::qt
