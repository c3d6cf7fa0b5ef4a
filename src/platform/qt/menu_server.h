#pragma once

#include <QDBusContext>
#include <QDBusVariant>
#include <QList>
#include <QMenu>
#include <QObject>
#include <QString>
#include <QStringList>

#include "platform/qt/bus_menu_types.h"

namespace platform::qt {

/// A menu whose items never change, served to the panel that draws it, over the interface
/// com.canonical.dbusmenu. To be exported on a bus with its slots and properties; the names of both
/// are the interface's. Main thread.
class MenuServer final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

  public:
    /// `menu` must outlive the object.
    explicit MenuServer(QMenu& menu) : menu_(menu) {}

    [[nodiscard]] uint version() const { return 3; }
    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

    // NOLINTBEGIN(readability-identifier-naming): the names are the interface's.
  public slots:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   platform::qt::MenuLayout& layout);
    QList<platform::qt::MenuItemProperties> GetGroupProperties(const QList<int>& ids,
                                                               const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& name, const QDBusVariant& data, uint timestamp);
    QList<int> EventGroup(const QList<platform::qt::MenuEvent>& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

  signals:
    void ItemsPropertiesUpdated(const QList<platform::qt::MenuItemProperties>& updated,
                                const QList<platform::qt::MenuItemProperties>& removed);
    void LayoutUpdated(uint revision, int parent);
    void ItemActivationRequested(int id, uint timestamp);
    // NOLINTEND(readability-identifier-naming)

  private:
    /// Null for an item that does not exist.
    [[nodiscard]] QAction* actionOf(int id) const;
    [[nodiscard]] bool exists(int id) const;
    [[nodiscard]] QVariantMap propertiesOf(int id, const QStringList& names) const;
    void handle(int id, const QString& name);
    void refuse(int id);

    QMenu& menu_;
};

}  // namespace platform::qt
