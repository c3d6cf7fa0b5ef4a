#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "desktop/accessible.h"
#include "desktop/clipboard.h"
#include "desktop/input_driver.h"
#include "desktop/picture.h"
#include "desktop/process.h"
#include "desktop/test_window.h"
#include "desktop/wait.h"
#include "desktop/window_manager.h"
#include "desktop/x_client.h"
#include "desktop/x_server.h"

namespace desktop {

/// A notification daemon of the test's own that records what it is told, or dunst.
enum class NotificationDaemon { none, recorder, dunst };
/// A StatusNotifierWatcher and host of the test's own.
enum class Tray { none, host };
/// With it programs show themselves to assistive programs over AT-SPI.
enum class Accessibility { off, on };

struct DesktopOptions {
    /// With xwayland it is a Wayland session, whose compositor is the window manager: it takes
    /// WindowManager::none.
    ServerKind server = ServerKind::x11;
    std::vector<Output> outputs{{}};
    /// Bits of a pixel of the screen: 24 or 30.
    int depth = 24;
    WindowManager windowManager = WindowManager::openbox;
    Compositor compositor = Compositor::none;
    NotificationDaemon notifications = NotificationDaemon::none;
    Tray tray = Tray::none;
    Accessibility accessibility = Accessibility::off;
    /// A directory of service files, whose programs the bus starts when they are called.
    std::filesystem::path busServices{};
    /// Added to the environment of every program started here.
    Environment environment{};
    /// What it holds is copied into both homes before any program starts.
    std::filesystem::path homeTemplate{};
};

/// A notification as the recorder received it.
struct Notification {
    std::string application;
    std::string title;
    std::string body;
};

/// A whole private desktop: X server, D-Bus, home directory, services. Any number side by side.
///
/// Everything it starts ends with it, by process id, also when the test fails or is killed. Its
/// directory (home, logs) goes too, unless the environment variable LUMAFRAME_KEEP_DESKTOPS is set.
/// Throws std::runtime_error when a part of it does not become ready.
class Desktop {
  public:
    explicit Desktop(const DesktopOptions& options = {});
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    [[nodiscard]] const std::string& displayName() const { return server_->displayName(); }
    [[nodiscard]] XServer& server() { return *server_; }
    [[nodiscard]] XClient& client() { return *client_; }
    [[nodiscard]] InputDriver& input() { return *input_; }

    [[nodiscard]] const std::filesystem::path& directory() const { return directory_; }
    /// The person's home; holds an empty Downloads folder.
    [[nodiscard]] std::filesystem::path home() const { return directory_ / "home"; }
    /// The whole environment of a program that is started on this desktop.
    [[nodiscard]] Environment environment() const;
    /// Starts a program here; `name` names its output files. `beforeExec` as in ProcessOptions.
    std::unique_ptr<Process> start(const std::string& name, std::vector<std::string> command,
                                   const Environment& additions = {},
                                   std::function<void()> beforeExec = {});

    /// The same for a program of the desktop or of somebody else: what it keeps for itself goes
    /// into another home, so that all in home() is of the program under test and of the test.
    std::unique_ptr<Process> startOther(const std::string& name, std::vector<std::string> command,
                                        const Environment& additions = {});
    [[nodiscard]] std::filesystem::path othersHome() const { return directory_ / "others"; }

    /// A file for the environment variable XAUTHORITY: the X server distrusts who connects with it.
    std::string makeUntrustedAuthority();

    /// Returns when it has painted the screen.
    void startCompositor(Compositor compositor);
    /// Ends the session bus under its programs.
    void stopBus() { dbusDaemon_.reset(); }
    void stopCompositor();
    /// Requires that one was started.
    [[nodiscard]] Process& compositor() { return *compositor_; }
    /// Starts a program with a window of GTK 3 or 4 that decorates itself (gtk_window.py).
    std::unique_ptr<Process> startGtkWindow(int version, const std::string& title);
    /// Starts a clipboard manager of the test's own (clipboard_manager.cpp).
    enum class ClipboardManager { keeping, silent };
    std::unique_ptr<Process> startClipboardManager(ClipboardManager manner);

    /// Starts a settings portal of the test's own that announces `colorScheme` (see
    /// bus_program.cpp). bus({"color-scheme", ...}) lets it announce another one.
    std::unique_ptr<Process> startSettingsPortal(const std::string& colorScheme);

    /// What the recorder received so far.
    [[nodiscard]] std::vector<Notification> notifications() const;
    /// "<bus name> <object path>" of each item that registered with the tray host.
    [[nodiscard]] std::vector<std::string> trayItems() const;

    /// What an assistive program reads of every program, in reading order. Needs Accessibility::on.
    [[nodiscard]] std::vector<Accessible> accessibles();

    /// Runs the test's D-Bus program (see bus_program.cpp for its commands) and gives its output.
    std::string bus(const std::vector<std::string>& arguments);

  private:
    void startBus(const std::filesystem::path& services);
    void startWindowManager(WindowManager manager, Compositor compositor);
    void awaitCompositor();
    void waitForBlending();
    void startAccessibility();
    void startNotifications(NotificationDaemon daemon);
    std::unique_ptr<Process> startBusService(const std::string& role);

    std::filesystem::path directory_;
    Environment additions_;
    ServerKind serverKind_;
    int busCalls_ = 0;
    std::unique_ptr<XServer> server_;
    std::unique_ptr<XClient> client_;
    std::unique_ptr<InputDriver> input_;
    std::unique_ptr<Process> dbusDaemon_;
    std::unique_ptr<Process> windowManager_;
    std::unique_ptr<Process> compositor_;
    std::unique_ptr<Process> notificationDaemon_;
    std::unique_ptr<Process> tray_;
    std::unique_ptr<Process> accessibility_;
};

}  // namespace desktop
