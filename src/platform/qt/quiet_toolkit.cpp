#include "platform/qt/quiet_toolkit.h"

#include <QPixmapCache>
#include <QThreadPool>

namespace platform::qt {

namespace {

/// Long enough for the next painting of a window that somebody is using.
constexpr int threadExpiryMilliseconds = 1000;

}  // namespace

void quietToolkit() {
    // What cannot be kept starts no timer. The windows are drawn anew too rarely to miss it.
    QPixmapCache::setCacheLimit(0);
    QThreadPool::globalInstance()->setExpiryTimeout(threadExpiryMilliseconds);
}

}  // namespace platform::qt
