#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <iostream>

namespace desktop {

/// A number as the interface has it; anything else as the text it is.
inline QVariant colorSchemeFrom(const QString& text) {
    bool isNumber = false;
    const uint number = text.toUInt(&isNumber);
    return isNumber ? QVariant(number) : QVariant(text);
}

/// A desktop portal with the one setting of the desktop's colours.
class SettingsPortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public:
    explicit SettingsPortal(QString colorScheme) : colorScheme_(std::move(colorScheme)) {}

    bool start() {
        auto bus = QDBusConnection::sessionBus();
        return bus.registerObject(
                   "/org/freedesktop/portal/desktop", this,
                   QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
               bus.registerService("org.freedesktop.portal.Desktop");
    }

  public slots:
    QDBusVariant Read(const QString& space, const QString& key) {
        std::cout << "asked" << std::endl;
        if (colorScheme_ == "hangs") {
            setDelayedReply(true);
            return {};
        }
        if (space != "org.freedesktop.appearance" || key != "color-scheme") {
            sendErrorReply("org.freedesktop.portal.Error.NotFound", "There is no such setting.");
            return {};
        }
        return QDBusVariant(QVariant::fromValue(QDBusVariant(colorSchemeFrom(colorScheme_))));
    }
    /// The test's own: lets the setting change.
    void Announce(const QString& colorScheme) {
        colorScheme_ = colorScheme;
        emit SettingChanged("org.freedesktop.appearance", "color-scheme",
                            QDBusVariant(colorSchemeFrom(colorScheme)));
    }

  signals:
    void SettingChanged(const QString& space, const QString& key, const QDBusVariant& value);

  private:
    QString colorScheme_;
};

inline int announceColorScheme(const QString& colorScheme) {
    auto call = QDBusMessage::createMethodCall("org.freedesktop.portal.Desktop",
                                               "/org/freedesktop/portal/desktop",
                                               "org.freedesktop.portal.Settings", "Announce");
    call << colorScheme;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        std::cerr << qPrintable(reply.errorMessage()) << '\n';
        return 1;
    }
    return 0;
}

}  // namespace desktop
