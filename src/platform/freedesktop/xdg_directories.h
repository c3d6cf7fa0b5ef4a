#pragma once

#include <string>
#include <vector>

namespace platform::freedesktop {

/// The user's base directories, each an absolute path or empty when the environment gives none.
///
/// Source of the rules: XDG Base Directory Specification 0.8. A relative path in a variable is
/// ignored, as it asks for.
struct XdgDirectories {
    /// Empty unless $HOME is the absolute path of a directory.
    std::string home;
    std::string configHome;
    std::string dataHome;
    /// Best first, without `dataHome`.
    std::vector<std::string> dataDirectories;
    /// Best first, without `configHome`.
    std::vector<std::string> configDirectories = {};

    static XdgDirectories fromEnvironment();
};

/// The parts of a colon-separated list that are absolute paths.
std::vector<std::string> absolutePathsOf(const std::string& list);

/// The user's Downloads directory: XDG_DOWNLOAD_DIR of `user-dirs.dirs`, else Downloads in the home
/// directory, empty without a home directory. It may not exist.
std::string downloadsDirectory(const XdgDirectories& directories);

/// The value of XDG_DOWNLOAD_DIR in the text of a `user-dirs.dirs`, with $HOME expanded; empty when
/// it is missing or is no absolute path.
std::string parseDownloadsDirectory(const std::string& userDirsText, const std::string& home);

}  // namespace platform::freedesktop
