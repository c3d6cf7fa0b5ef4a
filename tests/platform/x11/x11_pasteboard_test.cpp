#include <gmock/gmock.h>
#include <xcb/xfixes.h>

#include "pasteboard_fixture.h"

using namespace pasteboard_test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

namespace {

using X11Pasteboard = X11PasteboardTest;

/// How far `later` lies after `earlier` on the server's clock.
std::int32_t elapsed(xcb_timestamp_t earlier, xcb_timestamp_t later) {
    return static_cast<std::int32_t>(later - earlier);
}

TEST_F(X11Pasteboard, owns_the_clipboard_when_the_call_returns_and_encodes_nothing) {
    desk.pasteboard->writeImage(imageOf(encoder));

    EXPECT_NE(program.client().selectionOwner("CLIPBOARD"), XCB_WINDOW_NONE);
    EXPECT_EQ(encoder.callCount, 0);
}

TEST_F(X11Pasteboard, a_picture_is_offered_as_png_first) {
    desk.pasteboard->writeImage(imageOf(encoder));

    const Paste answer = desk.paste(program, "TARGETS");

    EXPECT_EQ(answer.type, static_cast<xcb_atom_t>(XCB_ATOM_ATOM));
    EXPECT_EQ(answer.format, 32);
    EXPECT_THAT(program.names(), ElementsAre("image/png", "image/bmp", "image/jpeg", "SAVE_TARGETS",
                                             "TARGETS", "TIMESTAMP", "MULTIPLE"));
    EXPECT_EQ(encoder.callCount, 0);
}

TEST_F(X11Pasteboard, gives_the_very_bytes_of_the_encoder_made_once) {
    desk.pasteboard->writeImage(imageOf(encoder));

    const Paste first = desk.paste(program, "image/png");
    const Paste second = desk.paste(program, "image/png");

    EXPECT_EQ(first.type, program.client().atom("image/png"));
    EXPECT_EQ(first.format, 8);
    EXPECT_EQ(first.bytes, bytesOf("\x89PNG picture"));
    EXPECT_EQ(second.bytes, first.bytes);
    EXPECT_EQ(encoder.callCount, 1);
}

TEST_F(X11Pasteboard, other_picture_forms_are_made_from_the_png) {
    desk.pasteboard->writeImage(imageOf(encoder));

    const Paste answer = desk.paste(program, "image/bmp");

    EXPECT_EQ(answer.type, program.client().atom("image/bmp"));
    EXPECT_EQ(answer.bytes, bytesOf("image/bmp of \x89PNG picture"));
}

TEST_F(X11Pasteboard, a_picture_that_cannot_be_encoded_is_refused) {
    PreparedEncoder broken{Bytes{}};
    desk.pasteboard->writeImage(imageOf(broken));

    EXPECT_EQ(desk.paste(program, "image/png").state, Paste::State::refused);
    EXPECT_EQ(desk.paste(program, "image/bmp").state, Paste::State::refused);
}

TEST(X11PasteboardConversion, a_form_that_cannot_be_made_is_refused) {
    PasteboardDesktop desk([](auto, auto) { return Bytes{}; });
    PastingProgram program(sharedServer().displayName());
    PreparedEncoder encoder(bytesOf("picture"));
    desk.pasteboard->writeImage(imageOf(encoder));

    EXPECT_EQ(desk.paste(program, "image/jpeg").state, Paste::State::refused);
}

TEST(X11PasteboardConversion, without_a_converter_only_png_is_offered) {
    PasteboardDesktop desk;
    PastingProgram program(sharedServer().displayName());
    PreparedEncoder encoder(bytesOf("picture"));
    desk.pasteboard->writeImage(imageOf(encoder));

    EXPECT_EQ(desk.paste(program, "image/bmp").state, Paste::State::refused);
    desk.paste(program, "TARGETS");
    EXPECT_THAT(program.names(),
                ElementsAre("image/png", "SAVE_TARGETS", "TARGETS", "TIMESTAMP", "MULTIPLE"));
}

TEST_F(X11Pasteboard, a_text_is_offered_in_the_forms_that_programs_take) {
    desk.pasteboard->writeString("Größe: 5 €");

    for (const char* target :
         {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT", "STRING"}) {
        const Paste answer = desk.paste(program, target);
        const bool isLatin1 = std::string(target) == "STRING";
        const bool leavesChoice = std::string(target) == "TEXT";
        EXPECT_EQ(answer.bytes, bytesOf(isLatin1 ? "Gr\xF6\xDF"
                                                   "e: 5 ?"
                                                 : "Größe: 5 €"))
            << target;
        EXPECT_EQ(answer.type, program.client().atom(leavesChoice ? "UTF8_STRING" : target));
        EXPECT_EQ(answer.format, 8);
    }
    desk.paste(program, "TARGETS");
    EXPECT_THAT(program.names(),
                ElementsAre("UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING",
                            "TEXT", "SAVE_TARGETS", "TARGETS", "TIMESTAMP", "MULTIPLE"));
    EXPECT_EQ(desk.paste(program, "image/png").state, Paste::State::refused);
}

TEST_F(X11Pasteboard, an_empty_text_is_a_text) {
    desk.pasteboard->writeString("");

    const Paste answer = desk.paste(program, "UTF8_STRING");

    EXPECT_EQ(answer.state, Paste::State::complete);
    EXPECT_THAT(answer.bytes, IsEmpty());
}

TEST_F(X11Pasteboard, the_timestamp_is_the_time_of_taking_the_clipboard) {
    const auto before = desk.connection->serverTime();
    desk.pasteboard->writeString("text");
    const auto after = desk.connection->serverTime();

    const Paste answer = desk.paste(program, "TIMESTAMP");

    ASSERT_EQ(program.numbers().size(), 1U);
    EXPECT_EQ(answer.type, static_cast<xcb_atom_t>(XCB_ATOM_INTEGER));
    EXPECT_EQ(answer.format, 32);
    EXPECT_GE(elapsed(before, program.numbers()[0]), 0);
    EXPECT_GE(elapsed(program.numbers()[0], after), 0);
}

TEST_F(X11Pasteboard, a_request_from_before_the_ownership_is_refused) {
    desk.pasteboard->writeString("text");
    desk.paste(program, "TIMESTAMP");
    const xcb_timestamp_t since = program.numbers().at(0);
    desk.programs = {&program};

    program.convert("UTF8_STRING", "EARLY", since - 1);
    ASSERT_TRUE(desk.runUntil([&] { return program.paste("EARLY").isDecided(); }));
    EXPECT_EQ(program.paste("EARLY").state, Paste::State::refused);

    program.convert("UTF8_STRING", "EXACT", since);
    ASSERT_TRUE(desk.runUntil([&] { return program.paste("EXACT").isDecided(); }));
    EXPECT_EQ(program.paste("EXACT").state, Paste::State::complete);
}

TEST_F(X11Pasteboard, a_request_without_a_property_is_answered_in_the_one_named_like_the_target) {
    desk.pasteboard->writeString("text");
    program.convertOldStyle("UTF8_STRING");
    desk.programs = {&program};

    ASSERT_TRUE(desk.runUntil([&] { return program.paste("UTF8_STRING").isDecided(); }));
    EXPECT_EQ(program.paste("UTF8_STRING").bytes, bytesOf("text"));
}

TEST_F(X11Pasteboard, several_targets_are_answered_at_once_and_the_failed_ones_struck_out) {
    desk.pasteboard->writeImage(imageOf(encoder));
    program.convertMultiple({{"image/png", "A"},
                             {"UTF8_STRING", "B"},
                             {"TARGETS", "C"},
                             {"MULTIPLE", "D"},
                             {"image/png", ""}});
    desk.programs = {&program};

    ASSERT_TRUE(desk.runUntil([&] { return program.paste("PAIRS").isDecided(); }));
    EXPECT_THAT(program.answeredPairs(), ElementsAre("image/png", "A", "UTF8_STRING", "", "TARGETS",
                                                     "C", "MULTIPLE", "", "image/png", ""));
    EXPECT_EQ(program.paste("A").bytes, bytesOf("\x89PNG picture"));
    EXPECT_THAT(program.names("C"), IsSupersetOf({"image/png", "MULTIPLE"}));
}

TEST_F(X11Pasteboard, a_request_for_several_targets_that_names_none_is_refused) {
    desk.pasteboard->writeString("text");
    program.convert("MULTIPLE", "EMPTY");
    desk.programs = {&program};

    ASSERT_TRUE(desk.runUntil([&] { return program.paste("EMPTY").isDecided(); }));
    EXPECT_EQ(program.paste("EMPTY").state, Paste::State::refused);
}

TEST_F(X11Pasteboard, a_pair_without_a_property_starts_nothing) {
    PreparedEncoder large(randomBytes(2 * 1024 * 1024));
    desk.pasteboard->writeImage(imageOf(large));
    program.convertMultiple({{"image/png", ""}});
    desk.programs = {&program};

    ASSERT_TRUE(desk.runUntil([&] { return program.paste("PAIRS").isDecided(); }));
    EXPECT_EQ(desk.queue.delayedCount(), 0U);
}

TEST_F(X11Pasteboard, saving_is_answered_with_nothing) {
    desk.pasteboard->writeString("text");

    const Paste answer = desk.paste(program, "SAVE_TARGETS");

    EXPECT_EQ(answer.state, Paste::State::complete);
    EXPECT_EQ(answer.type, program.client().atom("NULL"));
    EXPECT_THAT(answer.bytes, IsEmpty());
}

TEST_F(X11Pasteboard, a_request_after_the_loss_is_refused) {
    desk.pasteboard->writeString("text");
    const xcb_window_t owner = program.client().selectionOwner("CLIPBOARD");
    xcb_set_selection_owner(program.client().get(), program.window(),
                            program.client().atom("CLIPBOARD"), XCB_CURRENT_TIME);
    program.sendRequest(owner, "CLIPBOARD", "TARGETS");
    desk.programs = {&program};

    ASSERT_TRUE(desk.runUntil([&] { return program.paste().isDecided(); }));
    EXPECT_EQ(program.paste().state, Paste::State::refused);
}

TEST_F(X11Pasteboard, a_request_to_another_window_of_the_program_is_left_alone) {
    const xcb_window_t window = xcb_generate_id(desk.connection->get());
    xcb_create_window(desk.connection->get(), XCB_COPY_FROM_PARENT, window, desk.connection->root(),
                      0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(desk.connection->get(), window, XCB_ATOM_PRIMARY, XCB_CURRENT_TIME);
    desk.pasteboard->writeString("text");
    program.convert("UTF8_STRING", "OTHER", XCB_CURRENT_TIME, "PRIMARY");

    EXPECT_EQ(desk.paste(program, "UTF8_STRING").state, Paste::State::complete);
    EXPECT_EQ(program.paste("OTHER").state, Paste::State::waiting);
}

TEST_F(X11Pasteboard, a_request_for_another_selection_is_refused) {
    desk.pasteboard->writeString("text");
    program.sendRequest(program.client().selectionOwner("CLIPBOARD"), "PRIMARY", "UTF8_STRING");
    desk.programs = {&program};

    ASSERT_TRUE(desk.runUntil([&] { return program.paste().isDecided(); }));
    EXPECT_EQ(program.paste().state, Paste::State::refused);
}

TEST_F(X11Pasteboard, what_is_written_later_replaces_what_was_there) {
    desk.pasteboard->writeImage(imageOf(encoder));
    desk.paste(program, "TIMESTAMP");
    const xcb_timestamp_t first = program.numbers().at(0);
    ASSERT_TRUE(desktop::waitUntil([&] { return desk.connection->serverTime() != first; }));
    desk.pasteboard->writeString("text");

    EXPECT_EQ(desk.paste(program, "image/png").state, Paste::State::refused);
    EXPECT_EQ(desk.paste(program, "UTF8_STRING").bytes, bytesOf("text"));
    desk.paste(program, "TIMESTAMP");
    EXPECT_GT(elapsed(first, program.numbers().at(0)), 0);
}

TEST_F(X11Pasteboard, cleared_it_is_owned_and_empty) {
    desk.pasteboard->writeString("text");
    desk.pasteboard->clearContents();

    EXPECT_NE(program.client().selectionOwner("CLIPBOARD"), XCB_WINDOW_NONE);
    EXPECT_EQ(desk.paste(program, "UTF8_STRING").state, Paste::State::refused);
    desk.paste(program, "TARGETS");
    EXPECT_THAT(program.names(), ElementsAre("TARGETS", "TIMESTAMP", "MULTIPLE"));
}

TEST_F(X11Pasteboard, a_picture_is_let_go_when_another_program_takes_the_clipboard) {
    auto image = imageOf(encoder);
    const std::weak_ptr<capture::CapturedImage> watched = image;
    desk.pasteboard->writeImage(std::move(image));
    ASSERT_FALSE(watched.expired());

    xcb_set_selection_owner(program.client().get(), program.window(),
                            program.client().atom("CLIPBOARD"), XCB_CURRENT_TIME);
    program.client().synchronize();

    EXPECT_TRUE(desk.runUntil([&] { return watched.expired(); }));
}

TEST_F(X11Pasteboard, the_late_word_of_an_earlier_loss_does_not_end_the_ownership) {
    desk.pasteboard->writeString("first");
    xcb_set_selection_owner(program.client().get(), program.window(),
                            program.client().atom("CLIPBOARD"), XCB_CURRENT_TIME);
    program.client().synchronize();
    // The word of the loss is in the queue and has not been handled.
    desk.pasteboard->writeString("second");

    EXPECT_EQ(desk.paste(program, "UTF8_STRING").bytes, bytesOf("second"));
}

TEST_F(X11Pasteboard, gives_its_picture_back_when_it_ends) {
    auto image = imageOf(encoder);
    const std::weak_ptr<capture::CapturedImage> watched = image;
    desk.pasteboard->writeImage(std::move(image));

    desk.pasteboard.reset();

    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(program.client().selectionOwner("CLIPBOARD"), XCB_WINDOW_NONE);
}

/// Counts how often the clipboard gets an owner, as programs do that keep its history.
class OwnerWatch {
  public:
    OwnerWatch() : client_(sharedServer().displayName()) {
        const desktop::Reply<xcb_xfixes_query_version_reply_t> version(
            xcb_xfixes_query_version_reply(client_.get(),
                                           xcb_xfixes_query_version(client_.get(), 5, 0), nullptr));
        xcb_xfixes_select_selection_input(client_.get(), client_.root(), client_.atom("CLIPBOARD"),
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
        client_.synchronize();
    }
    int changes() {
        client_.synchronize();
        while (client_.pollEvent()) {
            ++changes_;
        }
        return changes_;
    }

  private:
    desktop::XClient client_;
    int changes_ = 0;
};

TEST_F(X11Pasteboard, clearing_and_writing_are_one_change_for_who_watches) {
    OwnerWatch watch;

    desk.pasteboard->clearContents();
    desk.pasteboard->writeImage(imageOf(encoder));

    EXPECT_EQ(watch.changes(), 1);
}

TEST_F(X11Pasteboard, what_is_written_after_somebody_saw_it_empty_is_another_change) {
    OwnerWatch watch;
    desk.pasteboard->clearContents();
    desk.paste(program, "TARGETS");

    desk.pasteboard->writeString("text");

    EXPECT_EQ(watch.changes(), 2);
    EXPECT_EQ(desk.paste(program, "UTF8_STRING").bytes, bytesOf("text"));
}

TEST_F(X11Pasteboard, a_clipboard_lost_between_clearing_and_writing_is_taken_again) {
    desk.pasteboard->clearContents();
    xcb_set_selection_owner(program.client().get(), program.window(),
                            program.client().atom("CLIPBOARD"), XCB_CURRENT_TIME);
    program.client().synchronize();

    desk.pasteboard->writeString("text");

    EXPECT_NE(program.client().selectionOwner("CLIPBOARD"), program.window());
    EXPECT_EQ(desk.paste(program, "UTF8_STRING").bytes, bytesOf("text"));
}

TEST(X11PasteboardServer, a_server_that_is_gone_is_no_reason_to_hold_a_picture_or_to_wait) {
    PrivateServer server;
    PasteboardDesktop desk({}, 4096, server.get());
    PreparedEncoder encoder(bytesOf("picture"));
    server.end();
    ASSERT_TRUE(desk.runUntil([&] { return desk.connection->isLost(); }));

    auto image = imageOf(encoder);
    const std::weak_ptr<capture::CapturedImage> watched = image;
    desk.pasteboard->writeImage(std::move(image));
    bool isDone = false;
    desk.pasteboard->storeForExit([&isDone] { isDone = true; });

    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(isDone);
}

TEST(X11PasteboardServer, a_pasteboard_on_a_lost_connection_is_an_error_with_a_sentence) {
    PrivateServer server;
    PasteboardDesktop desk({}, 4096, server.get());
    server.end();
    ASSERT_TRUE(desk.runUntil([&] { return desk.connection->isLost(); }));

    const auto created = platform::x11::X11Pasteboard::create(*desk.connection, desk.queue, {});

    ASSERT_FALSE(created);
    EXPECT_EQ(created.error().kind, base::ErrorKind::unavailable);
    EXPECT_EQ(created.error().sentence, "The clipboard is not there: the X server has gone.");
}

}  // namespace
