#pragma once

#include <QDBusConnection>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>
#include <memory>
#include <optional>

#include "platform/qt/status_notifier_item.h"
#include "platform/qt/status_notifier_watch.h"

namespace platform::qt {

/// The program's icon in whatever tray the desktop has at the moment: one on the session bus
/// where there is one, else one of the XEmbed kind, else none. Trays may come and go. Main thread.
class TrayIcon {
  public:
    /// `menu` must outlive the object; without a bus there is only the other kind of tray.
    TrayIcon(QMenu& menu, const QIcon& icon, StatusNotifierItem::Picture picture,
             const std::optional<QDBusConnection>& bus);

    /// The screen has a tray of the XEmbed kind.
    void noteEmbeddingTray();

  private:
    enum class BusTray { unknown, absent, present };
    enum class EmbeddingTray { notSeen, seen };

    void noteHost(HostPresence presence);
    void choose();
    void embed();

    QMenu& menu_;
    QIcon icon_;
    BusTray busTray_;
    EmbeddingTray embeddingTray_ = EmbeddingTray::notSeen;
    std::unique_ptr<StatusNotifierItem> item_;
    std::unique_ptr<QSystemTrayIcon> embedded_;
    /// Last: it may call from the moment it is there.
    std::unique_ptr<StatusNotifierWatch> watch_;
};

}  // namespace platform::qt
