#include "platform/qt/event_source.h"

#include <QAbstractEventDispatcher>
#include <QObject>
#include <QSocketNotifier>
#include <utility>

namespace platform::qt {

class EventSource::Receiver {
  public:
    Receiver(int fileDescriptor, std::function<void()> dispatch)
        : dispatch_(std::move(dispatch)), notifier_(fileDescriptor, QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
                         [this] { dispatchOnce(); });
        QObject::connect(QAbstractEventDispatcher::instance(),
                         &QAbstractEventDispatcher::aboutToBlock, &notifier_,
                         [this] { dispatchOnce(); });
    }

  private:
    /// Somebody's loop inside a dispatch (a drag, a dialog of the system) must not enter it again.
    void dispatchOnce() {
        if (std::exchange(isDispatching_, true)) {
            return;
        }
        dispatch_();
        isDispatching_ = false;
    }

    std::function<void()> dispatch_;
    bool isDispatching_ = false;
    QSocketNotifier notifier_;
};

EventSource::EventSource(int fileDescriptor, std::function<void()> dispatch)
    : receiver_(std::make_unique<Receiver>(fileDescriptor, std::move(dispatch))) {}

EventSource::~EventSource() = default;

WatchFileDescriptor fileDescriptorWatch() {
    return [](int fileDescriptor, std::function<void()> onReadable) {
        auto notifier = std::make_shared<QSocketNotifier>(fileDescriptor, QSocketNotifier::Read);
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                         std::move(onReadable));
        return notifier;
    };
}

}  // namespace platform::qt
