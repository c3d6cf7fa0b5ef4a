#include "desktop/poor_server.h"

#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace desktop {

PoorServer::PoorServer(pid_t server) : server_(server) {
    std::ifstream statistics("/proc/" + std::to_string(server) + "/statm");
    rlim_t pages = 0;
    statistics >> pages;
    const rlim_t little = pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + (256U << 10U);
    const rlimit limit{little, RLIM_INFINITY};
    ::prlimit(server_, RLIMIT_AS, &limit, nullptr);
}

PoorServer::~PoorServer() {
    const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
    ::prlimit(server_, RLIMIT_AS, &unlimited, nullptr);
}

}  // namespace desktop
