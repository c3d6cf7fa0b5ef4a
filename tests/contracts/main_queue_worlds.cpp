#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include "contracts/main_queue_contract.h"
#include "doubles/manual_main_queue.h"
#include "platform/qt/qt_main_queue.h"

namespace contracts {
namespace {

using namespace std::chrono_literals;

class ManualMainQueueWorld final : public MainQueueWorld {
  public:
    base::MainQueue& queue() override { return queue_; }
    bool runUntil(const std::function<bool()>& isDone) override {
        // As the real one does, it also waits for what other threads post.
        const QDeadlineTimer limit(5s);
        while (!isDone() && !limit.hasExpired()) {
            now_ += 1ms;
            queue_.advance(1ms);
        }
        return isDone();
    }
    std::chrono::nanoseconds now() override { return now_; }

  private:
    doubles::ManualMainQueue queue_;
    std::chrono::nanoseconds now_{0};
};

class QtMainQueueWorld final : public MainQueueWorld {
  public:
    base::MainQueue& queue() override { return queue_; }
    bool runUntil(const std::function<bool()>& isDone) override {
        const QDeadlineTimer limit(5s);
        // Wakes the loop when nothing else does, so that the limit is seen.
        QTimer pulse;
        pulse.start(100);
        while (!isDone() && !limit.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return isDone();
    }
    std::chrono::nanoseconds now() override {
        return std::chrono::steady_clock::now().time_since_epoch();
    }

  private:
    static inline int argumentCount_ = 1;
    static inline char programName_[] = "contract";
    static inline char* arguments_[] = {programName_, nullptr};
    QCoreApplication application_{argumentCount_, arguments_};
    platform::qt::QtMainQueue queue_;
};

INSTANTIATE_TEST_SUITE_P(Fake, MainQueueContract, testing::Values(MakeMainQueueWorld([] {
                             return std::make_unique<ManualMainQueueWorld>();
                         })));
INSTANTIATE_TEST_SUITE_P(Qt, MainQueueContract, testing::Values(MakeMainQueueWorld([] {
                             return std::make_unique<QtMainQueueWorld>();
                         })));

}  // namespace
}  // namespace contracts
