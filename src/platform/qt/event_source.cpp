#include "platform/qt/event_source.h"

#include <QAbstractEventDispatcher>
#include <QObject>
#include <QSocketNotifier>
#include <utility>

namespace platform::qt {

class EventSource::Receiver {
  public:
    Receiver(int fileDescriptor, std::function<Dispatch()> dispatch)
        : dispatch_(std::move(dispatch)), notifier_(fileDescriptor, QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
                         [this] { dispatchUnlessBusy(); });
        QObject::connect(QAbstractEventDispatcher::instance(),
                         &QAbstractEventDispatcher::aboutToBlock, &notifier_,
                         [this] { dispatchUnlessBusy(); });
    }

  private:
    enum class State {
        idle,
        /// Somebody's loop inside a dispatch (a drag, a dialog of the system) must not enter it
        /// again.
        dispatching,
        /// The next event waits behind what the last one has posted.
        queued,
    };

    void dispatchUnlessBusy() {
        if (state_ != State::idle) {
            return;
        }
        state_ = State::dispatching;
        switch (dispatch_()) {
            case Dispatch::nothing:
                state_ = State::idle;
                break;
            case Dispatch::done:
                state_ = State::queued;
                QMetaObject::invokeMethod(
                    &notifier_, [this] { dispatchQueued(); }, Qt::QueuedConnection);
                break;
        }
    }

    void dispatchQueued() {
        state_ = State::idle;
        dispatchUnlessBusy();
    }

    std::function<Dispatch()> dispatch_;
    State state_ = State::idle;
    QSocketNotifier notifier_;
};

EventSource::EventSource(int fileDescriptor, std::function<Dispatch()> dispatch)
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
