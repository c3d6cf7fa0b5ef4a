// Any answers to what is asked about the windows of the screen: the lists of the window manager,
// types, states, frames, process numbers, classes.

#include <unistd.h>

#include <set>
#include <utility>

#include "made_up_server.h"
#include "platform/platform.h"
#include "platform/x11/window_list.h"
#include "utf8_rules.h"

namespace {

using platform::x11::Connection;
using platform::x11::ListedWindow;

void checkText(const std::string& text) {
    fuzz::require(!text.empty() && text.size() <= 256, "a name has 1 to 256 bytes");
    fuzz::require(fuzz::isUtf8(text) && !fuzz::hasControl(text), "a name is printable UTF-8");
}

void checkWindow(const ListedWindow& window) {
    fuzz::require(window.topLevel >= 1 && window.topLevel <= fuzz::mostWindows,
                  "a window is on the screen");
    for (const auto& part : {window.frame.visible, window.frame.topLevel()}) {
        fuzz::require(part.width >= 0 && part.height >= 0, "no window is smaller than nothing");
    }
    const auto& owner = window.owner;
    fuzz::require(!owner.processID || *owner.processID > 0, "a process has a number");
    for (const std::string& identifier : owner.identifiers) {
        checkText(identifier);
    }
    fuzz::require(
        owner.processID == ::getpid() || owner.applicationID != platform::applicationIdentifier,
        "no other program's window passes for ours");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto connection = std::move(Connection::open("").value());
    fuzz::answerFrom(fuzz::Input(data, size));
    std::set<xcb_window_t> seen;
    for (const ListedWindow& window : platform::x11::listWindows(*connection)) {
        fuzz::require(seen.insert(window.id).second, "a window is listed once");
        checkWindow(window);
    }
    return 0;
}
