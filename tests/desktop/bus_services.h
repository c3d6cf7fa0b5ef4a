#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <iostream>

namespace desktop {

/// A notification daemon that shows nothing and prints what it is told.
class NotificationRecorder : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

  public:
    bool start() {
        auto bus = QDBusConnection::sessionBus();
        return bus.registerObject("/org/freedesktop/Notifications", this,
                                  QDBusConnection::ExportAllSlots) &&
               bus.registerService("org.freedesktop.Notifications");
    }

  public slots:
    QStringList GetCapabilities() { return {"body", "body-markup"}; }
    QString GetServerInformation(QString& vendor, QString& version, QString& specification) {
        vendor = "Lumaframe tests";
        version = "1";
        specification = "1.2";
        return "recorder";
    }
    uint Notify(const QString& application, uint replaced, const QString&, const QString& title,
                const QString& body, const QStringList&, const QVariantMap&, int) {
        std::cout << "notification\t" << oneField(application) << '\t' << oneField(title) << '\t'
                  << oneField(body) << std::endl;
        return replaced != 0 ? replaced : ++lastId_;
    }
    void CloseNotification(uint) {}

  private:
    static std::string oneField(QString text) {
        return text.replace('\t', ' ').replace('\n', ' ').toStdString();
    }
    uint lastId_ = 0;
};

/// The place where tray icons register. Prints each item; draws nothing.
class TrayHost : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

  public:
    bool start() {
        auto bus = QDBusConnection::sessionBus();
        return bus.registerObject("/StatusNotifierWatcher", this,
                                  QDBusConnection::ExportAllSlots |
                                      QDBusConnection::ExportAllSignals |
                                      QDBusConnection::ExportAllProperties) &&
               bus.registerService("org.kde.StatusNotifierWatcher");
    }
    [[nodiscard]] QStringList items() const { return items_; }
    [[nodiscard]] bool isHostRegistered() const { return true; }
    [[nodiscard]] int protocolVersion() const { return 0; }

  public slots:
    void RegisterStatusNotifierItem(const QString& nameOrPath) {
        const bool isPath = nameOrPath.startsWith('/');
        const QString service = isPath ? message().service() : nameOrPath;
        const QString path = isPath ? nameOrPath : QString("/StatusNotifierItem");
        items_.append(service + path);
        std::cout << "item " << qPrintable(service) << ' ' << qPrintable(path) << std::endl;
        emit StatusNotifierItemRegistered(service + path);
    }
    void RegisterStatusNotifierHost(const QString&) {}

  signals:
    void StatusNotifierItemRegistered(const QString& item);

  private:
    QStringList items_;
};

}  // namespace desktop
