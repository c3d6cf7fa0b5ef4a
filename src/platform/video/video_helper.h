#pragma once

namespace platform::video {

/// The video helper from its start to its end: gives up its rights, opens the film, and answers
/// requests over the socket that it was started with until that closes. Returns the exit status;
/// the caller leaves without tidying up.
int runVideoHelper();

}  // namespace platform::video
