#include "platform/freedesktop/xdg_login_item_service.h"

#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>

#include "base/text.h"
#include "platform/environment.h"
#include "platform/freedesktop/autostart_entry.h"
#include "platform/freedesktop/file_errors.h"
#include "platform/freedesktop/file_writing.h"
#include "platform/freedesktop/make_directories.h"
#include "platform/freedesktop/small_file.h"

namespace platform::freedesktop {

namespace {

constexpr const char* fileName = "/app.lumaframe.Lumaframe.desktop";

/// The state of the entry in an autostart directory, none when the directory has no such entry. A
/// file that cannot be read is an entry too: it hides those of the directories that follow.
std::optional<AutostartState> stateIn(const std::string& directory,
                                      const std::vector<std::string>& currentDesktops) {
    const auto text = readSmallFile(directory + fileName);
    if (text) {
        return stateOfAutostartEntry(text.value(), currentDesktops);
    }
    return text.error().kind == base::ErrorKind::notFound ? std::nullopt
                                                          : std::optional(AutostartState::broken);
}

ui::LoginItemStatus statusOf(AutostartState state) {
    switch (state) {
        case AutostartState::started:
            return ui::LoginItemStatus::enabled;
        case AutostartState::switchedOff:
            return ui::LoginItemStatus::requiresApproval;
        case AutostartState::programMissing:
            return ui::LoginItemStatus::notFound;
        case AutostartState::broken:
            break;
    }
    return ui::LoginItemStatus::notRegistered;
}

const base::Error noHome{base::ErrorKind::notFound,
                         "There is no home directory to keep a login item in."};

}  // namespace

XdgLoginItemService::XdgLoginItemService(XdgDirectories directories, Surroundings surroundings)
    : directories_(std::move(directories)),
      surroundings_(std::move(surroundings)),
      userDirectory_(directories_.configHome.empty() ? std::string()
                                                     : directories_.configHome + "/autostart") {}

ui::LoginItemStatus XdgLoginItemService::status() const {
    if (!userDirectory_.empty()) {
        if (const auto state = stateIn(userDirectory_, surroundings_.currentDesktops)) {
            return statusOf(*state);
        }
    }
    return isStartedBySystem() ? ui::LoginItemStatus::enabled : ui::LoginItemStatus::notRegistered;
}

base::Status XdgLoginItemService::registerItem() {
    const std::string program = surroundings_.runningProgram();
    if (program.empty() || program != base::validUtf8(program)) {
        // A desktop entry is UTF-8, and a session reads nothing else.
        return base::Error{base::ErrorKind::invalid,
                           "The program is in a folder whose name isn’t text."};
    }
    return writeEntry(autostartEntryFor(program));
}

base::Status XdgLoginItemService::unregisterItem() {
    if (isStartedBySystem()) {
        return writeEntry(hidingAutostartEntry());
    }
    const std::string path = userDirectory_ + fileName;
    if (userDirectory_.empty() || ::unlink(path.c_str()) == 0 || errno == ENOENT ||
        errno == ENOTDIR) {
        return base::Nothing{};
    }
    return removeError(path, errno);
}

base::Status XdgLoginItemService::writeEntry(const std::string& text) const {
    if (userDirectory_.empty()) {
        return noHome;
    }
    if (auto made = makeDirectories(userDirectory_); !made) {
        return made;
    }
    return replaceFile(userDirectory_ + fileName, text, FileAccess::asUserPrefers);
}

bool XdgLoginItemService::isStartedBySystem() const {
    for (const std::string& directory : directories_.configDirectories) {
        if (const auto state = stateIn(directory + "/autostart", surroundings_.currentDesktops)) {
            return *state == AutostartState::started;
        }
    }
    return false;
}

std::vector<std::string> currentDesktopNames() {
    const std::string list = environmentValue("XDG_CURRENT_DESKTOP");
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin <= list.size();) {
        const auto end = std::min(list.find(':', begin), list.size());
        if (end > begin) {
            names.push_back(list.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return names;
}

}  // namespace platform::freedesktop
