#pragma once

#include <memory>
#include <string>

#include "app/app_delegate.h"
#include "app/notification_center.h"
#include "app/settings_store.h"
#include "base/clock.h"
#include "base/log.h"
#include "capture/confirmation.h"
#include "capture/image_delivery.h"
#include "capture/screen_capture.h"
#include "capture/text_recognition.h"
#include "platform/platform.h"

namespace app {

class MenuBarCommands;
class Scenes;

/// What made the program start.
enum class LaunchReason {
    /// The user, the session, a launcher.
    user,
    /// A desktop action: the program was started to take a screenshot, not to show its settings.
    action,
};

/// The program: wires the subsystems to the ports of one platform. Main thread.
class LumaframeApp {
  public:
    /// `platform`, `notifications` and `log` outlive the program.
    LumaframeApp(const platform::Platform& platform, NotificationCenter& notifications,
                 base::Log& log);
    ~LumaframeApp();
    LumaframeApp(const LumaframeApp&) = delete;
    LumaframeApp& operator=(const LumaframeApp&) = delete;

    /// The launch sequence: defaults, probes, Dock icon, hot keys, then the settings window unless
    /// an action has started the program.
    void launch(LaunchReason reason);
    /// Brings the settings window to the front, opening it when needed.
    void showMainWindow();
    /// What the program's windows are made from. They may be made from the launch on.
    [[nodiscard]] Scenes& scenes() { return *scenes_; }
    /// Exists from the launch on.
    [[nodiscard]] MenuBarCommands& menu() { return *menu_; }
    /// "screenshot" and "recognize-text" act like a press of hot key 1 or 2, begun once the
    /// keyboard can be grabbed (the desktop's own grab of the key may still be held). Others are
    /// ignored.
    void performAction(const std::string& name);

  private:
    void composeSharedInstances();
    std::unique_ptr<Scenes> makeScenes();

    platform::Platform platform_;
    NotificationCenter& notifications_;
    base::Log& log_;
    base::SystemClock clock_;
    SettingsStore settings_;
    capture::Confirmation confirmation_;
    capture::TextRecognition textRecognition_;
    capture::ImageDelivery imageDelivery_;
    capture::ScreenCapture screenCapture_;
    AppDelegate delegate_;
    std::unique_ptr<Scenes> scenes_;
    std::unique_ptr<MenuBarCommands> menu_;
};

}  // namespace app
