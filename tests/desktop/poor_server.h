#pragma once

#include <sys/types.h>

#include "desktop/x_client.h"

namespace desktop {

class XServer;

/// For as long as it lives an X server has no memory for another picture of its screen.
class PoorServer {
  public:
    explicit PoorServer(XServer& server);
    ~PoorServer();
    PoorServer(const PoorServer&) = delete;
    PoorServer& operator=(const PoorServer&) = delete;

  private:
    pid_t process_;
    /// Holds what the server had to spare.
    XClient client_;
};

}  // namespace desktop
