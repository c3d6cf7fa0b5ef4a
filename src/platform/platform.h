#pragma once

#include "app/application.h"
#include "app/settings_backend.h"
#include "app/windows.h"
#include "base/bundle.h"
#include "base/displays.h"
#include "base/file_manager.h"
#include "base/main_queue.h"
#include "base/permissions.h"
#include "capture/capture_service.h"
#include "capture/image_encoder.h"
#include "capture/pasteboard.h"
#include "capture/sound_player.h"
#include "capture/text_recognizer.h"
#include "capture/user_notifications.h"
#include "overlay/keyboard_tap.h"
#include "overlay/overlay_surface.h"
#include "overlay/pointer.h"
#include "overlay/workspace.h"
#include "shortcuts/hot_key_service.h"
#include "shortcuts/key_monitor.h"
#include "ui/login_item_service.h"
#include "ui/video_looper.h"

namespace platform {

/// The application's identifier on every system: bundle, desktop file, D-Bus name.
inline constexpr const char* applicationIdentifier = "app.lumaframe.Lumaframe";

/// One system's answer to every port, and where it has the program. The ports live as long as
/// this.
struct Platform {
    base::MainQueue& mainQueue;
    base::Displays& displays;
    base::FileManager& fileManager;
    base::Permissions& permissions;
    app::SettingsBackend& settings;
    app::Windows& windows;
    app::Application& application;
    shortcuts::HotKeyService& hotKeys;
    shortcuts::KeyMonitor& keyMonitor;
    overlay::Workspace& workspace;
    overlay::KeyboardTap& keyboardTap;
    overlay::Pointer& pointer;
    overlay::OverlaySurfaceFactory& overlaySurfaces;
    capture::CaptureService& captureService;
    capture::Pasteboard& pasteboard;
    capture::ImageEncoder& imageEncoder;
    capture::TextRecognizer& textRecognizer;
    capture::SoundPlayer& soundPlayer;
    capture::UserNotifications& userNotifications;
    ui::LoginItemService& loginItems;
    ui::VideoLooperFactory& videoLoopers;
    base::Bundle bundle;
};

}  // namespace platform
