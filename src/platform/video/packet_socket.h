#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "platform/helper/owned_descriptor.h"

namespace platform::video {

using helper::OwnedDescriptor;

/// Two ends of a connection that keeps packets apart, none of them inherited; nothing on failure.
std::optional<std::pair<OwnedDescriptor, OwnedDescriptor>> makePacketSockets();

enum class Waiting { none, untilSomethingComes };
enum class NoPacket { nothingYet, closed };

/// False when the other side is gone or does not read.
bool sendPacket(int socket, const std::string& packet);
/// One packet, of which more than `maximumLength` + 1 bytes are not kept. Descriptors that come
/// along never enter the process.
std::variant<std::string, NoPacket> receivePacket(int socket, std::size_t maximumLength,
                                                  Waiting waiting);

}  // namespace platform::video
