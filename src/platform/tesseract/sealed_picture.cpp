#include "platform/tesseract/sealed_picture.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

namespace platform::tesseract {

namespace {

/// Without these the sender could change or cut the picture while it is being read.
constexpr int requiredSeals = F_SEAL_WRITE | F_SEAL_SHRINK | F_SEAL_GROW;

/// MFD_NOEXEC_SEAL of Linux 6.3, which the C library's headers may not know yet.
constexpr unsigned noExecutionSeal = 8;

base::Error failure(const std::string& what) {
    return {base::ErrorKind::failed, what + ": " + std::strerror(errno) + "."};
}

OwnedDescriptor createMemory() {
    constexpr unsigned flags = MFD_CLOEXEC | MFD_ALLOW_SEALING;
    OwnedDescriptor memory(::memfd_create("lumaframe-picture", flags | noExecutionSeal));
    if (!memory.isOpen() && errno == EINVAL) {
        memory = OwnedDescriptor(::memfd_create("lumaframe-picture", flags));
    }
    return memory;
}

bool writeAll(int descriptor, const std::uint8_t* bytes, std::size_t length) {
    while (length > 0) {
        const ssize_t count = ::write(descriptor, bytes, length);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        bytes += count;
        length -= static_cast<std::size_t>(count);
    }
    return true;
}

/// By write and not through a mapping: the pages never count as this process's own.
bool writeRows(int descriptor, const base::Image& image) {
    const std::size_t rowLength = static_cast<std::size_t>(image.width()) * 4;
    if (image.bytesPerRow() == rowLength) {
        return writeAll(descriptor, image.row(0),
                        rowLength * static_cast<std::size_t>(image.height()));
    }
    for (int y = 0; y < image.height(); ++y) {
        if (!writeAll(descriptor, image.row(y), rowLength)) {
            return false;
        }
    }
    return true;
}

}  // namespace

PictureShape sealedShapeOf(const base::Image& image) {
    if (image.isEmpty()) {
        return {};
    }
    const auto width = static_cast<std::uint32_t>(image.width());
    return {.width = width,
            .height = static_cast<std::uint32_t>(image.height()),
            .bytesPerRow = width * 4,
            .alphaChannel = image.alphaChannel()};
}

base::Result<OwnedDescriptor> makeSealedPicture(const base::Image& image) {
    OwnedDescriptor memory = createMemory();
    if (!memory.isOpen() || !writeRows(memory.number(), image) ||
        ::fcntl(memory.number(), F_ADD_SEALS, requiredSeals | F_SEAL_SEAL) != 0) {
        return failure("The picture could not be handed to the text recognition helper");
    }
    return memory;
}

base::Result<base::Image> mapSealedPicture(const OwnedDescriptor& memory,
                                           const PictureShape& shape) {
    const int seals = ::fcntl(memory.number(), F_GET_SEALS);
    if (seals < 0 || (seals & requiredSeals) != requiredSeals) {
        return base::Error{base::ErrorKind::invalid, "The picture is not sealed."};
    }
    const std::size_t length = std::size_t{shape.bytesPerRow} * shape.height;
    struct stat status {};
    if (!isAcceptable(shape) || ::fstat(memory.number(), &status) != 0 || status.st_size < 0 ||
        static_cast<std::size_t>(status.st_size) != length) {
        return base::Error{base::ErrorKind::invalid, "The picture is not as large as announced."};
    }
    // Private, since older kernels refuse a shared mapping of memory that is sealed against
    // writing.
    void* const address = ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, memory.number(), 0);
    if (address == MAP_FAILED) {
        return failure("The picture could not be read");
    }
    const std::shared_ptr<const void> owner(
        address, [length](const void* mapped) { ::munmap(const_cast<void*>(mapped), length); });
    return base::Image(static_cast<int>(shape.width), static_cast<int>(shape.height),
                       shape.bytesPerRow, static_cast<const std::uint8_t*>(address),
                       shape.alphaChannel, owner);
}

}  // namespace platform::tesseract
