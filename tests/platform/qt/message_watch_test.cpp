#include "platform/qt/message_watch.h"

#include <gtest/gtest.h>

#include <QDebug>
#include <string>
#include <vector>

namespace platform::qt {
namespace {

TEST(MessageWatch, comes_before_what_the_toolkit_prints_and_ends_with_its_object) {
    static std::vector<std::string> happened;
    happened.clear();
    const auto printed = [](QtMsgType, const QMessageLogContext&, const QString& message) {
        happened.push_back(message.toStdString());
    };
    const QtMessageHandler before = qInstallMessageHandler(printed);
    {
        const MessageWatch watch([] { happened.emplace_back("watch"); });
        qWarning("first");
    }
    qWarning("second");
    qInstallMessageHandler(before);
    EXPECT_EQ(happened, (std::vector<std::string>{"watch", "first", "second"}));
}

}  // namespace
}  // namespace platform::qt
