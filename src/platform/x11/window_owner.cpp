#include "platform/x11/window_owner.h"

#include <unistd.h>
#include <xcb/res.h>

#include <limits>
#include <map>
#include <utility>

#include "platform/platform.h"
#include "platform/x11/window_property.h"

namespace platform::x11 {

namespace {

struct OwnerRequests {
    PropertyRequest processID;
    PropertyRequest gtkApplicationID;
    PropertyRequest desktopFile;
    PropertyRequest windowClass;
};

OwnerRequests askForOwner(Connection& connection, xcb_window_t window) {
    return {askForProperty(connection, window, "_NET_WM_PID"),
            askForProperty(connection, window, "_GTK_APPLICATION_ID"),
            askForProperty(connection, window, "_KDE_NET_WM_DESKTOP_FILE"),
            askForProperty(connection, window, "WM_CLASS")};
}

std::optional<std::int32_t> asProcessID(std::optional<std::uint32_t> number) {
    if (!number || *number == 0 || *number > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(*number);
}

std::optional<std::string> nonEmpty(const std::vector<std::string>& texts, std::size_t index) {
    return texts.size() > index && !texts[index].empty() ? std::optional(texts[index])
                                                         : std::nullopt;
}

/// The part of a resource number that is the same for everything one client makes.
xcb_window_t clientPart(const Connection& connection, xcb_window_t window) {
    return window & ~xcb_get_setup(connection.get())->resource_id_mask;
}

/// The processes of the server's clients, asked for before anything else is read.
class ClientProcesses {
  public:
    ClientProcesses(Connection& connection, const std::vector<xcb_window_t>& windows)
        : connection_(connection) {
        const auto* extension = xcb_get_extension_data(connection.get(), &xcb_res_id);
        if (extension == nullptr || extension->present == 0) {
            return;
        }
        std::vector<xcb_res_client_id_spec_t> specifications;
        specifications.reserve(windows.size());
        for (const xcb_window_t window : windows) {
            specifications.push_back({window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
        }
        cookie_ = xcb_res_query_client_ids(connection.get(),
                                           static_cast<std::uint32_t>(specifications.size()),
                                           specifications.data());
    }

    std::map<xcb_window_t, std::int32_t> read() {
        std::map<xcb_window_t, std::int32_t> processes;
        if (!cookie_) {
            return processes;
        }
        const Reply<xcb_res_query_client_ids_reply_t> reply(
            xcb_res_query_client_ids_reply(connection_.get(), *cookie_, nullptr));
        if (!reply) {
            return processes;
        }
        for (auto entry = xcb_res_query_client_ids_ids_iterator(reply.get()); entry.rem > 0;
             xcb_res_client_id_value_next(&entry)) {
            if (entry.data->spec.mask != XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID ||
                xcb_res_client_id_value_value_length(entry.data) < 1) {
                continue;
            }
            if (const auto process = asProcessID(*xcb_res_client_id_value_value(entry.data))) {
                processes[clientPart(connection_, entry.data->spec.client)] = *process;
            }
        }
        return processes;
    }

  private:
    Connection& connection_;
    std::optional<xcb_res_query_client_ids_cookie_t> cookie_;
};

WindowOwner readOwner(Connection& connection, const OwnerRequests& requests,
                      std::optional<std::int32_t> knownProcess) {
    const auto claimed = asProcessID(readNumber(connection, requests.processID, XCB_ATOM_CARDINAL));
    const auto gtkID = nonEmpty(readTexts(connection, requests.gtkApplicationID), 0);
    const auto desktopFile = nonEmpty(readTexts(connection, requests.desktopFile), 0);
    WindowOwner owner;
    const auto windowClass = readTexts(connection, requests.windowClass);
    owner.className = nonEmpty(windowClass, 1);
    for (const auto& identifier : {gtkID, desktopFile, owner.className, nonEmpty(windowClass, 0)}) {
        if (identifier) {
            owner.identifiers.push_back(*identifier);
        }
    }
    owner.processID = knownProcess ? knownProcess : claimed;
    owner.applicationID = gtkID ? gtkID : desktopFile ? desktopFile : owner.className;
    if (owner.processID == static_cast<std::int32_t>(getpid())) {
        owner.applicationID = platform::applicationIdentifier;
    } else if (owner.applicationID == platform::applicationIdentifier) {
        // Another program's window must not pass for ours: ours are left out of pictures.
        owner.applicationID.reset();
    }
    return owner;
}

}  // namespace

std::vector<WindowOwner> ownersOf(Connection& connection,
                                  const std::vector<xcb_window_t>& windows) {
    std::vector<WindowOwner> owners;
    if (windows.empty()) {
        return owners;
    }
    ClientProcesses clientProcesses(connection, windows);
    std::vector<OwnerRequests> requests;
    requests.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        requests.push_back(askForOwner(connection, window));
    }
    const auto processes = clientProcesses.read();
    for (std::size_t index = 0; index < windows.size(); ++index) {
        const auto process = processes.find(clientPart(connection, windows[index]));
        owners.push_back(
            readOwner(connection, requests[index],
                      process == processes.end() ? std::nullopt : std::optional(process->second)));
    }
    return owners;
}

bool areOfOneClient(const Connection& connection, xcb_window_t first, xcb_window_t second) {
    return clientPart(connection, first) == clientPart(connection, second);
}

bool isOwnWindow(const Connection& connection, xcb_window_t window) {
    return clientPart(connection, window) == xcb_get_setup(connection.get())->resource_id_base;
}

}  // namespace platform::x11
