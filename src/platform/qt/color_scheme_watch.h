#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <functional>

namespace platform::qt {

/// What a desktop announces of its colours.
enum class ColorScheme { unstated, dark, light };

/// Tells what the desktop's settings portal announces, when it first answers and at each change,
/// also after the portal has come back. Without a portal, or with one that talks nonsense, nothing
/// is told. Nothing waits for an answer, however late. Main thread.
///
/// Source of the interface: org.freedesktop.portal.Settings, version 1.
class ColorSchemeWatch final : public QObject {
    Q_OBJECT

  public:
    ColorSchemeWatch(const QDBusConnection& bus, std::function<void(ColorScheme)> onChange);
    ~ColorSchemeWatch() override;

  private slots:
    void noteSetting(const QString& space, const QString& key, const QDBusVariant& value);

  private:
    void ask();
    void note(const QVariant& value);

    QDBusConnection bus_;
    QDBusServiceWatcher serviceWatcher_;
    std::function<void(ColorScheme)> onChange_;
};

}  // namespace platform::qt
