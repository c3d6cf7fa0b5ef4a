#include "platform/freedesktop/file_errors.h"

#include <cerrno>
#include <system_error>

namespace platform::freedesktop {

namespace {

base::ErrorKind kindOf(int errorNumber) {
    switch (errorNumber) {
        case ENOENT:
        case ENOTDIR:
            return base::ErrorKind::notFound;
        case EACCES:
        case EPERM:
        case EROFS:
            return base::ErrorKind::notPermitted;
        case EISDIR:
        case ENAMETOOLONG:
        case EINVAL:
            return base::ErrorKind::invalid;
        case ENXIO:
        case EAGAIN:
            return base::ErrorKind::unavailable;
        default:
            return base::ErrorKind::failed;
    }
}

std::string reasonOf(int errorNumber) {
    return std::generic_category().message(errorNumber);
}

std::string writeSentence(const std::string& path, int errorNumber) {
    const std::string file = "The file " + quotedName(path);
    const std::string folder = quotedName(parentOf(path));
    switch (errorNumber) {
        case ENOENT:
            return "The folder " + folder + " doesn’t exist.";
        case ENOTDIR:
            return folder + " is not a folder.";
        case EACCES:
        case EPERM:
            return "You don’t have permission to save the file " + quotedName(path) +
                   " in the folder " + folder + ".";
        case EROFS:
            return file + " couldn’t be saved because the folder " + folder + " is read-only.";
        case ENOSPC:
        case EDQUOT:
            return file + " couldn’t be saved because there is no space left.";
        case EISDIR:
            return file + " couldn’t be saved because a folder has that name.";
        case ENXIO:
        case EAGAIN:
        case EPIPE:
            return file + " couldn’t be saved because it is a pipe that nobody reads.";
        case ENAMETOOLONG:
            return file + " couldn’t be saved because its name is too long.";
        default:
            return file + " couldn’t be saved: " + reasonOf(errorNumber) + ".";
    }
}

}  // namespace

std::string quotedName(const std::string& path) {
    std::string trimmed = path;
    while (trimmed.size() > 1 && trimmed.back() == '/') {
        trimmed.pop_back();
    }
    const auto slash = trimmed.rfind('/');
    const bool hasName = slash != std::string::npos && slash + 1 < trimmed.size();
    return "“" + (hasName ? trimmed.substr(slash + 1) : trimmed) + "”";
}

std::string parentOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool isWholePath(const std::string& path) {
    return path.find('\0') == std::string::npos;
}

base::Error readError(const std::string& path, int errorNumber) {
    return {kindOf(errorNumber),
            "The file " + quotedName(path) + " couldn’t be read: " + reasonOf(errorNumber) + "."};
}

base::Error writeError(const std::string& path, int errorNumber) {
    return {kindOf(errorNumber), writeSentence(path, errorNumber)};
}

base::Error removeError(const std::string& path, int errorNumber) {
    return {kindOf(errorNumber), "The file " + quotedName(path) +
                                     " couldn’t be removed: " + reasonOf(errorNumber) + "."};
}

}  // namespace platform::freedesktop
