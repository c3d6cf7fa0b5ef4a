// The bus side of the program, alone, as a process of its own: what it hears and what it is
// answered goes to standard output, one line each.
//
//   application              serves org.freedesktop.Application: "first" or "second", "activated",
//                            "action NAME"
//   notify TITLE BODY        asks and posts: "returned" (before anything is answered), then
//                            "granted" and "posted", or "denied"; again at each SIGUSR1
//   notify-gone              asks, and lets the service go before the answer: "gone", then
//                            "answered" if it is answered all the same
//   silent-server            owns org.freedesktop.Notifications and answers nothing: "ready",
//                            "call MEMBER", "body TEXT" of a notification
//   strange-server           the same, but answers every call with a number
//   slow-server MILLISECONDS CAPABILITY...
//                            the same, but answers every call after so long: "answered MEMBER"
#include <sys/signalfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <csignal>
#include <iostream>
#include <memory>
#include <utility>

#include "platform/freedesktop/dbus_application.h"
#include "platform/freedesktop/notification_service.h"
#include "platform/qt/qt_main_queue.h"

namespace {

using platform::freedesktop::DBusApplication;
using platform::freedesktop::NotificationService;

void say(const std::string& line) {
    std::cout << line << std::endl;
}

/// SIGUSR1, from then on for nobody but who reads it. Before other threads exist.
sigset_t blockedWish() {
    sigset_t wish;
    ::sigemptyset(&wish);
    ::sigaddset(&wish, SIGUSR1);
    ::sigprocmask(SIG_BLOCK, &wish, nullptr);
    return wish;
}

int serveApplication() {
    DBusApplication application(
        {.onActivate = [] { say("activated"); },
         .onAction = [](const std::string& action) { say("action " + action); }});
    if (application.start() == DBusApplication::Instance::second) {
        say("second");
        return 0;
    }
    say("first");
    return QCoreApplication::exec();
}

int notify(const QStringList& arguments, const sigset_t& wish) {
    platform::qt::QtMainQueue queue;
    NotificationService service(queue);
    const auto ask = [&] {
        service.requestAuthorization([&](capture::Authorization authorization) {
            if (authorization == capture::Authorization::denied) {
                say("denied");
                return;
            }
            say("granted");
            service.add({.identifier = service.makeIdentifier(),
                         .title = arguments.value(2).toStdString(),
                         .body = arguments.value(3).toStdString()});
            say("posted");
        });
    };
    const int wishes = ::signalfd(-1, &wish, SFD_CLOEXEC);
    const QSocketNotifier notifier(wishes, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
        signalfd_siginfo one;
        static_cast<void>(!::read(wishes, &one, sizeof one));
        ask();
    });
    ask();
    say("returned");
    return QCoreApplication::exec();
}

int notifyAndLeave() {
    platform::qt::QtMainQueue queue;
    auto service = std::make_unique<NotificationService>(queue);
    service->requestAuthorization([](capture::Authorization) { say("answered"); });
    queue.post([&] {
        // The question is on its way to the bus now.
        service.reset();
        say("gone");
    });
    return QCoreApplication::exec();
}

class Server final : public QDBusVirtualObject {
  public:
    enum class Answers { none, numbers, late };
    explicit Server(Answers answers, QStringList capabilities = {},
                    std::chrono::milliseconds delay = {})
        : answers_(answers), capabilities_(std::move(capabilities)), delay_(delay) {}
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        say("call " + message.member().toStdString());
        const bool isQuestion = message.member() == QStringLiteral("GetCapabilities");
        if (!isQuestion) {
            say("body " + message.arguments().value(4).toString().toStdString());
        }
        switch (answers_) {
            case Answers::none:
                break;
            case Answers::numbers:
                bus.send(message.createReply(42));
                break;
            case Answers::late:
                QTimer::singleShot(delay_, this, [this, message, bus, isQuestion] {
                    bus.send(
                        message.createReply(isQuestion ? QVariant(capabilities_) : QVariant(7U)));
                    say("answered " + message.member().toStdString());
                });
                break;
        }
        return true;
    }

  private:
    Answers answers_;
    QStringList capabilities_;
    std::chrono::milliseconds delay_;
};

int serveNotifications(Server&& server) {
    auto bus = QDBusConnection::sessionBus();
    bus.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), &server);
    bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
    say("ready");
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    const sigset_t wish = blockedWish();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString command = arguments.value(1);
    if (command == "application") {
        return serveApplication();
    }
    if (command == "notify") {
        return notify(arguments, wish);
    }
    if (command == "notify-gone") {
        return notifyAndLeave();
    }
    if (command == "silent-server") {
        return serveNotifications(Server(Server::Answers::none));
    }
    if (command == "strange-server") {
        return serveNotifications(Server(Server::Answers::numbers));
    }
    if (command == "slow-server") {
        return serveNotifications(Server(Server::Answers::late, arguments.mid(3),
                                         std::chrono::milliseconds(arguments.value(2).toInt())));
    }
    return 2;
}
