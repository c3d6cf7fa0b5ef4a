#include "platform/qt/tray_icon.h"

#include <QCursor>
#include <utility>

namespace platform::qt {

TrayIcon::TrayIcon(QMenu& menu, const QIcon& icon, StatusNotifierItem::Picture picture,
                   const std::optional<QDBusConnection>& bus)
    : menu_(menu), icon_(icon), busTray_(bus ? BusTray::unknown : BusTray::absent) {
    if (bus) {
        item_ = std::make_unique<StatusNotifierItem>(*bus, menu, std::move(picture));
        watch_ = std::make_unique<StatusNotifierWatch>(
            *bus, [this](HostPresence presence) { noteHost(presence); });
    }
}

void TrayIcon::noteEmbeddingTray() {
    embeddingTray_ = EmbeddingTray::seen;
    choose();
}

void TrayIcon::noteHost(HostPresence presence) {
    busTray_ = presence == HostPresence::present ? BusTray::present : BusTray::absent;
    choose();
    if (busTray_ == BusTray::present) {
        item_->registerWithHost();
    }
}

void TrayIcon::choose() {
    switch (busTray_) {
        case BusTray::unknown:
            // The answer comes soon; two icons for a moment would be worse than none.
            return;
        case BusTray::present:
            embedded_.reset();
            return;
        case BusTray::absent:
            if (embeddingTray_ == EmbeddingTray::seen && !embedded_) {
                embed();
            }
            return;
    }
}

void TrayIcon::embed() {
    embedded_ = std::make_unique<QSystemTrayIcon>(icon_);
    embedded_->setToolTip(QStringLiteral("Lumaframe"));
    embedded_->setContextMenu(&menu_);
    QObject::connect(embedded_.get(), &QSystemTrayIcon::activated, &menu_,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) {
                             menu_.popup(QCursor::pos());
                         }
                     });
    embedded_->show();
}

}  // namespace platform::qt
