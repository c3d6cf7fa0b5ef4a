#pragma once

#include <filesystem>
#include <memory>
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
};

/// A private X server on a display number of its own choosing: any number of tests may run side by
/// side.
///
/// One output at (0, 0) is an Xvfb; several are an Xorg with the dummy driver (needs root), its
/// outputs named DUMMY0, DUMMY1, ... in the given order, the first one primary.
class XServer {
  public:
    /// `directory` takes configuration and logs. Returns when the server answers; throws
    /// std::runtime_error otherwise.
    XServer(const std::filesystem::path& directory, const std::vector<Output>& outputs);

    /// ":<number>", as DISPLAY has it.
    [[nodiscard]] const std::string& displayName() const { return displayName_; }
    /// Changes the outputs of a dummy server while it runs: one argument list of xrandr.
    void configure(const std::vector<std::string>& xrandrArguments);

  private:
    void startVirtual(const Output& output);
    void startDummy(const std::vector<Output>& outputs);
    void startAndRead(std::vector<std::string> command);

    std::filesystem::path directory_;
    std::unique_ptr<Process> process_;
    std::string displayName_;
};

}  // namespace desktop
