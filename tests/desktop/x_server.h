#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "desktop/process.h"

namespace desktop {

/// One display of a virtual screen: its place and size in native pixels.
struct Output {
    int x = 0;
    int y = 0;
    int width = 1280;
    int height = 800;
    /// Its name is DUMMY<number>; by default its place in the list of outputs.
    std::optional<int> number{};
};

/// The name of the output at `index` of its list.
std::string outputName(const Output& output, std::size_t index);

/// Xwayland runs in a Wayland compositor without a screen (weston), which manages its windows. A
/// touch screen and a pen (touch_and_pen.h) need an Xorg, and so root.
enum class ServerKind { x11, x11WithTouchAndPen, xwayland };

/// A private X server on a display number of its own choosing: any number of tests may run side by
/// side.
///
/// One output at (0, 0) is an Xvfb; several are an Xorg with the dummy driver (needs root), its
/// outputs named by their numbers, the first one primary. Of an Xwayland only the first one's size
/// counts.
class XServer {
  public:
    /// `directory` takes configuration and logs. Returns when the server answers; throws
    /// std::runtime_error otherwise.
    /// `depth` is that of the screen.
    XServer(const std::filesystem::path& directory, const std::vector<Output>& outputs,
            int depth = 24, ServerKind kind = ServerKind::x11);
    /// Whether this machine has what an Xwayland needs.
    static bool hasXwayland();
    /// The socket of the compositor around an Xwayland, as WAYLAND_DISPLAY has it.
    static constexpr const char* waylandDisplay = "wayland-lumaframe";

    /// Ends it under its programs.
    void stop() { process_.reset(); }
    /// ":<number>", as DISPLAY has it.
    [[nodiscard]] const std::string& displayName() const { return displayName_; }
    [[nodiscard]] pid_t processId() const { return process_->pid(); }
    /// Changes the outputs of a dummy server while it runs: one argument list of xrandr.
    void configure(const std::vector<std::string>& xrandrArguments);
    /// Gives a dummy server these outputs and no others, all at once; none of them ends further
    /// than 7680 to the right and 4320 down. `primary` is a place in the list.
    void arrange(const std::vector<Output>& outputs, std::optional<std::size_t> primary = 0);

  private:
    void startVirtual(const Output& output, int depth);
    void startDummy(const std::vector<Output>& outputs, int depth, ServerKind kind);
    void offerMode(const Output& output, const std::string& name);
    void startXwayland(const Output& output);
    void startAndRead(std::vector<std::string> command);

    std::filesystem::path directory_;
    std::unique_ptr<Process> process_;
    std::string displayName_;
    /// "DUMMY1 800x600": what the server knows that an output can show.
    std::set<std::string> offeredModes_;
    std::set<std::string> modes_;
    std::set<std::string> outputsInUse_;
};

}  // namespace desktop
