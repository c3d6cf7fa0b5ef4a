#include "platform/qt/message_watch.h"

#include <QDebug>
#include <utility>

namespace platform::qt {

namespace {

std::function<void()> beforeMessages;
QtMessageHandler printMessage = nullptr;

void handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    beforeMessages();
    printMessage(type, context, message);
}

}  // namespace

MessageWatch::MessageWatch(std::function<void()> beforeMessage) {
    beforeMessages = std::move(beforeMessage);
    printMessage = qInstallMessageHandler(handle);
}

MessageWatch::~MessageWatch() {
    qInstallMessageHandler(printMessage);
}

}  // namespace platform::qt
