#include "platform/macos/macos_platform.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>
#include <memory>
#include <string>
#include <utility>

#include "app/menu_bar_commands.h"
#include "app/scenes.h"
#include "platform/macos/app_service_login_item.h"
#include "platform/macos/bitmap_image_encoder.h"
#include "platform/macos/carbon_hot_key_service.h"
#include "platform/macos/center_user_notifications.h"
#include "platform/macos/cocoa_application.h"
#include "platform/macos/cocoa_displays.h"
#include "platform/macos/cocoa_pasteboard.h"
#include "platform/macos/cocoa_pointer.h"
#include "platform/macos/cocoa_windows.h"
#include "platform/macos/cocoa_workspace.h"
#include "platform/macos/event_tap_keyboard_tap.h"
#include "platform/macos/foundation_file_manager.h"
#include "platform/macos/local_key_monitor.h"
#include "platform/macos/looping_player_view.h"
#include "platform/macos/main_bundle.h"
#include "platform/macos/named_sound_player.h"
#include "platform/macos/panel_overlay_surface.h"
#include "platform/macos/privacy_permissions.h"
#include "platform/macos/reopening.h"
#include "platform/macos/screen_capture_kit_capture_service.h"
#include "platform/macos/status_item.h"
#include "platform/macos/user_defaults_settings_store.h"
#include "platform/macos/vision_text_recognizer.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_windows.h"

namespace platform::macos {

namespace {

/// The toolkit, which keeps the delegate that it finds.
struct Toolkit {
    explicit Toolkit(char** arguments) : application(argumentCount, arguments) {}

    // There are no command-line options, so the toolkit gets to see none either.
    int argumentCount = 1;
    Reopening reopening;
    QApplication application;
    qt::QtMainQueue mainQueue;
};

class MacosPlatform final : public RunningPlatform {
  public:
    // Main thread, as every method here.
    explicit MacosPlatform(const StartOptions& options);

    [[nodiscard]] const Platform& ports() const override { return ports_; }
    /// The system starts a program once and activates the process that runs.
    Instance serve(Requests requests) override;
    void showScenes(app::Scenes& scenes) override { scenes_ = &scenes; }
    void showMenu(app::MenuBarCommands& menu) override;
    int run() override;

  private:
    std::unique_ptr<QWidget> makeWindow(const std::string& sceneId);

    Toolkit toolkit_;
    app::Scenes* scenes_ = nullptr;
    CocoaApplication application_;
    qt::QtWindows windows_;
    UserDefaultsSettingsStore settings_;
    FoundationFileManager fileManager_;
    PrivacyPermissions permissions_;
    CocoaDisplays displays_;
    CarbonHotKeyService hotKeys_;
    LocalKeyMonitor keyMonitor_;
    CocoaWorkspace workspace_;
    EventTapKeyboardTap keyboardTap_{toolkit_.mainQueue};
    CocoaPointer pointer_;
    PanelOverlaySurfaceFactory overlaySurfaces_;
    ScreenCaptureKitCaptureService captureService_;
    CocoaPasteboard pasteboard_;
    BitmapImageEncoder imageEncoder_;
    VisionTextRecognizer textRecognizer_;
    NamedSoundPlayer soundPlayer_;
    CenterUserNotifications userNotifications_;
    AppServiceLoginItem loginItems_;
    BundleFilms films_;
    Platform ports_;
    std::unique_ptr<QMenuBar> menuBar_;
    std::unique_ptr<StatusItem> statusItem_;
};

MacosPlatform::MacosPlatform(const StartOptions& options)
    : toolkit_(options.arguments),
      application_(options.notifications),
      windows_(options.notifications, toolkit_.mainQueue,
               [this](const std::string& sceneId) { return makeWindow(sceneId); },
               {.activate = [](WId view) { activateWindow(view); },
                .setPolicy = {},
                .setLevel = [](WId view, app::WindowLevel level) { setWindowLevel(view, level); },
                .exists = {},
                .management = qt::QtWindows::Management::bySystem},
               {}),
      ports_{.mainQueue = toolkit_.mainQueue,
             .displays = displays_,
             .fileManager = fileManager_,
             .permissions = permissions_,
             .settings = settings_,
             .windows = windows_,
             .application = application_,
             .hotKeys = hotKeys_,
             .keyMonitor = keyMonitor_,
             .workspace = workspace_,
             .keyboardTap = keyboardTap_,
             .pointer = pointer_,
             .overlaySurfaces = overlaySurfaces_,
             .captureService = captureService_,
             .pasteboard = pasteboard_,
             .imageEncoder = imageEncoder_,
             .textRecognizer = textRecognizer_,
             .soundPlayer = soundPlayer_,
             .userNotifications = userNotifications_,
             .loginItems = loginItems_,
             .videoLoopers = films_,
             .bundle = mainBundle()} {}

std::unique_ptr<QWidget> MacosPlatform::makeWindow(const std::string& sceneId) {
    auto window = scenes_ == nullptr ? nullptr : scenes_->makeWindow(sceneId);
    if (window) {
        window->setAttribute(Qt::WA_TranslucentBackground);
        hideTitleBar(window->winId());
        showMaterialBehind(window->winId());
    }
    return window;
}

int MacosPlatform::run() {
    const int status = QApplication::exec();
    // They show a menu that does not live as long as this.
    statusItem_.reset();
    menuBar_.reset();
    return status;
}

Instance MacosPlatform::serve(Requests requests) {
    toolkit_.reopening.setHandler(std::move(requests.activate));
    return Instance::first;
}

void MacosPlatform::showMenu(app::MenuBarCommands& menu) {
    // Into the menu of the application, in place of the system's own item and with its own words.
    menu.settingsCommand().setMenuRole(QAction::ApplicationSpecificRole);
    menuBar_ = std::make_unique<QMenuBar>();
    menuBar_->addMenu(QStringLiteral("Lumaframe"))->addAction(&menu.settingsCommand());
    statusItem_ = std::make_unique<StatusItem>(menu.menu());
}

}  // namespace

base::Result<std::unique_ptr<RunningPlatform>> createMacosPlatform(const StartOptions& options) {
    QApplication::setApplicationName(QStringLiteral("Lumaframe"));
    QApplication::setApplicationDisplayName(QStringLiteral("Lumaframe"));
    return std::unique_ptr<RunningPlatform>(std::make_unique<MacosPlatform>(options));
}

}  // namespace platform::macos
