#include "desktop/desktop.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace desktop {
namespace {

namespace fs = std::filesystem;

fs::path makePrivateDirectory() {
    std::string name = (fs::temp_directory_path() / "lumaframe-desktop-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("No directory for a virtual desktop could be made.");
    }
    return name;
}

/// Where a program keeps what is its own.
Environment homeVariables(const fs::path& home, const fs::path& runtime) {
    return {
        {"HOME", home},
        {"XDG_RUNTIME_DIR", runtime},
        {"XDG_CONFIG_HOME", home / ".config"},
        {"XDG_CACHE_HOME", home / ".cache"},
        {"XDG_DATA_HOME", home / ".local/share"},
        {"XDG_STATE_HOME", home / ".local/state"},
    };
}

void makePrivate(const fs::path& directory) {
    fs::create_directories(directory);
    fs::permissions(directory, fs::perms::owner_all);
}

/// No service directories but the test's own: a service that a test did not ask for must not be
/// started by the bus.
constexpr const char* busConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:path=%</listen>
  &
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
    <allow user="*"/>
  </policy>
</busconfig>
)";

/// Splits at tab stops, which the recorder replaces inside the fields.
std::vector<std::string> fields(const std::string& line) {
    std::vector<std::string> parts;
    // A last field that is empty is one, too.
    std::istringstream stream(line + '\t');
    for (std::string part; std::getline(stream, part, '\t');) {
        parts.push_back(part);
    }
    return parts;
}

}  // namespace

Desktop::Desktop(const DesktopOptions& options)
    : directory_(makePrivateDirectory()),
      additions_(options.environment),
      serverKind_(options.server) {
    makePrivate(home() / "Downloads");
    for (const char* name : {".config", ".cache", ".local/share", ".local/state"}) {
        makePrivate(home() / name);
        makePrivate(othersHome() / name);
    }
    if (!options.homeTemplate.empty()) {
        for (const fs::path& target : {home(), othersHome()}) {
            fs::copy(options.homeTemplate, target, fs::copy_options::recursive);
        }
    }
    makePrivate(directory_ / "runtime");
    makePrivate(othersHome() / "runtime");
    server_ = std::make_unique<XServer>(directory_, options.outputs, options.depth, options.server);
    client_ = std::make_unique<XClient>(displayName());
    input_ = std::make_unique<InputDriver>(displayName());
    startBus(options.busServices);
    startWindowManager(options.windowManager, options.compositor);
    startCompositor(options.compositor);
    startNotifications(options.notifications);
    if (options.tray == Tray::host) {
        tray_ = startBusService("tray-host");
    }
    if (options.accessibility == Accessibility::on) {
        startAccessibility();
    }
}

Desktop::~Desktop() {
    for (auto* process :
         {&accessibility_, &tray_, &notificationDaemon_, &compositor_, &windowManager_}) {
        process->reset();
    }
    dbusDaemon_.reset();
    input_.reset();
    client_.reset();
    server_.reset();
    if (std::getenv("LUMAFRAME_KEEP_DESKTOPS") == nullptr) {
        std::error_code ignored;
        fs::remove_all(directory_, ignored);
    }
}

Environment Desktop::environment() const {
    Environment variables = homeVariables(home(), directory_ / "runtime");
    variables.merge(Environment{
        {"DISPLAY", displayName()},
        {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (directory_ / "runtime/bus").string()},
        {"XDG_SESSION_TYPE", "x11"},
        {"PATH", "/usr/local/bin:/usr/bin:/bin:/usr/local/sbin:/usr/sbin:/sbin"},
        {"LANG", "C.UTF-8"},
    });
    if (serverKind_ == ServerKind::xwayland) {
        variables["XDG_SESSION_TYPE"] = "wayland";
        variables["WAYLAND_DISPLAY"] = XServer::waylandDisplay;
    }
    for (const char* name :
         {"ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS", "TZ"}) {
        if (const char* value = std::getenv(name)) {
            variables[name] = value;
        }
    }
    for (const auto& [name, value] : additions_) {
        variables[name] = value;
    }
    return variables;
}

std::unique_ptr<Process> Desktop::start(const std::string& name, std::vector<std::string> command,
                                        const Environment& additions,
                                        std::function<void()> beforeExec) {
    Environment variables = environment();
    for (const auto& [variable, value] : additions) {
        variables[variable] = value;
    }
    return std::make_unique<Process>(ProcessOptions{.command = std::move(command),
                                                    .environment = std::move(variables),
                                                    .outputFile = directory_ / name,
                                                    .beforeExec = std::move(beforeExec)});
}

std::unique_ptr<Process> Desktop::startOther(const std::string& name,
                                             std::vector<std::string> command,
                                             const Environment& additions) {
    Environment variables = additions;
    variables.merge(homeVariables(othersHome(), othersHome() / "runtime"));
    return start(name, std::move(command), variables);
}

std::string Desktop::makeUntrustedAuthority() {
    const auto file = directory_ / "untrusted";
    runToEnd({.command = {"xauth", "-f", file, "generate", displayName(), ".", "untrusted",
                          "timeout", "0"},
              .environment = environment(),
              .outputFile = directory_ / "xauth"});
    return file;
}

void Desktop::startBus(const std::filesystem::path& services) {
    const auto configuration = directory_ / "bus.conf";
    std::string text = busConfiguration;
    text.replace(text.find('%'), 1, directory_ / "runtime/bus");
    text.replace(text.find('&'), 1,
                 services.empty() ? "" : "<servicedir>" + services.string() + "</servicedir>");
    std::ofstream(configuration) << text;
    dbusDaemon_ =
        start("dbus-daemon", {"dbus-daemon", "--nofork", "--nopidfile",
                              "--config-file=" + configuration.string(), "--print-address"});
    dbusDaemon_->waitForLine("unix:");
}

void Desktop::startWindowManager(WindowManager manager, Compositor compositor) {
    if (manager == WindowManager::none) {
        return;
    }
    const Start how = windowManagerStart(manager, compositor, othersHome() / ".config");
    windowManager_ = startOther("window-manager", how.command, how.environment);
    awaitWindowManager(*client_);
    if (compositor == Compositor::builtIn) {
        awaitCompositor();
    }
}

void Desktop::startCompositor(Compositor compositor) {
    const Start how = compositorStart(compositor);
    if (!how.command.empty()) {
        compositor_ = startOther("picom", how.command, how.environment);
        awaitCompositor();
        waitForBlending();
    }
}

void Desktop::awaitCompositor() {
    require("The start of the compositor",
            [this] { return client_->selectionOwner("_NET_WM_CM_S0") != XCB_WINDOW_NONE; });
}

void Desktop::waitForBlending() {
    // It owns its selection before it takes the screen over, which is black in between. Only a
    // frame of its own shows a window half transparent. The window is of a colour that no desktop
    // has there: red and blue, without green.
    constexpr std::uint32_t halfOpaque = 0x80000000;
    const std::uint32_t color =
        client_->screen().root_depth == deepScreen ? 0x3ff003ffU : 0x00ff00ffU;
    const auto corner = [this] { return readScreen(*client_, 0, 0, 1, 1).pixels[0]; };
    std::uint32_t blended = 0;
    xcb_connection_t* connection = client_->get();
    const xcb_window_t probe = xcb_generate_id(connection);
    const std::uint32_t values[] = {color, 1};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, probe, client_->root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, probe,
                        client_->atom("_NET_WM_WINDOW_OPACITY"), XCB_ATOM_CARDINAL, 32, 1,
                        &halfOpaque);
    xcb_map_window(connection, probe);
    require("The first frame of the compositor", [&] {
        blended = corner();
        const std::uint32_t red = blended >> 16U & 0xffU;
        const std::uint32_t green = blended >> 8U & 0xffU;
        // Without a compositor there is all of the red and no green, over nothing half of the red.
        return red >= green + 0x60 && red - green < 0xf0;
    });
    xcb_destroy_window(connection, probe);
    // What it is then is the compositor's affair, which may have a background of its own and may
    // let the window fade: a colour that stays.
    constexpr int manyTimes = 10;
    std::uint32_t last = blended;
    int repeated = 0;
    require("The end of the compositor's first window", [&] {
        const std::uint32_t now = corner();
        repeated = now == last && now != blended ? repeated + 1 : 0;
        last = now;
        return repeated == manyTimes;
    });
}

void Desktop::stopCompositor() {
    compositor_.reset();
    require("The end of the compositor",
            [this] { return client_->selectionOwner("_NET_WM_CM_S0") == XCB_WINDOW_NONE; });
}

void Desktop::startNotifications(NotificationDaemon daemon) {
    switch (daemon) {
        case NotificationDaemon::none:
            return;
        case NotificationDaemon::recorder:
            notificationDaemon_ = startBusService("notification-recorder");
            return;
        case NotificationDaemon::dunst:
            notificationDaemon_ = startOther("dunst", {"dunst", "-conf", "/dev/null"});
            bus({"wait-for-name", "org.freedesktop.Notifications"});
            return;
    }
}

std::unique_ptr<Process> Desktop::startGtkWindow(int version, const std::string& title) {
    auto window =
        startOther("gtk-window", {LUMAFRAME_TEST_GTK_WINDOW, std::to_string(version), title},
                   {{"GDK_BACKEND", "x11"},
                    {"GSK_RENDERER", "cairo"},
                    {"GSETTINGS_BACKEND", "memory"},
                    {"GTK_A11Y", "none"},
                    {"NO_AT_BRIDGE", "1"}});
    window->waitForLine("ready");
    return window;
}

std::unique_ptr<Process> Desktop::startClipboardManager(ClipboardManager manner) {
    auto manager =
        startOther("clipboard-manager", {LUMAFRAME_TEST_CLIPBOARD_MANAGER,
                                         manner == ClipboardManager::keeping ? "keep" : "silent"});
    manager->waitForLine("ready");
    return manager;
}

std::unique_ptr<Process> Desktop::startSettingsPortal(const std::string& colorScheme) {
    auto portal = startOther("settings-portal-" + std::to_string(++busCalls_),
                             {LUMAFRAME_TEST_BUS_PROGRAM, "settings-portal", colorScheme});
    portal->waitForLine("ready");
    return portal;
}

std::unique_ptr<Process> Desktop::startBusService(const std::string& role) {
    auto service = startOther(role, {LUMAFRAME_TEST_BUS_PROGRAM, role});
    service->waitForLine("ready");
    return service;
}

std::vector<Notification> Desktop::notifications() const {
    std::vector<Notification> received;
    for (const auto& line : notificationDaemon_->outputLines()) {
        const auto parts = fields(line);
        if (parts.size() >= 4 && parts[0] == "notification") {
            received.push_back({parts[1], parts[2], parts[3]});
        }
    }
    return received;
}

std::vector<std::string> Desktop::trayItems() const {
    std::vector<std::string> items;
    for (const auto& line : tray_->outputLines()) {
        if (line.starts_with("item ")) {
            items.push_back(line.substr(5));
        }
    }
    return items;
}

void Desktop::startAccessibility() {
    // The settings of the tool are in memory: nothing of another session may decide.
    accessibility_ =
        startOther("accessibility", {"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"},
                   {{"GSETTINGS_BACKEND", "memory"}});
    bus({"wait-for-name", "org.a11y.Bus"});
    bus({"enable-accessibility"});
}

std::vector<Accessible> Desktop::accessibles() {
    return parseAccessibles(bus({"accessibles"}));
}

std::string Desktop::bus(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{LUMAFRAME_TEST_BUS_PROGRAM};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runToEnd({.command = std::move(command),
                     .environment = environment(),
                     .outputFile = directory_ / ("bus-call-" + std::to_string(++busCalls_))});
}

}  // namespace desktop
