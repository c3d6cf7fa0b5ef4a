#include "platform/x11/x11_platform.h"

#include <malloc.h>

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QWidget>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/menu_bar_commands.h"
#include "app/scenes.h"
#include "platform/freedesktop/application_names.h"
#include "platform/freedesktop/dbus_application.h"
#include "platform/freedesktop/json_settings_backend.h"
#include "platform/freedesktop/notification_service.h"
#include "platform/freedesktop/program_starter.h"
#include "platform/freedesktop/session_bus.h"
#include "platform/freedesktop/session_permissions.h"
#include "platform/freedesktop/theme_sound_player.h"
#include "platform/freedesktop/xdg_directories.h"
#include "platform/freedesktop/xdg_file_manager.h"
#include "platform/freedesktop/xdg_login_item_service.h"
#include "platform/png/png_encoder.h"
#include "platform/qt/application_icon.h"
#include "platform/qt/desktop_palette.h"
#include "platform/qt/event_source.h"
#include "platform/qt/font_memory.h"
#include "platform/qt/help_window.h"
#include "platform/qt/image_converter.h"
#include "platform/qt/message_watch.h"
#include "platform/qt/native_event_filter.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_text_rasterizer.h"
#include "platform/qt/qt_windows.h"
#include "platform/qt/quiet_toolkit.h"
#include "platform/qt/screen_scale.h"
#include "platform/qt/tray_icon.h"
#include "platform/resources.h"
#include "platform/tesseract/helper_text_recognizer.h"
#include "platform/video/film_resources.h"
#include "platform/x11/connection.h"
#include "platform/x11/gone_overlay_surface.h"
#include "platform/x11/system_tray_watch.h"
#include "platform/x11/uncovered_text_recognizer.h"
#include "platform/x11/window_manager_client.h"
#include "platform/x11/x11_access.h"
#include "platform/x11/x11_capture_service.h"
#include "platform/x11/x11_displays.h"
#include "platform/x11/x11_key_monitor.h"
#include "platform/x11/x11_keyboard.h"
#include "platform/x11/x11_overlay_stage.h"
#include "platform/x11/x11_overlay_surface_factory.h"
#include "platform/x11/x11_pasteboard.h"
#include "platform/x11/x11_pointer.h"
#include "platform/x11/x11_workspace.h"

namespace platform::x11 {

namespace {

/// What can fail when it is made, and what it needs.
struct Foundation {
    std::unique_ptr<Connection> connection;
    std::unique_ptr<QApplication> application;
    std::unique_ptr<qt::MessageWatch> toolkitMessages;
    std::unique_ptr<qt::QtMainQueue> mainQueue;
    std::unique_ptr<X11Keyboard> keyboard;
    std::unique_ptr<X11KeyMonitor> keyMonitor;
    std::unique_ptr<X11Pasteboard> pasteboard;
};

/// Any thread.
[[noreturn]] void endWithoutServer() {
    std::fputs("The X server has ended the connection.\n", stderr);
    std::fflush(stderr);
    // Nothing that the toolkit would tidy up can be reached any more.
    std::_Exit(1);
}

/// The overlay and the capture, which know of each other through the stage.
struct Screen {
    Screen(Connection& connection, base::MainQueue& queue)
        : displays(connection, queue,
                   [](const std::string& monitorName) {
                       return qt::scaleFactorOfMonitor(monitorName).value_or(1.0);
                   }),
          stage(connection, queue, [this] { return workspace.lastFrontProcess(); }),
          pointer(connection, displays),
          workspace(connection,
                    [this](const std::vector<std::string>& identifiers) {
                        return applicationNames.nameOf(identifiers);
                    }),
          captureService(connection, queue, stage, [this] { return displays.layout(); }) {}

    freedesktop::ApplicationNames applicationNames =
        freedesktop::ApplicationNames::fromEnvironment();
    X11Displays displays;
    X11OverlayStage stage;
    X11Pointer pointer;
    X11Workspace workspace;
    X11CaptureService captureService;
    qt::QtTextRasterizer textRasterizer;
};

class X11Platform final : public RunningPlatform {
  public:
    X11Platform(const StartOptions& options, Foundation foundation, std::unique_ptr<Screen> screen,
                std::unique_ptr<overlay::OverlaySurfaceFactory> surfaces);

    [[nodiscard]] const Platform& ports() const override { return ports_; }
    Instance serve(Requests requests) override;
    void showScenes(app::Scenes& scenes) override { scenes_ = &scenes; }
    void showMenu(app::MenuBarCommands& menu) override;
    int run() override { return QApplication::exec(); }

  private:
    std::unique_ptr<QWidget> makeWindow(const std::string& sceneId);
    Dispatch dispatch();

    Foundation foundation_;
    std::unique_ptr<Screen> screen_;
    std::unique_ptr<overlay::OverlaySurfaceFactory> surfaces_;
    Resources resources_ = Resources::locate();
    freedesktop::XdgDirectories directories_ = freedesktop::XdgDirectories::fromEnvironment();
    std::unique_ptr<freedesktop::JsonSettingsBackend> settings_;
    freedesktop::XdgFileManager fileManager_{directories_};
    X11Access access_{*foundation_.connection};
    qt::HelpWindow helpWindow_;
    freedesktop::ProgramStarter programStarter_{qt::fileDescriptorWatch()};
    freedesktop::SessionPermissions permissions_{
        {.canReadScreen = [this] { return access_.canReadScreen(); },
         .canGrabKeys = [this] { return access_.canGrabKeys(); },
         .isNested = [this] { return access_.isXwayland(); }},
        {.currentDesktops = freedesktop::currentDesktopNames(),
         .helpPage = resources_.permissionsHelp,
         .starter = programStarter_,
         .showHelpPage = [this](const std::string& path) { helpWindow_.show(path); }}};
    freedesktop::XdgLoginItemService loginItems_{
        directories_,
        {.currentDesktops = freedesktop::currentDesktopNames(), .runningProgram = runningProgram}};
    freedesktop::NotificationService notifications_{*foundation_.mainQueue};
    freedesktop::ThemeSoundPlayer soundPlayer_{directories_, resources_.sounds,
                                               resources_.soundHelper};
    png::PngEncoder imageEncoder_;
    tesseract::HelperTextRecognizer textRecognizer_{resources_.textHelper, *foundation_.mainQueue,
                                                    qt::fileDescriptorWatch()};
    UncoveredTextRecognizer uncoveredTextRecognizer_{textRecognizer_,
                                                     foundation_.connection->lateRequests()};
    video::FilmResources films_{resources_.videos, resources_.videoHelper, *foundation_.mainQueue,
                                qt::fileDescriptorWatch()};
    WindowManagerClient windowManager_{*foundation_.connection};
    app::Scenes* scenes_ = nullptr;
    qt::DesktopPalette palette_{freedesktop::sessionBus};
    qt::QtWindows windows_;
    Platform ports_;
    std::unique_ptr<freedesktop::DBusApplication> bus_;
    std::unique_ptr<qt::TrayIcon> trayIcon_;
    std::unique_ptr<SystemTrayWatch> systemTrayWatch_;
    qt::NativeEventFilter toolkitEvents_;
    /// Last, so that no event comes when anything else is gone.
    qt::EventSource events_;
};

X11Platform::X11Platform(const StartOptions& options, Foundation foundation,
                         std::unique_ptr<Screen> screen,
                         std::unique_ptr<overlay::OverlaySurfaceFactory> surfaces)
    : foundation_(std::move(foundation)),
      screen_(std::move(screen)),
      surfaces_(std::move(surfaces)),
      settings_(freedesktop::JsonSettingsBackend::create(
          directories_, options.log, *foundation_.mainQueue, qt::fileDescriptorWatch())),
      windows_(
          options.notifications, *foundation_.mainQueue,
          [this](const std::string& sceneId) { return makeWindow(sceneId); },
          {.activate = [this](WId id) { windowManager_.activate(static_cast<xcb_window_t>(id)); },
           .setPolicy =
               [this](WId id, app::ActivationPolicy policy) {
                   windowManager_.setActivationPolicy(static_cast<xcb_window_t>(id), policy);
               },
           .setLevel =
               [this](WId id, app::WindowLevel level) {
                   windowManager_.setLevel(static_cast<xcb_window_t>(id), level);
               },
           .exists =
               [this](WId id) { return windowManager_.exists(static_cast<xcb_window_t>(id)); }},
          [this](std::function<void()> done) {
              foundation_.pasteboard->storeForExit(std::move(done));
          }),
      ports_{.mainQueue = *foundation_.mainQueue,
             .displays = screen_->displays,
             .fileManager = fileManager_,
             .permissions = permissions_,
             .settings = *settings_,
             .windows = windows_,
             .application = windows_,
             .hotKeys = foundation_.keyboard->hotKeys(),
             .keyMonitor = *foundation_.keyMonitor,
             .workspace = screen_->workspace,
             .keyboardTap = foundation_.keyboard->tap(),
             .pointer = screen_->pointer,
             .overlaySurfaces = *surfaces_,
             .captureService = screen_->captureService,
             .pasteboard = *foundation_.pasteboard,
             .imageEncoder = imageEncoder_,
             .textRecognizer = uncoveredTextRecognizer_,
             .soundPlayer = soundPlayer_,
             .userNotifications = notifications_,
             .loginItems = loginItems_,
             .videoLoopers = films_,
             .bundle = {.identifier = applicationIdentifier,
                        .location = resources_.bundle,
                        .icon = resources_.icon}},
      toolkitEvents_([this](const void* event) {
          const auto verdict =
              foundation_.keyMonitor->handle(*static_cast<const xcb_generic_event_t*>(event));
          return verdict == Connection::EventVerdict::consumed
                     ? qt::NativeEventFilter::Verdict::consumed
                     : qt::NativeEventFilter::Verdict::pass;
      }),
      events_(foundation_.connection->fileDescriptor(), [this] { return dispatch(); }) {}

std::unique_ptr<QWidget> X11Platform::makeWindow(const std::string& sceneId) {
    auto window = scenes_ == nullptr ? nullptr : scenes_->makeWindow(sceneId);
    if (window) {
        palette_.follow(*window);
        // A closed window leaves its fonts, and holes between what stays; here they go back.
        QObject::connect(window.get(), &QObject::destroyed, qApp,
                         [queue = foundation_.mainQueue.get()] {
                             queue->post([] {
                                 qt::giveFontsBack();
                                 malloc_trim(0);
                             });
                         });
    }
    return window;
}

Dispatch X11Platform::dispatch() {
    const auto dispatched = foundation_.connection->dispatchNextEvent();
    if (foundation_.connection->isLost()) {
        endWithoutServer();
    }
    return dispatched;
}

Instance X11Platform::serve(Requests requests) {
    bus_ = std::make_unique<freedesktop::DBusApplication>(freedesktop::DBusApplication::Hooks{
        .onActivate = std::move(requests.activate), .onAction = std::move(requests.performAction)});
    return bus_->start() == freedesktop::DBusApplication::Instance::second ? Instance::second
                                                                           : Instance::first;
}

void X11Platform::showMenu(app::MenuBarCommands& menu) {
    windows_.addApplicationCommand(menu.settingsCommand());
    windows_.addApplicationCommand(menu.quitCommand());
    const QIcon icon = qt::applicationIcon(resources_.icons);
    QApplication::setWindowIcon(icon);
    trayIcon_ = std::make_unique<qt::TrayIcon>(
        menu.menu(), icon, qt::symbolicIcon(resources_.icons, icon), freedesktop::sessionBus());
    systemTrayWatch_ = std::make_unique<SystemTrayWatch>(
        *foundation_.connection, [this] { trayIcon_->noteEmbeddingTray(); });
    // The start is over; what the first shortcut would have to wait for is read now.
    foundation_.mainQueue->post([this] { screen_->applicationNames.load(); });
}

/// Keeps large blocks out of the heap for good. The C library raises this threshold by itself when
/// a large block is freed, and 50 captures of a 4K display then left 15 MiB of holes behind.
void giveLargeBlocksBack() {
    constexpr int threshold = 128 * 1024;
    mallopt(M_MMAP_THRESHOLD, threshold);
}

std::unique_ptr<QApplication> makeApplication(const StartOptions& options) {
    // There are no command-line options, so the toolkit gets to see none either.
    static int argumentCount = 1;
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication::setApplicationName(QStringLiteral("lumaframe"));
    QApplication::setApplicationDisplayName(QStringLiteral("Lumaframe"));
    QApplication::setDesktopFileName(QString::fromLatin1(applicationIdentifier));
    auto application = std::make_unique<QApplication>(argumentCount, options.arguments);
    qt::quietToolkit();
    return application;
}

/// On a server that cannot blend, or hides from an untrusted program that it can, the program still
/// shows its windows, which say what is missing.
std::unique_ptr<overlay::OverlaySurfaceFactory> makeSurfaces(Foundation& foundation,
                                                             Screen& screen) {
    auto surfaces = X11OverlaySurfaceFactory::create(
        *foundation.connection, screen.displays, screen.pointer, screen.stage,
        foundation.keyboard->mapping(), screen.textRasterizer);
    if (!surfaces) {
        std::fprintf(stderr, "%s\n", surfaces.error().sentence.c_str());
        return std::make_unique<GoneOverlaySurfaceFactory>(screen.textRasterizer);
    }
    // A window as large as the screen takes the server, and a compositor after it, some ms.
    surfaces.value()->beforeShowing(
        [keyboard = foundation.keyboard.get()] { keyboard->anticipateTap(); });
    foundation.keyboard->tap().onRefused(
        [factory = surfaces.value().get()] { factory->takeFocus(); });
    return std::move(surfaces.value());
}

}  // namespace

base::Result<std::unique_ptr<RunningPlatform>> createX11Platform(const StartOptions& options) {
    giveLargeBlocksBack();
    Foundation foundation;
    auto connection = Connection::open();
    if (!connection) {
        // Asked before the toolkit, which would abort the process instead.
        return connection.error();
    }
    foundation.connection = std::move(connection.value());
    foundation.application = makeApplication(options);
    auto* toolkitConnection =
        qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    // The toolkit may see first that the server is gone, and would wonder at every request.
    foundation.toolkitMessages = std::make_unique<qt::MessageWatch>([toolkitConnection] {
        if (xcb_connection_has_error(toolkitConnection) != 0) {
            endWithoutServer();
        }
    });
    foundation.mainQueue = std::make_unique<qt::QtMainQueue>();
    auto keyboard = X11Keyboard::create(*foundation.connection, *foundation.mainQueue);
    if (!keyboard) {
        return keyboard.error();
    }
    foundation.keyboard = std::move(keyboard.value());
    foundation.keyMonitor = std::make_unique<X11KeyMonitor>(
        toolkitConnection, foundation.keyboard->mapping(), *foundation.mainQueue);
    foundation.keyboard->beforeGrab([monitor = foundation.keyMonitor.get()] { monitor->letGo(); });
    auto pasteboard =
        X11Pasteboard::create(*foundation.connection, *foundation.mainQueue, qt::convertPng);
    if (!pasteboard) {
        return pasteboard.error();
    }
    foundation.pasteboard = std::move(pasteboard.value());
    auto screen = std::make_unique<Screen>(*foundation.connection, *foundation.mainQueue);
    auto surfaces = makeSurfaces(foundation, *screen);
    return std::unique_ptr<RunningPlatform>(std::make_unique<X11Platform>(
        options, std::move(foundation), std::move(screen), std::move(surfaces)));
}

}  // namespace platform::x11
