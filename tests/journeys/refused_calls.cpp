// Loaded into the program (LD_PRELOAD) where a journey needs a call to fail that this machine would
// grant. What is refused is told by the test while the program runs: see refused_calls.h.
#include "journeys/refused_calls.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>

using journeys::RefusalOrders;

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

RefusalOrders* orders = nullptr;

void* map(void* address, std::size_t length, int protection, int flags, int file, off_t offset) {
    return reinterpret_cast<void*>(
        ::syscall(SYS_mmap, address, length, protection, flags, file, offset));
}

[[gnu::constructor]] void readOrders() {
    const char* name = std::getenv(journeys::refusalsVariable);
    const int file = name == nullptr ? -1 : ::open(name, O_RDWR | O_CLOEXEC);
    if (file >= 0) {
        void* memory =
            map(nullptr, sizeof(RefusalOrders), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        orders = memory == MAP_FAILED ? nullptr : static_cast<RefusalOrders*>(memory);
        ::close(file);
    }
}

bool isRefused(RefusalOrders::Call call, std::size_t size) {
    if (orders == nullptr || (orders->calls & call) == 0 || size < orders->smallest) {
        return false;
    }
    if (orders->granted > 0) {
        --orders->granted;
        return false;
    }
    if (orders->refused <= 0) {
        return false;
    }
    --orders->refused;
    ++orders->refusals;
    return true;
}

bool isRefusedMemory(std::size_t size) {
    const bool isSo = isRefused(RefusalOrders::allocation, size);
    if (isSo) {
        errno = ENOMEM;
    }
    return isSo;
}

/// The standard streams are not what a user's quota is about.
bool isFileOfTheDisk(int file) {
    struct stat status {};
    return file > STDERR_FILENO && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
    return isRefusedMemory(size) ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    return isRefusedMemory(count * size) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
    return isRefusedMemory(size) ? nullptr : __libc_realloc(memory, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
    return isRefusedMemory(size) ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    void* const made = memalign(alignment, size);
    if (made != nullptr) {
        *memory = made;
    }
    return made == nullptr ? ENOMEM : 0;
}

void* mmap(void* address, std::size_t length, int protection, int flags, int file,
           off_t offset) noexcept {
    if (isRefused(RefusalOrders::sharedMemory, length)) {
        errno = ENOMEM;
        return MAP_FAILED;
    }
    return map(address, length, protection, flags, file, offset);
}

int ftruncate(int file, off_t length) noexcept {
    if (isRefused(RefusalOrders::sharedMemory, static_cast<std::size_t>(length))) {
        errno = ENOSPC;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_ftruncate, file, length));
}

int memfd_create(const char* name, unsigned flags) noexcept {
    // It says no size; what it is for is as large as a picture.
    if (isRefused(RefusalOrders::sharedMemory, SIZE_MAX)) {
        errno = EMFILE;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_memfd_create, name, flags));
}

ssize_t write(int file, const void* bytes, std::size_t size) {
    if (orders != nullptr && (orders->calls & RefusalOrders::writeBeyondQuota) != 0 &&
        isFileOfTheDisk(file) && isRefused(RefusalOrders::writeBeyondQuota, size)) {
        errno = EDQUOT;
        return -1;
    }
    return ::syscall(SYS_write, file, bytes, size);
}
}
