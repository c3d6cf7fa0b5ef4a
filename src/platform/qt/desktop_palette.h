#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "platform/qt/color_scheme_watch.h"

namespace platform::qt {

/// Makes the windows dark on desktops that announce it only through the settings portal. Where a
/// platform theme or a style brings colours of its own, those stay. Main thread, while a
/// QApplication lives.
class DesktopPalette {
  public:
    using Bus = std::function<std::optional<QDBusConnection>()>;

    /// `bus` is asked when a window needs it.
    explicit DesktopPalette(Bus bus);
    DesktopPalette(const DesktopPalette&) = delete;
    DesktopPalette& operator=(const DesktopPalette&) = delete;

    /// Follows the desktop for as long as one of the windows lives, from the next turn of the loop
    /// on; at other times the desktop's changes do not wake the program up.
    void follow(QWidget& window);

  private:
    void startWatching();
    void apply(ColorScheme scheme);

    Bus bus_;
    int windows_ = 0;
    enum class Colors { desktops, dark } colors_ = Colors::desktops;
    std::unique_ptr<ColorSchemeWatch> watch_;
    /// Last, so that nothing is received any more when the rest goes.
    QObject receiver_;
};

}  // namespace platform::qt
