#include "platform/tesseract/text_helper_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "platform/environment.h"
#include "platform/tesseract/helper_command.h"
#include "platform/tesseract/sealed_picture.h"

namespace platform::tesseract {

namespace {

/// What the dynamic linker exits with when a library is missing.
constexpr int missingLibraryStatus = 127;

/// What the child does between its birth and the program: no descriptor but the socket, no signal
/// blocked or ignored, no directory kept busy.
class SpawnPlan {
  public:
    explicit SpawnPlan(int socket) {
        ::posix_spawn_file_actions_init(&actions_);
        ::posix_spawn_file_actions_adddup2(&actions_, socket, helperSocketDescriptor);
        ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&actions_, helperSocketDescriptor + 1);
        ::posix_spawn_file_actions_addchdir_np(&actions_, "/");
        ::posix_spawnattr_init(&attributes_);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&attributes_, &signals);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnPlan() {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&actions_);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    /// Gives the error number, 0 for success.
    int spawn(pid_t& pid, std::string path, std::string argument,
              std::vector<std::string> environment) const {
        char* arguments[] = {path.data(), argument.data(), nullptr};
        std::vector<char*> variables;
        variables.reserve(environment.size() + 1);
        for (std::string& variable : environment) {
            variables.push_back(variable.data());
        }
        variables.push_back(nullptr);
        return ::posix_spawn(&pid, path.c_str(), &actions_, &attributes_, arguments,
                             variables.data());
    }

  private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : "+") + name;
    }
    return text;
}

/// Nothing of this program's own: the helper reads no settings, and talks to no display or bus.
std::vector<std::string> environmentFor(const LanguageSelection& languages) {
    std::vector<std::string> environment{
        std::string(dataDirectoryVariable) + "=" + languages.directory, "LC_ALL=C.UTF-8"};
    // For an engine that is installed elsewhere.
    if (const std::string path = environmentValue("LD_LIBRARY_PATH"); !path.empty()) {
        environment.push_back("LD_LIBRARY_PATH=" + path);
    }
    return environment;
}

base::Error failed(const std::string& sentence) {
    return {base::ErrorKind::failed, sentence};
}

}  // namespace

base::Result<std::unique_ptr<TextHelperProcess>> TextHelperProcess::start(
    const std::string& path, const LanguageSelection& languages) {
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return failed(std::string("The text recognition helper cannot be reached: ") +
                      std::strerror(errno) + ".");
    }
    OwnedDescriptor ours(ends[0]);
    const OwnedDescriptor theirs(ends[1]);
    pid_t pid = -1;
    const int error = SpawnPlan(theirs.number())
                          .spawn(pid, path, joined(languages.languages), environmentFor(languages));
    if (error != 0) {
        return base::Error{base::ErrorKind::unavailable,
                           "The text recognition helper " + path +
                               " cannot be started: " + std::strerror(error) + "."};
    }
    return std::unique_ptr<TextHelperProcess>(
        new TextHelperProcess(pid, std::move(ours), languages));
}

TextHelperProcess::TextHelperProcess(pid_t pid, OwnedDescriptor socket, LanguageSelection languages)
    : pid_(pid),
      endDescriptor_(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0))),
      channel_(std::move(socket), Attachment::none),
      languages_(std::move(languages)) {}

TextHelperProcess::~TextHelperProcess() {
    killAndReap();
}

/// Its wait status, as far as it is known. Waiting is short: the process dies of the signal, and
/// nothing that it may do can hold it up.
std::optional<int> TextHelperProcess::killAndReap() {
    if (pid_ <= 0) {
        return std::nullopt;
    }
    // Through the descriptor, a process that was reaped by somebody else is not mistaken.
    if (endDescriptor_.isOpen()) {
        ::syscall(SYS_pidfd_send_signal, endDescriptor_.number(), SIGKILL, nullptr, 0);
    } else {
        ::kill(pid_, SIGKILL);
    }
    int status = 0;
    pid_t reaped = -1;
    do {
        reaped = ::waitpid(pid_, &status, 0);
    } while (reaped < 0 && errno == EINTR);
    pid_ = 0;
    return reaped > 0 ? std::optional(status) : std::nullopt;
}

base::Error TextHelperProcess::explain(ChannelFailure failure) {
    const std::optional<int> status = killAndReap();
    switch (failure) {
        case ChannelFailure::timedOut:
            return failed("The text recognition helper did not answer in time.");
        case ChannelFailure::nonsense:
            return failed("The text recognition helper gave an answer that makes no sense.");
        case ChannelFailure::closed:
            break;
    }
    if (status && WIFEXITED(*status) && WEXITSTATUS(*status) == missingLibraryStatus) {
        return {base::ErrorKind::unavailable,
                "The text recognition engine is missing; please install the package "
                "libtesseract5."};
    }
    return failed("The text recognition helper has ended unexpectedly.");
}

base::Result<Message> TextHelperProcess::receive(std::uint32_t serial, const Deadline& deadline) {
    auto received = channel_.receive(deadline);
    if (const auto* failure = std::get_if<ChannelFailure>(&received)) {
        return explain(*failure);
    }
    auto& message = std::get<Message>(received);
    if (message.header.serial != serial) {
        return explain(ChannelFailure::nonsense);
    }
    if (message.header.type == MessageType::failure) {
        auto error = decodeFailure(message.payload);
        return error ? *error : explain(ChannelFailure::nonsense);
    }
    return std::move(message);
}

base::Status TextHelperProcess::waitUntilReady(const Deadline& deadline) {
    if (isReady_) {
        return base::Nothing{};
    }
    const auto message = receive(0, deadline);
    if (!message) {
        return message.error();
    }
    if (message.value().header.type != MessageType::ready || !message.value().payload.empty()) {
        return explain(ChannelFailure::nonsense);
    }
    isReady_ = true;
    return base::Nothing{};
}

base::Result<std::vector<capture::TextObservation>> TextHelperProcess::read(
    const base::Image& image, const Deadline& deadline) {
    const auto picture = makeSealedPicture(image);
    if (!picture) {
        return picture.error();
    }
    const std::uint32_t serial = ++lastSerial_;
    if (const auto failure = channel_.send(encodePicture(serial, sealedShapeOf(image)), deadline,
                                           picture.value().number())) {
        return explain(*failure);
    }
    const auto message = receive(serial, deadline);
    if (!message) {
        return message.error();
    }
    auto observations = decodeObservations(message.value().payload);
    if (message.value().header.type != MessageType::observations || !observations) {
        return explain(ChannelFailure::nonsense);
    }
    return std::move(*observations);
}

bool TextHelperProcess::isSpoilt() const {
    if (endDescriptor_.isOpen()) {
        pollfd watched{endDescriptor_.number(), POLLIN, 0};
        if (::poll(&watched, 1, 0) != 0) {
            return true;
        }
    }
    return isReady_ && channel_.hasInput();
}

}  // namespace platform::tesseract
