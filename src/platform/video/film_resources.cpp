#include "platform/video/film_resources.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "platform/video/helper_video_looper.h"

namespace platform::video {

base::Result<ui::Film> FilmResources::open(const std::string& videoName) {
    const std::string path = directory_ + "/" + videoName + ".mp4";
    // Not blocking, for a path that leads to something else than a file.
    const OwnedDescriptor film(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!film.isOpen()) {
        const bool isMissing = errno == ENOENT || errno == ENOTDIR;
        return base::Error{isMissing ? base::ErrorKind::notFound : base::ErrorKind::failed,
                           path + " cannot be read: " + std::strerror(errno) + "."};
    }
    struct stat status {};
    if (::fstat(film.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return base::Error{base::ErrorKind::invalid, path + " is not a file."};
    }
    auto looper = HelperVideoLooper::start(helperPath_, film, mainQueue_, watch_);
    if (!looper) {
        return looper.error();
    }
    return ui::Film(std::unique_ptr<ui::VideoLooper>(std::move(looper.value())));
}

}  // namespace platform::video
