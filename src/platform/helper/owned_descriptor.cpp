#include "platform/helper/owned_descriptor.h"

#include <unistd.h>

namespace platform::helper {

void OwnedDescriptor::close() {
    if (number_ >= 0) {
        ::close(number_);
    }
}

}  // namespace platform::helper
