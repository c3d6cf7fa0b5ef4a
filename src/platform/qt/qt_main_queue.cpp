#include "platform/qt/qt_main_queue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimer>
#include <utility>

namespace platform::qt {

namespace {

class TaskEvent final : public QEvent {
  public:
    explicit TaskEvent(std::function<void()> work) : QEvent(eventType()), task(std::move(work)) {}
    static Type eventType() {
        static const Type type = static_cast<Type>(registerEventType());
        return type;
    }
    std::function<void()> task;
};

}  // namespace

class QtMainQueue::Receiver final : public QObject {
  protected:
    void customEvent(QEvent* event) override {
        if (event->type() == TaskEvent::eventType()) {
            // Moved out, so that what the task holds is released before the next task runs.
            const auto task = std::move(static_cast<TaskEvent*>(event)->task);
            task();
        }
    }
};

QtMainQueue::QtMainQueue() : receiver_(std::make_unique<Receiver>()) {}

QtMainQueue::~QtMainQueue() = default;

void QtMainQueue::post(std::function<void()> task) {
    QCoreApplication::postEvent(receiver_.get(), new TaskEvent(std::move(task)));
}

void QtMainQueue::postAfter(std::chrono::milliseconds delay, std::function<void()> task) {
    // Not QTimer::singleShot: it keeps the task, and what that holds, after the receiver is gone.
    auto* timer = new QTimer(receiver_.get());
    timer->setSingleShot(true);
    // The coarse kind may fire 5 % early, and a delay is a promise of "not before".
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, work = std::move(task)]() {
        timer->deleteLater();
        work();
    });
    timer->start(delay);
}

}  // namespace platform::qt
