#pragma once

#include <sys/types.h>

#include "desktop/x_client.h"

namespace demo {

/// Tells when nothing happens on a virtual desktop: a picture taken then is the same on a fast
/// machine and on a busy one.
class Stillness {
  public:
    explicit Stillness(const desktop::XClient& client) : client_(client) {}

    /// Returns when every program that this one has started, directly or not, has been asleep for
    /// 25 ms without having run in between, the X server's own work for others done. Throws
    /// std::runtime_error after the usual limit.
    void wait() const;

  private:
    const desktop::XClient& client_;
};

}  // namespace demo
