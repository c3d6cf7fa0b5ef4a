// The helper as it is shipped, with the real engine.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QImage>
#include <QString>
#include <chrono>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "desktop/process.h"
#include "platform/tesseract/helper_command.h"
#include "platform/tesseract/helper_fixture.h"
#include "platform/tesseract/message_channel.h"

namespace {

using namespace tesseract_tests;
using namespace platform::tesseract;

base::Image load(const std::string& name) {
    const QImage picture =
        QImage(QString::fromStdString(LUMAFRAME_TEST_DATA "/ocr/" + name + ".png"))
            .convertToFormat(QImage::Format_RGB32);
    EXPECT_FALSE(picture.isNull()) << name;
    return base::Image::fromPixels(
        picture.width(), picture.height(),
        std::vector<std::uint8_t>(picture.constBits(), picture.constBits() + picture.sizeInBytes()),
        base::AlphaChannel::none);
}

std::string firstLineOf(const std::string& name) {
    const std::string text =
        TemporaryDirectory::contents(LUMAFRAME_TEST_DATA "/ocr/" + name + ".txt");
    return text.substr(0, text.find('\n'));
}

base::Image noise(int width, int height) {
    std::mt19937 random(1);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(width) *
                                    static_cast<std::size_t>(height) * 4);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return base::Image::fromPixels(width, height, std::move(bytes), base::AlphaChannel::none);
}

class HelperRecognition : public HelperFixture {};

TEST_F(HelperRecognition, text_is_read_through_the_confined_helper) {
    auto& recognizer = use(LUMAFRAME_TEXT_HELPER);
    for (const char* name : {"prose01", "dialog01", "prose01"}) {
        const auto texts = textsOf(recognizer.recognize(load(name)));
        ASSERT_FALSE(texts.empty()) << name;
        EXPECT_EQ(texts.front(), firstLineOf(name));
    }
}

TEST_F(HelperRecognition, pictures_without_text_give_no_text_and_keep_the_helper) {
    auto& recognizer = use(LUMAFRAME_TEXT_HELPER);
    recognizer.prepare();
    const int helper = recognizer.helperProcessIdentifier();
    for (const base::Image& picture :
         {blankPicture(1, 1), blankPicture(3, 3), blankPicture(2000, 1), blankPicture(1, 2000),
          blankPicture(640, 480)}) {
        EXPECT_EQ(textsOf(recognizer.recognize(picture)), std::vector<std::string>{})
            << picture.width() << "x" << picture.height();
    }
    EXPECT_EQ(recognizer.helperProcessIdentifier(), helper);
}

TEST_F(HelperRecognition, while_nobody_has_dragged_yet_the_helper_prepares_for_long_pages) {
    use(LUMAFRAME_CONFINED_PROBE).prepare();
    const std::string process = "/proc/" + std::to_string(recognizer_->helperProcessIdentifier());
    EXPECT_TRUE(desktop::waitUntil(
        [&] { return TemporaryDirectory::contents(process + "/comm") == "prepared\n"; }));
    // That it could not, it can do without.
    EXPECT_FALSE(textsOf(recognizer_->recognize(blankPicture())).empty());
}

TEST_F(HelperRecognition, noise_does_not_end_the_helper) {
    auto& recognizer = use(LUMAFRAME_TEXT_HELPER);
    for (const base::Image& picture : {noise(3, 3), noise(40, 40), noise(300, 200)}) {
        const auto result = recognizer.recognize(picture);
        EXPECT_TRUE(result) << result.error().sentence;
    }
}

/// The helper program with a socket of the test's own.
class BareHelper : public testing::Test {
  protected:
    void start(const std::function<void()>& beforeExec = [] {}) {
        int ends[2];
        ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        const OwnedDescriptor theirs(ends[1]);
        socket_ = ends[0];
        channel_.emplace(OwnedDescriptor(ends[0]), Attachment::none);
        process_.emplace(desktop::ProcessOptions{.command = {LUMAFRAME_TEXT_HELPER, "eng"},
                                                 .outputFile = directory_.path("helper"),
                                                 .beforeExec = [beforeExec, socket = ends[1]] {
                                                     // It may not write to files, and sanitizers
                                                     // have something to say about that.
                                                     const int nowhere =
                                                         ::open("/dev/null", O_WRONLY);
                                                     ::dup2(nowhere, STDERR_FILENO);
                                                     ::dup2(socket, helperSocketDescriptor);
                                                     ::fcntl(helperSocketDescriptor, F_SETFD, 0);
                                                     beforeExec();
                                                 }});
    }
    Message receive() {
        auto received = channel_->receive(std::chrono::steady_clock::now() + desktop::defaultLimit);
        if (std::holds_alternative<ChannelFailure>(received)) {
            ADD_FAILURE() << "no message";
            return {};
        }
        return std::move(std::get<Message>(received));
    }

    TemporaryDirectory directory_;
    int socket_ = -1;
    std::optional<MessageChannel> channel_;
    std::optional<desktop::Process> process_;
};

TEST_F(BareHelper, it_ends_when_its_socket_closes) {
    start();
    EXPECT_EQ(receive().header.type, MessageType::ready);
    channel_.reset();
    EXPECT_EQ(process_->waitForExit(), 0);
}

TEST_F(BareHelper, a_picture_that_can_still_be_changed_is_not_read) {
    start();
    EXPECT_EQ(receive().header.type, MessageType::ready);
    const OwnedDescriptor memory(::memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    ASSERT_EQ(::ftruncate(memory.number(), 64 * 32 * 4), 0);
    ASSERT_FALSE(channel_->send(encodePicture(9, {64, 32, 64 * 4}), std::nullopt, memory.number()));
    const Message answer = receive();
    EXPECT_EQ(answer.header.serial, 9U);
    ASSERT_EQ(answer.header.type, MessageType::failure);
    EXPECT_EQ(decodeFailure(answer.payload)->sentence, "The picture is not sealed.");
}

TEST_F(BareHelper, a_message_without_a_picture_ends_it) {
    start();
    EXPECT_EQ(receive().header.type, MessageType::ready);
    ASSERT_FALSE(channel_->send(encodePicture(1, {64, 32, 64 * 4}), std::nullopt));
    const auto status = process_->waitForExit();
    ASSERT_TRUE(status);
    EXPECT_NE(*status, 0);
}

TEST_F(BareHelper, nonsense_ends_it) {
    start();
    EXPECT_EQ(receive().header.type, MessageType::ready);
    ASSERT_GT(::send(socket_, "GET / HTTP/1.1\r\n\r\n", 18, 0), 0);
    const auto status = process_->waitForExit();
    ASSERT_TRUE(status);
    EXPECT_NE(*status, 0);
}

/// Makes the kernel look like one without system call filters, by a filter of its own.
void hideSystemCallFilters() {
    constexpr auto numberOffset = offsetof(seccomp_data, nr);
    constexpr auto argumentOffset = offsetof(seccomp_data, args);
    sock_filter instructions[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, numberOffset),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_seccomp, 3, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_prctl, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argumentOffset),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, PR_SET_SECCOMP, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{sizeof instructions / sizeof *instructions, instructions};
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
}

TEST_F(BareHelper, where_it_cannot_be_confined_it_says_so_and_reads_nothing) {
    start(hideSystemCallFilters);
    const Message answer = receive();
    ASSERT_EQ(answer.header.type, MessageType::failure);
    EXPECT_NE(
        decodeFailure(answer.payload)->sentence.find("the kernel offers no system call filter"),
        std::string::npos);
    const auto status = process_->waitForExit();
    ASSERT_TRUE(status);
    EXPECT_NE(*status, 0);
}

}  // namespace
