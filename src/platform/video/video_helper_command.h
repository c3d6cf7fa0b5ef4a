#pragma once

namespace platform::video {

/// How the helper is started: without arguments, with these descriptors.
enum HelperDescriptor : int { socketDescriptor = 3, filmDescriptor, memoryDescriptor };

}  // namespace platform::video
