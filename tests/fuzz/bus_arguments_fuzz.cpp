// Any messages of other programs on the session bus: calls of what the program offers there, with
// any arguments, signals of the services that it listens to, and answers to what it asks.

#include <array>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "made_up_bus.h"
#include "program_on_bus.h"

namespace {

using fuzz::Input;
using fuzz::Message;
using fuzz::MessageType;
using fuzz::ProgramOnBus;
using fuzz::require;

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";
constexpr const char* application = "org.freedesktop.Application";
constexpr const char* applicationPath = "/app/lumaframe/Lumaframe";
constexpr const char* item = "org.kde.StatusNotifierItem";
constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* menu = "com.canonical.dbusmenu";
constexpr const char* menuPath = "/MenuBar";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* watcher = "org.kde.StatusNotifierWatcher";
constexpr const char* notifications = "org.freedesktop.Notifications";
constexpr const char* notificationsPath = "/org/freedesktop/Notifications";
constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* other = ":1.7";

/// A call or a signal as its interface describes it.
struct Known {
    MessageType type;
    const char* path;
    const char* interface;
    const char* member;
    const char* signature;
};

constexpr MessageType call = MessageType::call;
constexpr MessageType told = MessageType::signal;
constexpr std::array known{
    Known{call, applicationPath, application, "Activate", "a{sv}"},
    Known{call, applicationPath, application, "Open", "asa{sv}"},
    Known{call, applicationPath, application, "ActivateAction", "sava{sv}"},
    Known{call, itemPath, item, "ContextMenu", "ii"},
    Known{call, itemPath, item, "Activate", "ii"},
    Known{call, itemPath, item, "SecondaryActivate", "ii"},
    Known{call, itemPath, item, "Scroll", "is"},
    Known{call, itemPath, properties, "Get", "ss"},
    Known{call, itemPath, properties, "GetAll", "s"},
    Known{call, itemPath, properties, "Set", "ssv"},
    Known{call, menuPath, menu, "GetLayout", "iias"},
    Known{call, menuPath, menu, "GetGroupProperties", "aias"},
    Known{call, menuPath, menu, "GetProperty", "is"},
    Known{call, menuPath, menu, "Event", "isvu"},
    Known{call, menuPath, menu, "EventGroup", "a(isvu)"},
    Known{call, menuPath, menu, "AboutToShow", "i"},
    Known{call, menuPath, menu, "AboutToShowGroup", "ai"},
    Known{call, menuPath, properties, "GetAll", "s"},
    Known{call, "/", "org.freedesktop.DBus.Introspectable", "Introspect", ""},
    Known{told, "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
          "SettingChanged", "ssv"},
    Known{told, notificationsPath, notifications, "ActionInvoked", "us"},
    Known{told, notificationsPath, notifications, "NotificationClosed", "uu"},
    Known{told, "/StatusNotifierWatcher", watcher, "StatusNotifierHostRegistered", ""},
    Known{told, "/StatusNotifierWatcher", watcher, "StatusNotifierHostUnregistered", ""},
    Known{told, busPath, busName, "NameOwnerChanged", "sss"},
};

/// What the program has to do, and what it may do besides.
struct Duties {
    int activations = 0;
    std::map<std::string, int> actions;
    std::map<int, int> triggers;
    /// Of each item of the menu.
    int furtherTriggers = 0;
    int authorizations = 0;
    int notifications = 0;
    /// By the serial numbers of the calls.
    std::map<std::uint32_t, bool> wantsReply;
};

/// A name is owned by `owner` from now on, or by nobody.
Message ownerChanged(const char* name, const char* owner) {
    fuzz::BodyWriter body;
    body.text(name);
    body.text("");
    body.text(owner);
    return {.type = told,
            .wantsReply = false,
            .path = busPath,
            .interface = busName,
            .member = "NameOwnerChanged",
            .sender = busName,
            .signature = "sss",
            .body = body.take()};
}

/// Mostly as the interface has it; else with other arguments, or of another object.
Message madeUpMessage(Input& input) {
    const Known& model = known[input.byte() % known.size()];
    const std::uint8_t change = input.byte();
    Message message{.type = model.type,
                    .wantsReply = change % 16 != 15 && model.type == call,
                    .path = model.path,
                    .interface = model.interface,
                    .member = model.member,
                    .sender = model.interface == busName ? busName : other,
                    .signature = model.signature};
    if (change >= 160) {
        message.signature = fuzz::madeUpSignature(input);
    }
    if (change >= 208) {
        message.path = known[input.byte() % known.size()].path;
    }
    if (change >= 232) {
        const std::uint8_t from = input.byte();
        message.interface =
            from % 4 == 0 && message.type == call ? "" : known[from % known.size()].interface;
    }
    if (change >= 160) {
        // The bus itself says what it says as it should (the toolkit ends the program otherwise),
        // and lets nobody speak in its name.
        message.sender = other;
    }
    fuzz::BodyWriter body;
    body.madeUp(message.signature, input);
    message.body = body.take();
    return message;
}

/// What the program has to do at a call.
void addDuties(const Message& message, Duties& duties) {
    const std::string kind = message.member + '(' + message.signature + ')';
    if (message.path == applicationPath &&
        (message.interface == application || message.interface.empty())) {
        if (kind == "Activate(a{sv})" || kind == "Open(asa{sv})") {
            ++duties.activations;
        } else if (kind == "ActivateAction(sava{sv})") {
            const std::string action = fuzz::BodyReader(message.body).text();
            if (action == "screenshot" || action == "recognize-text") {
                ++duties.actions[action];
            }
        }
    }
    if (message.path == menuPath && message.member.starts_with("Event")) {
        if (kind == "Event(isvu)" && message.interface == menu) {
            fuzz::BodyReader body(message.body);
            const auto id = static_cast<std::int32_t>(body.number(4));
            if (body.text() == "clicked" && id != ProgramOnBus::disabledItem && id > 0 &&
                id <= ProgramOnBus::items) {
                ++duties.triggers[id];
            }
        } else {
            constexpr int longestList = 3;
            duties.furtherTriggers += longestList;
        }
    }
}

class Round {
  public:
    Round(fuzz::MadeUpBus& bus, ProgramOnBus& program, Input input)
        : bus_(bus), program_(program), input_(input) {}

    void run() {
        const std::uint8_t wishes = input_.byte();
        if (wishes % 4 == 1) {
            program_.askForAuthorization();
            ++duties_.authorizations;
        }
        if (wishes % 8 >= 6) {
            program_.postNotification();
            ++duties_.notifications;
            hasLeftTraces_ = true;
        }
        constexpr int mostMessages = 6;
        for (int count = wishes / 8 % mostMessages; count >= 0; --count) {
            const Message message = madeUpMessage(input_);
            const std::uint32_t serial = bus_.send(message);
            hasLeftTraces_ = hasLeftTraces_ || message.member == "NameOwnerChanged";
            if (message.type == call) {
                duties_.wantsReply[serial] = message.wantsReply;
                addDuties(message, duties_);
            }
        }
        settle();
        check(program_.takeDeeds());
    }
    /// Until the program asks for nothing any more.
    void settle() {
        bool isAsking = true;
        while (isAsking) {
            // What was sent has come in, is handled, and what that sends has come back.
            isAsking = hear(bus_.exchange());
            program_.turn();
            isAsking = hear(bus_.exchange()) || isAsking;
        }
    }
    /// Whether the next input has to be told again who is on the bus.
    [[nodiscard]] bool hasLeftTraces() const { return hasLeftTraces_; }

  private:
    /// Whether something was asked.
    bool hear(const std::vector<Message>& messages) {
        bool isAsking = false;
        for (const Message& message : messages) {
            isAsking = isAsking || message.type == call;
            hear(message);
        }
        return isAsking;
    }
    void hear(const Message& message) {
        if (message.type == MessageType::reply || message.type == MessageType::error) {
            ++replies_[message.replySerial];
            return;
        }
        if (message.member == "Notify") {
            hearNotification(message);
        }
        if (message.type == call && message.wantsReply) {
            bus_.send(answerTo(message));
        }
    }
    Message answerTo(const Message& question) {
        const std::uint8_t choice = input_.byte();
        Message answer = fuzz::MadeUpBus::answerTo(question);
        if (question.member.ends_with("Match") || choice % 8 == 0) {
            return answer;
        }
        answer.sender = question.interface == busName ? busName : other;
        answer.type = choice % 8 == 1 ? MessageType::error : MessageType::reply;
        answer.errorName =
            answer.type == MessageType::error ? "org.freedesktop.DBus.Error.Failed" : "";
        const std::map<std::string, std::string> signatures{
            {"GetCapabilities", "as"}, {"NameHasOwner", "b"}, {"ListActivatableNames", "as"},
            {"GetNameOwner", "s"},     {"Get", "v"},          {"Read", "v"}};
        const auto usual = signatures.find(question.member);
        answer.signature = choice >= 192 || usual == signatures.end()
                               ? fuzz::madeUpSignature(input_)
                               : usual->second;
        fuzz::BodyWriter body;
        body.madeUp(answer.signature, input_);
        answer.body = body.take();
        if (question.member == "GetCapabilities") {
            readsMarkup_ = !saysThatItReadsNoMarkup(answer);
        }
        return answer;
    }
    static bool saysThatItReadsNoMarkup(const Message& answer) {
        // A list first; more may follow.
        if (answer.type != MessageType::reply || !answer.signature.starts_with("as")) {
            return false;
        }
        fuzz::BodyReader body(answer.body);
        const auto size = body.number(4);
        for (const std::size_t begin = body.place(); body.place() < begin + size;) {
            if (body.text() == "body-markup") {
                return false;
            }
        }
        return true;
    }
    void hearNotification(const Message& message) {
        --duties_.notifications;
        require(message.signature == "susssasa{sv}i", "a notification is one");
        fuzz::BodyReader body(message.body);
        require(body.text() == "Lumaframe" && body.number(4) == 0, "a notification is ours");
        body.text();
        require(body.text() == "Title", "a title stays");
        require(
            body.text() == (readsMarkup_ ? "a &lt;b&gt;&amp;amp;" : ProgramOnBus::notificationBody),
            "a text is escaped where markup may be read");
    }
    void check(const fuzz::Deeds& deeds) const {
        require(deeds.activations == duties_.activations, "what activates, activates once");
        require(deeds.actions == duties_.actions, "two actions, each once, and no other");
        require(deeds.authorizations == duties_.authorizations, "a question has one answer");
        require(duties_.notifications == 0, "a notification is sent once");
        for (int id = 0; id <= ProgramOnBus::items; ++id) {
            const int most = id == 0 || id == ProgramOnBus::disabledItem
                                 ? 0
                                 : count(duties_.triggers, id) + duties_.furtherTriggers;
            const int done = count(deeds.triggers, id);
            require(done >= count(duties_.triggers, id) && done <= most,
                    "an item of the menu is chosen by a click only");
        }
        for (const auto& [serial, wantsReply] : duties_.wantsReply) {
            const int answers = count(replies_, serial);
            require(wantsReply ? answers == 1 : answers <= 1, "a call has one answer");
        }
    }
    template <typename Key>
    static int count(const std::map<Key, int>& counts, Key key) {
        const auto found = counts.find(key);
        return found == counts.end() ? 0 : found->second;
    }
    fuzz::MadeUpBus& bus_;
    ProgramOnBus& program_;
    Input input_;
    Duties duties_;
    std::map<std::uint32_t, int> replies_;
    bool readsMarkup_ = true;
    bool hasLeftTraces_ = false;
};

/// A bus with a program on it that every input finds in the same state.
class World {
  public:
    World() {
        bus_.takeOver();
        restore();
    }
    void play(const Input& input) {
        Round round(bus_, program_, input);
        round.run();
        if (round.hasLeftTraces()) {
            restore();
        }
    }

  private:
    /// The program remembers who owns a name and what a server for notifications has said.
    void restore() {
        for (const char* name : {portal, watcher, notifications}) {
            bus_.send(ownerChanged(name, other));
        }
        Round(bus_, program_, Input(nullptr, 0)).settle();
        program_.takeDeeds();
    }

    fuzz::MadeUpBus bus_;
    ProgramOnBus program_;
};

}  // namespace

/// What the library's threads let go at another time looks like a leak of one input.
extern "C" const char* __asan_default_options() {
    return "detect_leaks=0";
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto* const world = [] {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        return new World;
    }();
    world->play(Input(data, size));
    return 0;
}
