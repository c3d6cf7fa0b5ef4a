#include "desktop/poor_server.h"

#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "desktop/x_server.h"

namespace desktop {
namespace {

/// Whether the server had the memory for another picture of its screen.
bool takePixmap(const XClient& client) {
    const auto cookie = xcb_create_pixmap_checked(
        client.get(), client.screen().root_depth, xcb_generate_id(client.get()), client.root(),
        client.screen().width_in_pixels, client.screen().height_in_pixels);
    return !Reply<xcb_generic_error_t>(xcb_request_check(client.get(), cookie));
}

}  // namespace

PoorServer::PoorServer(XServer& server)
    : process_(server.processId()), client_(server.displayName()) {
    std::ifstream statistics("/proc/" + std::to_string(process_) + "/statm");
    rlim_t pages = 0;
    statistics >> pages;
    const rlim_t little = pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + (256U << 10U);
    const rlimit limit{little, RLIM_INFINITY};
    ::prlimit(process_, RLIMIT_AS, &limit, nullptr);
    // It may keep for itself what it does not use.
    while (takePixmap(client_)) {
    }
}

PoorServer::~PoorServer() {
    const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
    ::prlimit(process_, RLIMIT_AS, &unlimited, nullptr);
}

}  // namespace desktop
