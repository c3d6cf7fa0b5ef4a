#include "platform/video/video_protocol.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <random>

#include "platform/video/frame_memory.h"

namespace {

using namespace platform::video;
using namespace std::chrono_literals;

constexpr FrameRequest request{.slot = 1, .size = {808, 500}};

TEST(VideoProtocol, what_is_sent_is_what_is_received) {
    EXPECT_EQ(encodeRequest(request).size(), requestLength);
    EXPECT_EQ(decodeRequest(encodeRequest(request)), request);
    for (const FrameAnswer& answer :
         {FrameAnswer{.request = request, .time = 1h},
          FrameAnswer{.kind = AnswerKind::noVideo, .request = request},
          FrameAnswer{.kind = AnswerKind::failure, .request = request, .sentence = "No."}}) {
        EXPECT_EQ(encodeAnswer(answer).size(), answerLength);
        EXPECT_EQ(decodeAnswer(encodeAnswer(answer)), answer);
    }
}

TEST(VideoProtocol, a_sentence_is_one_line_and_not_endless) {
    const auto answer = decodeAnswer(encodeAnswer({.kind = AnswerKind::failure,
                                                   .request = request,
                                                   .sentence = "a\nb" + std::string(1000, 'c')}));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->sentence.substr(0, 4), "a bc");
    EXPECT_LT(answer->sentence.size(), answerLength);
}

TEST(VideoProtocol, packets_of_another_length_are_refused) {
    EXPECT_FALSE(decodeRequest(""));
    EXPECT_FALSE(decodeRequest(encodeRequest(request) + "x"));
    EXPECT_FALSE(decodeAnswer(encodeAnswer({.request = request}).substr(1)));
    EXPECT_FALSE(decodeAnswer(encodeRequest(request)));
}

TEST(VideoProtocol, values_that_cannot_be_are_refused) {
    EXPECT_FALSE(decodeRequest(encodeRequest({.slot = 2, .size = {8, 8}})));
    EXPECT_FALSE(decodeRequest(encodeRequest({.slot = -1, .size = {8, 8}})));
    EXPECT_FALSE(decodeRequest(encodeRequest({.slot = 0, .size = {0, 8}})));
    EXPECT_FALSE(decodeRequest(encodeRequest({.slot = 0, .size = {8, -8}})));
    EXPECT_FALSE(decodeRequest(encodeRequest({.slot = 0, .size = {8192, 8192}})));
    EXPECT_FALSE(decodeAnswer(encodeAnswer({.request = request, .time = -1us})));
    EXPECT_FALSE(decodeAnswer(encodeAnswer({.kind = AnswerKind{0}, .request = request})));
    EXPECT_FALSE(decodeAnswer(encodeAnswer({.kind = AnswerKind{4}, .request = request})));
    EXPECT_FALSE(decodeAnswer(encodeAnswer({.kind = AnswerKind::failure, .request = request})));
}

TEST(VideoProtocol, bytes_at_random_are_no_answer_that_is_not_acceptable) {
    std::mt19937 random(1);
    const std::string good =
        encodeAnswer({.kind = AnswerKind::failure, .request = request, .sentence = "No."});
    for (int attempt = 0; attempt < 20000; ++attempt) {
        std::string packet = good;
        packet[random() % 48] = static_cast<char>(random());
        if (const auto answer = decodeAnswer(packet)) {
            EXPECT_TRUE(fitsSlot(answer->request.size));
            EXPECT_GE(answer->time.count(), 0);
            EXPECT_EQ(answer->sentence.find('\n'), std::string::npos);
        }
    }
}

TEST(FrameMemory, pictures_that_one_side_draws_the_other_sees) {
    const auto descriptor = makeFrameMemory();
    ASSERT_TRUE(descriptor);
    const auto writer = FrameMemory::map(descriptor.value().number(), FrameMemory::Access::write);
    const auto reader = FrameMemory::map(descriptor.value().number(), FrameMemory::Access::read);
    ASSERT_TRUE(writer && reader);
    const base::PixelSize size{3, 2};
    writer->slot(1)[rowLength(size)] = 77;
    EXPECT_EQ(imageIn(reader, 1, size).row(1)[0], 77);
    EXPECT_EQ(imageIn(reader, 0, size).row(1)[0], 0);
}

TEST(FrameMemory, cannot_be_pulled_away) {
    const auto descriptor = makeFrameMemory();
    ASSERT_TRUE(descriptor);
    EXPECT_NE(::ftruncate(descriptor.value().number(), 0), 0);
    EXPECT_NE(::ftruncate(descriptor.value().number(), off_t{1} << 40U), 0);
}

TEST(FrameMemory, other_memory_is_refused) {
    const OwnedDescriptor unsealed(::memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    EXPECT_FALSE(FrameMemory::map(unsealed.number(), FrameMemory::Access::read));
    ::fcntl(unsealed.number(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW);
    EXPECT_FALSE(FrameMemory::map(unsealed.number(), FrameMemory::Access::read));
    EXPECT_FALSE(FrameMemory::map(-1, FrameMemory::Access::read));
}

TEST(FrameMemory, has_room_for_a_4k_display_in_any_proportion) {
    EXPECT_TRUE(fitsSlot({3840, 2160}));
    EXPECT_TRUE(fitsSlot({1012, 8192}));
    EXPECT_FALSE(fitsSlot({3840, 2161}));
    EXPECT_FALSE(fitsSlot({8193, 1}));
    EXPECT_FALSE(fitsSlot({0, 1}));
    // The last byte of the last slot.
    const auto descriptor = makeFrameMemory();
    ASSERT_TRUE(descriptor);
    const auto memory = FrameMemory::map(descriptor.value().number(), FrameMemory::Access::write);
    ASSERT_TRUE(memory);
    for (const base::PixelSize size : {base::PixelSize{3840, 2160}, {1012, 8192}, {8192, 1012}}) {
        const auto length = rowLength(size) * static_cast<std::size_t>(size.height);
        memory->slot(0)[length] = 1;
        EXPECT_EQ(memory->slot(1)[0], 0);
        memory->slot(1)[length] = 1;
    }
}

}  // namespace
