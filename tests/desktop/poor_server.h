#pragma once

#include <sys/types.h>

namespace desktop {

/// For as long as it lives an X server gets no more memory than it has.
class PoorServer {
  public:
    explicit PoorServer(pid_t server);
    ~PoorServer();
    PoorServer(const PoorServer&) = delete;
    PoorServer& operator=(const PoorServer&) = delete;

  private:
    pid_t server_;
};

}  // namespace desktop
