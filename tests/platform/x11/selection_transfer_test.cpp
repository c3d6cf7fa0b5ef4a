#include "pasteboard_fixture.h"

using namespace pasteboard_test;
using platform::x11::SelectionTransfers;

namespace {

constexpr std::size_t mebibyte = 1024 * 1024;

class SelectionTransfer : public testing::Test {
  protected:
    /// Offers a picture of `size` bytes and keeps only a weak hold of it.
    void offer(std::size_t size) {
        encoder = std::make_unique<PreparedEncoder>(randomBytes(size));
        auto image = imageOf(*encoder);
        watched = image;
        desk.pasteboard->writeImage(std::move(image));
    }
    void letAnotherTakeTheClipboard() {
        xcb_set_selection_owner(other.client().get(), other.window(),
                                other.client().atom("CLIPBOARD"), XCB_CURRENT_TIME);
        other.client().synchronize();
    }

    /// What the pasteboard still listens to on another program's window.
    std::uint32_t selectedEvents(xcb_window_t window) {
        const desktop::Reply<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(
                desk.connection->get(), xcb_get_window_attributes(desk.connection->get(), window),
                nullptr));
        return reply ? reply->your_event_mask : 0;
    }

    PasteboardDesktop desk{{}, 4096};
    std::unique_ptr<PreparedEncoder> encoder;
    std::weak_ptr<capture::CapturedImage> watched;
    PastingProgram program{sharedServer().displayName()};
    PastingProgram other{sharedServer().displayName()};
};

TEST_F(SelectionTransfer, a_value_as_large_as_one_piece_comes_at_once) {
    offer(4096);

    const Paste answer = desk.paste(program, "image/png");

    EXPECT_EQ(answer.pieceCount, 0U);
    EXPECT_TRUE(answer.bytes == randomBytes(4096));
}

TEST_F(SelectionTransfer, a_larger_value_comes_in_pieces_byte_for_byte) {
    for (const std::size_t size : {std::size_t{4097}, std::size_t{8192}, std::size_t{100001}}) {
        offer(size);

        const Paste answer = desk.paste(program, "image/png");

        EXPECT_EQ(answer.type, program.client().atom("image/png"));
        EXPECT_EQ(answer.announcedSize, size);
        EXPECT_EQ(answer.pieceCount, (size + 4095) / 4096);
        EXPECT_TRUE(answer.bytes == randomBytes(size));
    }
}

TEST(SelectionTransferSizes, more_than_the_server_takes_in_one_request_arrives_whole) {
    PasteboardDesktop desk;
    PastingProgram program(sharedServer().displayName());
    PreparedEncoder encoder(randomBytes(18 * mebibyte + 5));
    desk.pasteboard->writeImage(imageOf(encoder));

    const Paste answer = desk.paste(program, "image/png");

    EXPECT_EQ(answer.pieceCount, 19U);
    EXPECT_TRUE(answer.bytes == randomBytes(18 * mebibyte + 5));
}

TEST(SelectionTransferSizes, a_piece_is_never_larger_than_a_request_may_be) {
    PasteboardDesktop desk({}, 1024 * mebibyte);
    PastingProgram program(sharedServer().displayName());
    const std::size_t size = 18 * mebibyte;
    ASSERT_GT(size, xcb_get_maximum_request_length(program.client().get()) * std::size_t{4});
    PreparedEncoder encoder(randomBytes(size));
    desk.pasteboard->writeImage(imageOf(encoder));

    const Paste answer = desk.paste(program, "image/png");

    EXPECT_EQ(answer.pieceCount, 2U);
    EXPECT_TRUE(answer.bytes == randomBytes(size));
    EXPECT_FALSE(desk.connection->isLost());
}

TEST_F(SelectionTransfer, several_run_at_once_also_into_one_window) {
    offer(50000);
    desk.programs = {&program, &other};

    program.convert("image/png", "FIRST");
    program.convert("image/png", "SECOND");
    other.convert("image/png", "FIRST");

    ASSERT_TRUE(desk.runUntil([&] {
        return program.paste("FIRST").isDecided() && program.paste("SECOND").isDecided() &&
               other.paste("FIRST").isDecided();
    }));
    EXPECT_TRUE(program.paste("FIRST").bytes == randomBytes(50000));
    EXPECT_TRUE(program.paste("SECOND").bytes == randomBytes(50000));
    EXPECT_TRUE(other.paste("FIRST").bytes == randomBytes(50000));
    EXPECT_EQ(selectedEvents(program.window()), 0U);
    EXPECT_EQ(selectedEvents(other.window()), 0U);
}

TEST_F(SelectionTransfer, the_end_of_one_leaves_another_into_the_same_window_going) {
    offer(100000);
    desk.programs = {&program};
    program.convert("image/png", "LONG");
    ASSERT_TRUE(desk.runUntil([&] { return program.paste("LONG").pieceCount > 0; }));
    desk.pasteboard->writeString(std::string(5000, 'x'));
    program.convert("UTF8_STRING", "SHORT");

    ASSERT_TRUE(desk.runUntil([&] { return program.paste("SHORT").isDecided(); }));
    EXPECT_FALSE(program.paste("LONG").isDecided());
    ASSERT_TRUE(desk.runUntil([&] { return program.paste("LONG").isDecided(); }));
    EXPECT_TRUE(program.paste("LONG").bytes == randomBytes(100000));
}

TEST_F(SelectionTransfer, large_and_small_targets_of_one_request_all_arrive) {
    offer(50000);
    desk.programs = {&program};

    program.convertMultiple({{"image/png", "LARGE"}, {"TARGETS", "SMALL"}, {"image/png", "MORE"}});

    ASSERT_TRUE(desk.runUntil(
        [&] { return program.paste("LARGE").isDecided() && program.paste("MORE").isDecided(); }));
    EXPECT_TRUE(program.paste("LARGE").bytes == randomBytes(50000));
    EXPECT_TRUE(program.paste("MORE").bytes == randomBytes(50000));
    EXPECT_EQ(program.names("SMALL").front(), "image/png");
}

TEST_F(SelectionTransfer, goes_on_when_the_clipboard_is_lost_and_then_lets_the_picture_go) {
    offer(50000);
    desk.programs = {&program};
    program.convert("image/png");
    ASSERT_TRUE(desk.runUntil([&] { return program.paste().pieceCount > 0; }));

    letAnotherTakeTheClipboard();

    ASSERT_TRUE(desk.runUntil([&] { return program.paste().isDecided(); }));
    EXPECT_TRUE(program.paste().bytes == randomBytes(50000));
    EXPECT_TRUE(desk.runUntil([&] { return watched.expired(); }));
}

TEST_F(SelectionTransfer, a_requestor_that_vanishes_ends_it) {
    offer(50000);
    desk.programs = {&program};
    program.convert("image/png");
    ASSERT_TRUE(desk.runUntil([&] { return program.paste().pieceCount > 0; }));

    letAnotherTakeTheClipboard();
    desk.programs = {};
    program.destroyWindow();

    EXPECT_TRUE(desk.runUntil([&] { return watched.expired(); }));
    EXPECT_FALSE(desk.connection->isLost());
}

TEST_F(SelectionTransfer, a_requestor_that_stalls_is_given_up_in_time) {
    offer(50000);
    program.setAppetite(PastingProgram::Appetite::leavesPieces);
    desk.programs = {&program};
    program.convert("image/png");
    ASSERT_TRUE(desk.runUntil([&] { return program.paste().state == Paste::State::incremental; }));
    letAnotherTakeTheClipboard();
    ASSERT_TRUE(desk.runUntil([&] { return watched.use_count() == 1; }));
    EXPECT_FALSE(watched.expired());

    desk.queue.advance(SelectionTransfers::patience);
    EXPECT_FALSE(watched.expired());
    desk.queue.advance(2 * SelectionTransfers::lookInterval);

    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(desk.queue.delayedCount(), 0U);
}

TEST_F(SelectionTransfer, one_that_moves_is_not_given_up) {
    offer(50000);
    desk.programs = {&program};
    program.convert("image/png");
    ASSERT_TRUE(desk.runUntil([&] { return program.paste().pieceCount > 0; }));

    desk.queue.advance(SelectionTransfers::patience);

    ASSERT_TRUE(desk.runUntil([&] { return program.paste().isDecided(); }));
    EXPECT_TRUE(program.paste().bytes == randomBytes(50000));
}

TEST_F(SelectionTransfer, no_timer_runs_for_what_comes_at_once) {
    offer(4096);

    desk.paste(program, "image/png");

    EXPECT_EQ(desk.queue.delayedCount(), 0U);
}

TEST_F(SelectionTransfer, one_timer_serves_all_and_ends_soon_after_the_last) {
    offer(50000);
    for (int paste = 0; paste < 3; ++paste) {
        desk.paste(program, "image/png");
    }
    EXPECT_EQ(desk.queue.delayedCount(), 1U);

    desk.queue.advance(SelectionTransfers::lookInterval);

    EXPECT_EQ(desk.queue.delayedCount(), 0U);
}

TEST_F(SelectionTransfer, one_that_moves_and_then_stalls_is_given_up) {
    offer(50000);
    desk.programs = {&program};
    program.convert("image/png");
    ASSERT_TRUE(desk.runUntil([&] { return program.paste().pieceCount > 0; }));
    program.setAppetite(PastingProgram::Appetite::leavesPieces);
    letAnotherTakeTheClipboard();
    ASSERT_TRUE(desk.runUntil([&] { return watched.use_count() == 1; }));

    desk.queue.advance(SelectionTransfers::patience);
    EXPECT_FALSE(watched.expired());
    desk.queue.advance(3 * SelectionTransfers::lookInterval);

    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(selectedEvents(program.window()), 0U);
}

TEST_F(SelectionTransfer, the_same_property_asked_for_again_gets_what_is_offered_then) {
    offer(50000);
    desk.programs = {&program};
    program.setAppetite(PastingProgram::Appetite::leavesPieces);
    program.convert("image/png");
    ASSERT_TRUE(desk.runUntil([&] { return program.paste().state == Paste::State::incremental; }));
    const auto first = watched;
    const auto firstEncoder = std::move(encoder);
    offer(60000);
    program.setAppetite(PastingProgram::Appetite::takesPieces);

    const Paste answer = desk.paste(program, "image/png");

    EXPECT_TRUE(answer.bytes == randomBytes(60000));
    EXPECT_TRUE(first.expired());
}

TEST_F(SelectionTransfer, more_requestors_than_it_can_serve_are_refused) {
    offer(50000);
    program.setAppetite(PastingProgram::Appetite::leavesPieces);
    desk.programs = {&program, &other};
    for (std::size_t index = 0; index < SelectionTransfers::largestCount; ++index) {
        program.convert("image/png", "P" + std::to_string(index));
    }
    const std::string last = "P" + std::to_string(SelectionTransfers::largestCount - 1);
    ASSERT_TRUE(
        desk.runUntil([&] { return program.paste(last).state == Paste::State::incremental; }));

    other.convert("image/png");

    ASSERT_TRUE(desk.runUntil([&] { return other.paste().isDecided(); }));
    EXPECT_EQ(other.paste().state, Paste::State::refused);
}

TEST_F(SelectionTransfer, a_requestor_that_was_gone_before_the_answer_holds_nothing) {
    offer(50000);
    program.convert("image/png");
    program.destroyWindow();
    letAnotherTakeTheClipboard();

    EXPECT_TRUE(desk.runUntil([&] { return watched.expired(); }));
    EXPECT_EQ(desk.queue.delayedCount(), 0U);
}

}  // namespace
