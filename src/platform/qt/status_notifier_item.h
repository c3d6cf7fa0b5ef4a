#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QIcon>
#include <QList>
#include <QMenu>
#include <QObject>
#include <QString>

#include "platform/qt/bus_menu_types.h"
#include "platform/qt/menu_server.h"

namespace platform::qt {

/// The program's icon for trays on the session bus, over the interface org.kde.StatusNotifierItem,
/// with its menu. The names of the properties and slots are the interface's. Main thread.
///
/// The toolkit has such an icon too, but decides for good at its first one whether the desktop has
/// a tray on the bus.
class StatusNotifierItem final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(QList<platform::qt::IconPixmap> IconPixmap READ iconPixmap)
    Q_PROPERTY(platform::qt::IconToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)

  public:
    struct Picture {
        /// By which a panel that colours its icons itself finds the symbolic one.
        QString name;
        /// The directory of icon themes that has it.
        QString themePath;
        /// For panels that do not look by name.
        QIcon icon;
    };

    /// Offers the icon on `bus`, where no tray knows of it yet. `menu` must outlive the object.
    StatusNotifierItem(const QDBusConnection& bus, QMenu& menu, Picture picture);
    ~StatusNotifierItem() override;

    /// Tells the tray, which must be there, about the icon; again for each tray that comes.
    void registerWithHost();

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const { return QStringLiteral("lumaframe"); }
    [[nodiscard]] QString title() const { return QStringLiteral("Lumaframe"); }
    [[nodiscard]] QString status() const { return QStringLiteral("Active"); }
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] QString iconName() const { return picture_.name; }
    [[nodiscard]] QString iconThemePath() const { return picture_.themePath; }
    [[nodiscard]] QList<platform::qt::IconPixmap> iconPixmap() const;
    [[nodiscard]] platform::qt::IconToolTip toolTip() const;
    [[nodiscard]] bool itemIsMenu() const { return true; }
    [[nodiscard]] QDBusObjectPath menu() const;

    // NOLINTBEGIN(readability-identifier-naming): the names are the interface's.
  public slots:
    // For panels that do not draw the menu themselves; the place is on the screen, in pixels.
    void ContextMenu(int x, int y);
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void Scroll(int delta, const QString& orientation);

  signals:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString& status);
    // NOLINTEND(readability-identifier-naming)

  private:
    QDBusConnection bus_;
    QMenu& menu_;
    Picture picture_;
    QString serviceName_;
    MenuServer menuServer_;
};

}  // namespace platform::qt
