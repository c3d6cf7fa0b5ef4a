#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <functional>

namespace platform::qt {

/// Whether the desktop has a place for tray icons on the session bus.
enum class HostPresence { absent, present };

/// Tells whether there is such a place: once when the bus has answered, then at each change. A
/// place whose owner changes is absent in between. Nothing waits for an answer of the bus. Main
/// thread.
class StatusNotifierWatch final : public QObject {
    Q_OBJECT

  public:
    StatusNotifierWatch(const QDBusConnection& bus,
                        std::function<void(HostPresence presence)> onChange);

  private slots:
    void askForHost();

  private:
    enum class Knowledge { unknown, absent, present };

    void askForWatcher();
    void noteOwner(const QString& owner);
    void note(HostPresence presence);

    QDBusConnection bus_;
    QDBusServiceWatcher serviceWatcher_;
    std::function<void(HostPresence)> onChange_;
    Knowledge knowledge_ = Knowledge::unknown;
};

}  // namespace platform::qt
