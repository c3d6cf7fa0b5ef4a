#include "platform/qt/qt_session.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTimer>
#include <cstdlib>
#include <optional>

namespace qt_tests {

namespace {

std::optional<std::unique_ptr<QtSession>> session;

}  // namespace

QtSession::QtSession()
    : desktop_({.windowManager = desktop::WindowManager::openbox,
                .notifications = desktop::NotificationDaemon::none}) {
    for (const auto& [name, value] : desktop_.environment()) {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
}

QtSession& QtSession::shared() {
    if (!session) {
        session.emplace(new QtSession());
    }
    return **session;
}

void QtSession::end() {
    session.reset();
}

bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    QElapsedTimer elapsed;
    elapsed.start();
    // Wakes the loop, so that a condition of the server's side is asked about too.
    QTimer pulse;
    pulse.start(5);
    while (!condition()) {
        if (elapsed.elapsed() > limit.count()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

}  // namespace qt_tests

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    qt_tests::QtSession::end();
    return result;
}
