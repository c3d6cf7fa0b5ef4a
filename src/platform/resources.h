#pragma once

#include <string>

namespace platform {

/// Where the files that come with the program are: beside an installed one, or in the sources it
/// was built from. Absolute paths; the files may be missing.
struct Resources {
    std::string sounds;
    /// The program that plays them, in the same place as the recognition helper.
    std::string soundHelper;
    /// An icon theme directory (it holds `scalable/apps` and the like).
    std::string icons;
    /// The recognition helper: a program in `libexec/lumaframe` of the prefix, or in the build
    /// directory.
    std::string textHelper;
    /// Where the films are.
    std::string videos;
    /// The program that decodes them, in the same place as the recognition helper.
    std::string videoHelper;

    /// The help for a session that keeps something from the program: an HTML file.
    std::string permissionsHelp;

    /// What stands for the program when it is dragged somewhere: the desktop entry of an installed
    /// one, else its binary.
    std::string bundle;
    /// The largest picture of the application icon.
    std::string icon;

    static Resources locate();
};

/// The absolute path of the binary that runs. When an upgrade has replaced its file meanwhile, the
/// path of the new one; empty when the system does not say.
std::string runningProgram();

}  // namespace platform
