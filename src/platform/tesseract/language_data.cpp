#include "platform/tesseract/language_data.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <mutex>
#include <string>

#include "platform/helper/owned_descriptor.h"

namespace platform::tesseract {

using helper::OwnedDescriptor;

namespace {

/// The engine takes a function without an object, so what is open belongs to the process.
class OpenFiles {
  public:
    static OpenFiles& ofProcess() {
        static OpenFiles files;
        return files;
    }
    /// Negative when it cannot be opened. A file that was replaced meanwhile stays what it was.
    int descriptorOf(const std::string& path) {
        const std::scoped_lock lock(mutex_);
        const auto place = files_.find(path);
        if (place != files_.end()) {
            return place->second.number();
        }
        OwnedDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
        if (!file.isOpen()) {
            return -1;
        }
        return files_.emplace(path, std::move(file)).first->second.number();
    }

  private:
    std::mutex mutex_;
    std::map<std::string, OwnedDescriptor> files_;
};

}  // namespace

bool readLanguageData(const char* path, std::vector<char>* bytes) {
    const int file = OpenFiles::ofProcess().descriptorOf(path);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0 || status.st_size <= 0) {
        return false;
    }
    bytes->resize(static_cast<std::size_t>(status.st_size));
    std::size_t length = 0;
    while (length < bytes->size()) {
        // From a place of its own, since two engines may load at once.
        const ssize_t count = ::pread(file, bytes->data() + length, bytes->size() - length,
                                      static_cast<off_t>(length));
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return false;
        }
        length += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return true;
}

}  // namespace platform::tesseract
