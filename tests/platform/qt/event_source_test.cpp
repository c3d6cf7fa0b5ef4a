#include "platform/qt/event_source.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string>

#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_session.h"

namespace {

using platform::Dispatch;
using platform::qt::EventSource;
using qt_tests::QtSession;
using qt_tests::runUntil;

class Pipe {
  public:
    Pipe() { EXPECT_EQ(::pipe2(ends_.data(), O_NONBLOCK | O_CLOEXEC), 0); }
    ~Pipe() {
        ::close(ends_[0]);
        ::close(ends_[1]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    [[nodiscard]] int readEnd() const { return ends_[0]; }
    void write() const { EXPECT_EQ(::write(ends_[1], "x", 1), 1); }
    [[nodiscard]] int drain() const {
        std::array<char, 64> buffer{};
        int count = 0;
        for (ssize_t got = 0; (got = ::read(ends_[0], buffer.data(), buffer.size())) > 0;) {
            count += static_cast<int>(got);
        }
        return count;
    }

  private:
    std::array<int, 2> ends_{};
};

class EventSourceTest : public testing::Test {
  protected:
    EventSourceTest() { QtSession::shared(); }
    Pipe pipe_;
};

TEST_F(EventSourceTest, what_arrives_at_the_descriptor_is_dispatched) {
    int received = 0;
    const EventSource source(pipe_.readEnd(), [&] {
        received += pipe_.drain();
        return Dispatch::nothing;
    });
    pipe_.write();
    EXPECT_TRUE(runUntil([&] { return received == 1; }));
}

TEST_F(EventSourceTest,
       what_is_queued_without_the_descriptor_is_dispatched_before_the_loop_sleeps) {
    int queued = 1;
    const EventSource source(pipe_.readEnd(), [&] {
        queued = 0;
        return Dispatch::nothing;
    });
    EXPECT_TRUE(runUntil([&] { return queued == 0; }));
}

TEST_F(EventSourceTest, a_task_posted_by_a_dispatch_before_the_sleep_still_runs) {
    platform::qt::QtMainQueue queue;
    bool isPosted = false;
    bool hasRun = false;
    const EventSource source(pipe_.readEnd(), [&] {
        if (!isPosted) {
            isPosted = true;
            queue.post([&] { hasRun = true; });
        }
        return Dispatch::nothing;
    });
    EXPECT_TRUE(runUntil([&] { return hasRun; }));
}

TEST_F(EventSourceTest, what_an_event_has_posted_runs_before_the_next_event) {
    platform::qt::QtMainQueue queue;
    std::string order;
    int events = 3;
    const EventSource source(pipe_.readEnd(), [&] {
        if (events == 0) {
            return Dispatch::nothing;
        }
        --events;
        order += 'e';
        queue.post([&] { order += 't'; });
        return Dispatch::done;
    });
    EXPECT_TRUE(runUntil([&] { return order.size() == 6; }));
    EXPECT_EQ(order, "etetet");
}

TEST_F(EventSourceTest, a_dispatch_is_not_entered_again_from_within) {
    int depth = 0;
    int deepest = 0;
    int count = 0;
    const EventSource source(pipe_.readEnd(), [&] {
        deepest = std::max(deepest, ++depth);
        if (++count == 1) {
            pipe_.write();
            QCoreApplication::processEvents();
        }
        --depth;
        return Dispatch::nothing;
    });
    EXPECT_TRUE(runUntil([&] { return count > 1; }));
    EXPECT_EQ(deepest, 1);
}

TEST_F(EventSourceTest, nothing_is_dispatched_after_its_end) {
    int count = 0;
    {
        const EventSource source(pipe_.readEnd(), [&] {
            ++count;
            return Dispatch::done;
        });
    }
    pipe_.write();
    bool isOver = false;
    platform::qt::QtMainQueue queue;
    queue.postAfter(std::chrono::milliseconds(20), [&] { isOver = true; });
    EXPECT_TRUE(runUntil([&] { return isOver; }));
    EXPECT_EQ(count, 0);
}

TEST_F(EventSourceTest, a_watched_descriptor_is_watched_until_the_token_goes) {
    int received = 0;
    auto token =
        platform::qt::fileDescriptorWatch()(pipe_.readEnd(), [&] { received += pipe_.drain(); });
    pipe_.write();
    EXPECT_TRUE(runUntil([&] { return received == 1; }));
    token.reset();
    pipe_.write();
    bool isOver = false;
    platform::qt::QtMainQueue queue;
    queue.postAfter(std::chrono::milliseconds(20), [&] { isOver = true; });
    EXPECT_TRUE(runUntil([&] { return isOver; }));
    EXPECT_EQ(received, 1);
}

}  // namespace
