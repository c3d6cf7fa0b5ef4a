#include "platform/qt/menu_server.h"

#include <QAction>
#include <QDBusError>
#include <QGuiApplication>
#include <QKeySequence>

namespace platform::qt {

namespace {

constexpr int rootId = 0;
// The items never change, so this is their only revision.
constexpr uint revision = 1;

/// The keys of a shortcut as the interface writes them: modifiers by name, then the key.
QStringList shortcutKeys(const QKeySequence& shortcut) {
    const QKeyCombination combination = shortcut[0];
    const auto modifiers = combination.keyboardModifiers();
    QStringList keys;
    if (modifiers.testFlag(Qt::ControlModifier)) {
        keys << QStringLiteral("Control");
    }
    if (modifiers.testFlag(Qt::AltModifier)) {
        keys << QStringLiteral("Alt");
    }
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        keys << QStringLiteral("Shift");
    }
    return keys << QKeySequence(combination.key()).toString().toLower();
}

QVariantMap allPropertiesOf(const QAction& action) {
    if (action.isSeparator()) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    // An underscore marks the access key; a doubled one is a letter.
    QVariantMap properties{
        {QStringLiteral("label"), action.text().replace(u'_', QStringLiteral("__"))},
        {QStringLiteral("enabled"), action.isEnabled()},
        {QStringLiteral("visible"), action.isVisible()}};
    if (!action.shortcut().isEmpty()) {
        properties[QStringLiteral("shortcut")] =
            QVariant::fromValue(QList<QStringList>{shortcutKeys(action.shortcut())});
    }
    return properties;
}

}  // namespace

QString MenuServer::textDirection() const {
    return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

uint MenuServer::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                           MenuLayout& layout) {
    if (!exists(parentId)) {
        refuse(parentId);
        return revision;
    }
    layout = {parentId, propertiesOf(parentId, propertyNames), {}};
    if (parentId == rootId && recursionDepth != 0) {
        for (int id = 1; exists(id); ++id) {
            layout.children.append({id, propertiesOf(id, propertyNames), {}});
        }
    }
    return revision;
}

QList<MenuItemProperties> MenuServer::GetGroupProperties(const QList<int>& ids,
                                                         const QStringList& propertyNames) {
    QList<MenuItemProperties> items;
    for (const int id : ids) {
        if (exists(id)) {
            items.append({id, propertiesOf(id, propertyNames)});
        }
    }
    return items;
}

QDBusVariant MenuServer::GetProperty(int id, const QString& name) {
    const QVariantMap properties = propertiesOf(id, {name});
    if (properties.isEmpty()) {
        refuse(id);
        return QDBusVariant(QString());
    }
    return QDBusVariant(properties.value(name));
}

void MenuServer::Event(int id, const QString& name, const QDBusVariant& /*data*/,
                       uint /*timestamp*/) {
    if (!exists(id)) {
        refuse(id);
        return;
    }
    handle(id, name);
}

QList<int> MenuServer::EventGroup(const QList<MenuEvent>& events) {
    QList<int> idErrors;
    for (const MenuEvent& event : events) {
        if (exists(event.id)) {
            handle(event.id, event.name);
        } else {
            idErrors.append(event.id);
        }
    }
    return idErrors;
}

bool MenuServer::AboutToShow(int id) {
    if (!exists(id)) {
        refuse(id);
    }
    // No item needs an update before it is shown.
    return false;
}

QList<int> MenuServer::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    for (const int id : ids) {
        if (!exists(id)) {
            idErrors.append(id);
        }
    }
    return {};
}

QAction* MenuServer::actionOf(int id) const {
    return menu_.actions().value(id - 1, nullptr);
}

bool MenuServer::exists(int id) const {
    return id == rootId || actionOf(id) != nullptr;
}

QVariantMap MenuServer::propertiesOf(int id, const QStringList& names) const {
    const QAction* action = actionOf(id);
    QVariantMap properties =
        action == nullptr
            ? QVariantMap{{QStringLiteral("children-display"), QStringLiteral("submenu")}}
            : allPropertiesOf(*action);
    if (!names.isEmpty()) {
        properties.removeIf([&](const auto& entry) { return !names.contains(entry.key()); });
    }
    return properties;
}

void MenuServer::handle(int id, const QString& name) {
    QAction* action = actionOf(id);
    if (action != nullptr && name == u"clicked") {
        // In a turn of its own, after the panel has its answer.
        QMetaObject::invokeMethod(action, &QAction::trigger, Qt::QueuedConnection);
    }
}

void MenuServer::refuse(int id) {
    sendErrorReply(QDBusError::InvalidArgs,
                   QStringLiteral("There is no such thing of the item %1.").arg(id));
}

}  // namespace platform::qt
