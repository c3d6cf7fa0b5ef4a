#pragma once

#include <filesystem>

namespace journeys {

/// Where a program goes that wants to play a sound. Counts those who come and sends them away.
class SoundServer {
  public:
    /// Throws std::runtime_error when the socket cannot be made.
    explicit SoundServer(const std::filesystem::path& socket);
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    /// How many have come so far.
    int visits();

  private:
    int socket_;
    int visits_ = 0;
};

}  // namespace journeys
