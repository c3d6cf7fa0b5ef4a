#include "platform/tesseract/recognition_protocol.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace platform::tesseract;
using capture::TextObservation;

std::string payloadOf(const std::string& message) {
    return message.substr(headerLength);
}

MessageHeader headerOf(const std::string& message) {
    const auto header = decodeHeader(message.substr(0, headerLength));
    EXPECT_TRUE(header);
    return header.value_or(MessageHeader{});
}

std::vector<std::vector<std::string>> candidatesOf(
    const std::optional<std::vector<TextObservation>>& observations) {
    std::vector<std::vector<std::string>> all;
    for (const auto& observation : observations.value_or(std::vector<TextObservation>{})) {
        all.push_back(observation.candidates);
    }
    return all;
}

const std::vector<TextObservation> threeLines{
    {{"Hello", "Hallo"}}, {{}}, {{"W\u00f6rld \U0001f30d", ""}}};

TEST(RecognitionProtocol, observations_come_through_as_they_are) {
    const std::string message = encodeObservations(7, threeLines);
    EXPECT_EQ(headerOf(message).type, MessageType::observations);
    EXPECT_EQ(headerOf(message).serial, 7U);
    EXPECT_EQ(headerOf(message).payloadLength, payloadOf(message).size());
    EXPECT_EQ(candidatesOf(decodeObservations(payloadOf(message))),
              (std::vector<std::vector<std::string>>{
                  {"Hello", "Hallo"}, {}, {"W\u00f6rld \U0001f30d", ""}}));
}

TEST(RecognitionProtocol, a_picture_without_text_gives_an_empty_list) {
    const auto observations = decodeObservations(payloadOf(encodeObservations(1, {})));
    ASSERT_TRUE(observations);
    EXPECT_TRUE(observations->empty());
}

TEST(RecognitionProtocol, a_message_cut_anywhere_or_longer_than_it_says_is_refused) {
    const std::string payload = payloadOf(encodeObservations(7, threeLines));
    for (std::size_t length = 0; length < payload.size(); ++length) {
        EXPECT_FALSE(decodeObservations(payload.substr(0, length))) << length;
    }
    EXPECT_FALSE(decodeObservations(payload + "x"));
}

TEST(RecognitionProtocol, changed_bytes_never_read_beyond_the_message) {
    std::mt19937 random(1);
    const std::string payload = payloadOf(encodeObservations(7, threeLines));
    for (int round = 0; round < 20000; ++round) {
        std::string changed = payload;
        for (int change = 0; change < 3; ++change) {
            changed[random() % changed.size()] = static_cast<char>(random());
        }
        const auto observations = decodeObservations(changed);
        EXPECT_LE(candidatesOf(observations).size(), payload.size());
        decodePicture(changed);
        decodeFailure(changed);
        decodeHeader(changed.substr(0, headerLength));
    }
}

TEST(RecognitionProtocol, broken_text_is_left_out_by_the_sender_and_refused_by_the_receiver) {
    const std::string message =
        encodeObservations(1, {{{"\xff\xfe", "a\tb\nc\x7f", "\xc0\x80", "\xed\xa0\x80"}}});
    EXPECT_EQ(candidatesOf(decodeObservations(payloadOf(message))),
              (std::vector<std::vector<std::string>>{{"a b c "}}));
    std::string payload = payloadOf(encodeObservations(1, {{{"text"}}}));
    for (const char* broken : {"te\xff!", "te\nx", "te\033x", "te\xc2\x85"}) {
        payload.replace(payload.size() - 4, 4, broken);
        EXPECT_FALSE(decodeObservations(payload)) << broken;
    }
}

TEST(RecognitionProtocol, too_much_text_becomes_a_failure) {
    const std::vector<TextObservation> many(17, TextObservation{{std::string(1U << 20U, 'x')}});
    EXPECT_EQ(headerOf(encodeObservations(3, many)).type, MessageType::failure);
    EXPECT_EQ(headerOf(encodeObservations(3, std::vector<TextObservation>(300000))).type,
              MessageType::failure);
    const std::vector<TextObservation> page(4000, TextObservation{{std::string(100, 'x')}});
    EXPECT_EQ(headerOf(encodeObservations(3, page)).type, MessageType::observations);
}

TEST(RecognitionProtocol, a_failure_carries_kind_and_sentence) {
    const base::Error error{base::ErrorKind::notPermitted, "It may not."};
    EXPECT_EQ(decodeFailure(payloadOf(encodeFailure(2, error))), error);
}

TEST(RecognitionProtocol, a_failure_always_says_something) {
    for (const std::string& sentence :
         {std::string(), std::string("\xff"), std::string(5000, 'x')}) {
        const auto error =
            decodeFailure(payloadOf(encodeFailure(2, {base::ErrorKind::failed, sentence})));
        ASSERT_TRUE(error);
        EXPECT_FALSE(error->sentence.empty());
    }
}

TEST(RecognitionProtocol, a_picture_carries_its_shape) {
    const PictureShape shape{640, 480, 640 * 4, base::AlphaChannel::premultiplied};
    EXPECT_EQ(decodePicture(payloadOf(encodePicture(1, shape))), shape);
}

TEST(RecognitionProtocol, impossible_pictures_are_refused) {
    const auto decoded = [](std::uint32_t width, std::uint32_t height, std::uint32_t bytesPerRow) {
        return decodePicture(payloadOf(encodePicture(1, {width, height, bytesPerRow}))).has_value();
    };
    EXPECT_TRUE(decoded(8192, 8192, 8192 * 4));
    EXPECT_FALSE(decoded(0, 10, 40));
    EXPECT_FALSE(decoded(10, 0, 40));
    EXPECT_FALSE(decoded(10, 10, 39));
    EXPECT_FALSE(decoded(8192, 8193, 8192 * 4));
    EXPECT_FALSE(decoded(1U << 31U, 1U << 31U, ~0U));
    EXPECT_FALSE(decoded(0x40000001, 1, 4));
    EXPECT_FALSE(decoded(1, 1U << 26U, ~0U));
}

TEST(RecognitionProtocol, what_is_no_header_is_refused) {
    const std::string header = encodeReady();
    EXPECT_TRUE(decodeHeader(header));
    EXPECT_FALSE(decodeHeader(header.substr(1)));
    EXPECT_FALSE(decodeHeader(header + "x"));
    EXPECT_FALSE(decodeHeader(std::string(headerLength, '\0')));
    for (const std::uint32_t type : {0U, 5U, ~0U}) {
        std::string changed = header;
        std::memcpy(changed.data() + 4, &type, sizeof type);
        EXPECT_FALSE(decodeHeader(changed)) << type;
    }
    const std::uint32_t tooLong = maximumPayloadLength + 1;
    std::string changed = header;
    std::memcpy(changed.data() + 12, &tooLong, sizeof tooLong);
    EXPECT_FALSE(decodeHeader(changed));
}

}  // namespace
