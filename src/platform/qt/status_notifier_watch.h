#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <functional>

namespace platform::qt {

/// Tells once when the desktop has a place for tray icons on the session bus. Nothing waits for an
/// answer of the bus. Main thread.
///
/// The toolkit looks for such a place a single time, when the first tray icon is made, and never
/// sees one that comes later; so the icon is to be made only after this has told.
class StatusNotifierWatch final : public QObject {
    Q_OBJECT

  public:
    StatusNotifierWatch(const QDBusConnection& bus, std::function<void()> onPresent);

  private slots:
    void onHostRegistered();

  private:
    void askForWatcher();
    void askForHost();

    QDBusConnection bus_;
    QDBusServiceWatcher serviceWatcher_;
    std::function<void()> onPresent_;
};

}  // namespace platform::qt
