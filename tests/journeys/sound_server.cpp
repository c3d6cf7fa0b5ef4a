#include "journeys/sound_server.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

namespace journeys {

SoundServer::SoundServer(const std::filesystem::path& socket)
    : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socket.c_str(), sizeof address.sun_path - 1);
    if (::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket_, 8) != 0) {
        throw std::runtime_error("No place for a sound server at " + socket.string() + ".");
    }
}

SoundServer::~SoundServer() {
    ::close(socket_);
}

int SoundServer::visits() {
    for (;;) {
        const int visitor = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
        if (visitor < 0) {
            return visits_;
        }
        ++visits_;
        ::close(visitor);
    }
}

}  // namespace journeys
