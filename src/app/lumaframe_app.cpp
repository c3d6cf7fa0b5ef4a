#include "app/lumaframe_app.h"

#include <chrono>
#include <utility>

#include "app/main_window.h"
#include "app/menu_bar_commands.h"
#include "app/scenes.h"
#include "overlay/selection_overlay_manager.h"
#include "shortcuts/shortcut_manager.h"

namespace app {

namespace {

/// How long a desktop may go on holding the key grab through which it learned of the action.
constexpr auto keyboardGrabLimit = std::chrono::milliseconds(500);

}  // namespace

LumaframeApp::LumaframeApp(const platform::Platform& platform, NotificationCenter& notifications,
                           base::Log& log)
    : platform_(platform),
      notifications_(notifications),
      log_(log),
      settings_(platform.settings),
      confirmation_({.soundPlayer = platform.soundPlayer,
                     .notifications = platform.userNotifications,
                     .log = log}),
      textRecognition_({.recognizer = platform.textRecognizer,
                        .pasteboard = platform.pasteboard,
                        .fileManager = platform.fileManager,
                        .confirmation = confirmation_,
                        .settings = settings_,
                        .mainQueue = platform.mainQueue,
                        .clock = clock_,
                        .log = log}),
      imageDelivery_({.pasteboard = platform.pasteboard,
                      .fileManager = platform.fileManager,
                      .confirmation = confirmation_,
                      .textRecognition = textRecognition_,
                      .settings = settings_,
                      .mainQueue = platform.mainQueue,
                      .clock = clock_,
                      .log = log}),
      screenCapture_({.service = platform.captureService,
                      .encoder = platform.imageEncoder,
                      .delivery = imageDelivery_,
                      .settings = settings_,
                      .mainQueue = platform.mainQueue,
                      .log = log,
                      .mainBundleIdentifier = platform.bundle.identifier}),
      delegate_({.settings = settings_,
                 .permissions = platform.permissions,
                 .fileManager = platform.fileManager,
                 .application = platform.application}),
      scenes_(makeScenes()) {
    composeSharedInstances();
}

LumaframeApp::~LumaframeApp() = default;

void LumaframeApp::composeSharedInstances() {
    overlay::SelectionOverlayManager::provideShared({.workspace = platform_.workspace,
                                                     .displays = platform_.displays,
                                                     .surfaces = platform_.overlaySurfaces,
                                                     .keyboardTap = platform_.keyboardTap,
                                                     .pointer = platform_.pointer,
                                                     .captureService = platform_.captureService,
                                                     .screenCapture = screenCapture_,
                                                     .mainQueue = platform_.mainQueue,
                                                     .log = log_});
    shortcuts::ShortcutManager::provideShared(
        {.hotKeys = platform_.hotKeys,
         .settings = settings_,
         .notifications = notifications_,
         .permissions = platform_.permissions,
         .mainQueue = platform_.mainQueue,
         .log = log_,
         .showSelection = [this](base::CaptureMode mode) {
             overlay::SelectionOverlayManager::shared().showSelection(mode);
             // After the overlay, which is waited for; the drag gives the engine time to load.
             if (mode == base::CaptureMode::ocr) {
                 platform_.textRecognizer.prepare();
             }
         }});
}

std::unique_ptr<Scenes> LumaframeApp::makeScenes() {
    Scenes::Mediators mediators;
    mediators.contentView = [this] {
        return ui::ContentView::Mediator{.settings = settings_,
                                         .shortcutManager = shortcuts::ShortcutManager::shared(),
                                         .keyMonitor = platform_.keyMonitor,
                                         .loginItems = platform_.loginItems,
                                         .permissions = platform_.permissions,
                                         .fileManager = platform_.fileManager,
                                         .windows = platform_.windows,
                                         .application = platform_.application,
                                         .mainQueue = platform_.mainQueue,
                                         .log = log_,
                                         .bundle = platform_.bundle};
    };
    mediators.permissionsWindow = [this] {
        return ui::PermissionsWindow::Mediator{
            .panel = {.firstRun = {.permissions = platform_.permissions,
                                   .fileManager = platform_.fileManager,
                                   .settings = settings_,
                                   .notifications = notifications_},
                      .video = {.loopers = platform_.videoLoopers, .log = log_},
                      .bundle = platform_.bundle},
            .control = {.windows = platform_.windows,
                        .mainQueue = platform_.mainQueue,
                        .notifications = notifications_}};
    };
    return std::make_unique<Scenes>(std::move(mediators));
}

void LumaframeApp::launch(LaunchReason reason) {
    delegate_.applicationDidFinishLaunching();
    // The first access builds the hot-key manager: shortcuts work before the first window is up.
    shortcuts::ShortcutManager::shared();
    menu_ = std::make_unique<MenuBarCommands>(
        notifications_,
        MenuBarCommands::Actions{
            .showMainWindow = [this] { showMainWindow(); },
            .openPermissionsScene = [this] { platform_.windows.openScene("permissions"); },
            .terminate = [this] { platform_.application.terminate(); }});
    switch (reason) {
        case LaunchReason::user:
            platform_.windows.openScene("main");
            return;
        case LaunchReason::action:
            return;
    }
}

void LumaframeApp::showMainWindow() {
    app::showMainWindow(platform_.windows);
}

void LumaframeApp::performAction(const std::string& name) {
    shortcuts::EventHotKeyID hotKeyID{shortcuts::hotKeySignature, 0};
    if (name == "screenshot") {
        hotKeyID.id = shortcuts::screenshotHotKeyID;
    } else if (name == "recognize-text") {
        hotKeyID.id = shortcuts::ocrHotKeyID;
    } else {
        return;
    }
    platform_.keyboardTap.whenAvailable(keyboardGrabLimit, [hotKeyID] {
        shortcuts::ShortcutManager::shared().handleHotKeyEvent(hotKeyID);
    });
}

}  // namespace app
