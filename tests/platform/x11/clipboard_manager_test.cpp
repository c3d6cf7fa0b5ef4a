#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <optional>

#include "pasteboard_fixture.h"

using namespace pasteboard_test;
using platform::x11::ClipboardManager;
using testing::ElementsAre;

namespace {

/// A small clipboard manager: asked to save, it fetches the named targets, takes the clipboard over
/// and answers.
class SavingManager {
  public:
    enum class Temper { saves, refuses, isSilent };

    SavingManager(const std::string& displayName, Temper temper)
        : reader_(displayName), temper_(temper) {
        xcb_set_selection_owner(client().get(), reader_.window(), atom("CLIPBOARD_MANAGER"),
                                XCB_CURRENT_TIME);
        client().synchronize();
    }

    void step() {
        while (const auto event = client().pollEvent()) {
            if ((event->response_type & 0x7F) == XCB_SELECTION_REQUEST) {
                handle(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
            } else if ((event->response_type & 0x7F) == XCB_SELECTION_NOTIFY) {
                finish();
            }
        }
    }

    int requestCount = 0;
    std::vector<std::string> wantedTargets;
    Bytes saved;

  private:
    desktop::XClient& client() { return reader_.client(); }
    xcb_atom_t atom(const std::string& name) { return client().atom(name); }

    void handle(const xcb_selection_request_event_t& request) {
        ++requestCount;
        request_ = request;
        EXPECT_EQ(request.target, atom("SAVE_TARGETS"));
        const desktop::Reply<xcb_get_property_reply_t> list(
            xcb_get_property_reply(client().get(),
                                   xcb_get_property(client().get(), 0, request.requestor,
                                                    request.property, XCB_ATOM_ATOM, 0, 100),
                                   nullptr));
        ASSERT_TRUE(list);
        const auto* targets = static_cast<const xcb_atom_t*>(xcb_get_property_value(list.get()));
        for (std::size_t index = 0; index < list->value_len; ++index) {
            const desktop::Reply<xcb_get_atom_name_reply_t> name(xcb_get_atom_name_reply(
                client().get(), xcb_get_atom_name(client().get(), targets[index]), nullptr));
            wantedTargets.emplace_back(
                xcb_get_atom_name_name(name.get()),
                static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())));
        }
        switch (temper_) {
            case Temper::saves:
                xcb_convert_selection(client().get(), reader_.window(), atom("CLIPBOARD"),
                                      targets[0], atom("FETCHED"), XCB_CURRENT_TIME);
                client().synchronize();
                break;
            case Temper::refuses:
                answer(XCB_ATOM_NONE);
                break;
            case Temper::isSilent:
                break;
        }
    }
    void finish() {
        saved = *client().property(reader_.window(), "FETCHED");
        xcb_set_selection_owner(client().get(), reader_.window(), atom("CLIPBOARD"),
                                XCB_CURRENT_TIME);
        xcb_change_property(client().get(), XCB_PROP_MODE_REPLACE, request_.requestor,
                            request_.property, atom("NULL"), 32, 0, nullptr);
        answer(request_.property);
    }
    void answer(xcb_atom_t property) {
        union {
            xcb_selection_notify_event_t event;
            char bytes[32];
        } message{};
        message.event.response_type = XCB_SELECTION_NOTIFY;
        message.event.time = request_.time;
        message.event.requestor = request_.requestor;
        message.event.selection = request_.selection;
        message.event.target = request_.target;
        message.event.property = property;
        xcb_send_event(client().get(), 0, request_.requestor, XCB_EVENT_MASK_NO_EVENT,
                       message.bytes);
        client().synchronize();
    }

    PastingProgram reader_;
    Temper temper_;
    xcb_selection_request_event_t request_{};
};

class StoreForExit : public X11PasteboardTest {
  protected:
    void runManager(SavingManager::Temper temper) {
        manager.emplace(sharedServer().displayName(), temper);
        desk.alsoRun = [this] { manager->step(); };
    }
    std::function<void()> done() {
        return [this] { ++doneCount; };
    }

    std::optional<SavingManager> manager;
    int doneCount = 0;
};

TEST_F(StoreForExit, without_a_manager_it_is_done_at_once) {
    desk.pasteboard->writeImage(imageOf(encoder));

    desk.pasteboard->storeForExit(done());

    EXPECT_EQ(doneCount, 1);
    EXPECT_EQ(encoder.callCount, 0);
    EXPECT_EQ(desk.queue.delayedCount(), 0U);
}

TEST_F(StoreForExit, with_nothing_to_keep_it_is_done_at_once_and_nobody_is_asked) {
    runManager(SavingManager::Temper::saves);

    desk.pasteboard->storeForExit(done());
    desk.pasteboard->clearContents();
    desk.pasteboard->storeForExit(done());

    EXPECT_EQ(doneCount, 2);
    desk.pasteboard->writeString("text");
    desk.paste(program, "UTF8_STRING");
    EXPECT_EQ(manager->requestCount, 0);
}

TEST_F(StoreForExit, the_manager_fetches_the_png_and_it_is_done_when_the_manager_says_so) {
    runManager(SavingManager::Temper::saves);
    desk.pasteboard->writeImage(imageOf(encoder));

    desk.pasteboard->storeForExit(done());

    EXPECT_EQ(doneCount, 0);
    ASSERT_TRUE(desk.runUntil([&] { return doneCount > 0; }));
    EXPECT_THAT(manager->wantedTargets, ElementsAre("image/png"));
    EXPECT_EQ(manager->saved, bytesOf("\x89PNG picture"));
    desk.queue.advance(ClipboardManager::patience);
    EXPECT_EQ(doneCount, 1);
}

TEST_F(StoreForExit, a_text_is_kept_in_all_its_forms) {
    runManager(SavingManager::Temper::saves);
    desk.pasteboard->writeString("text");

    desk.pasteboard->storeForExit(done());

    ASSERT_TRUE(desk.runUntil([&] { return doneCount > 0; }));
    EXPECT_THAT(manager->wantedTargets, ElementsAre("UTF8_STRING", "text/plain;charset=utf-8",
                                                    "text/plain", "STRING", "TEXT"));
    EXPECT_EQ(manager->saved, bytesOf("text"));
}

TEST_F(StoreForExit, a_manager_that_refuses_ends_the_wait) {
    runManager(SavingManager::Temper::refuses);
    desk.pasteboard->writeString("text");

    desk.pasteboard->storeForExit(done());

    EXPECT_TRUE(desk.runUntil([&] { return doneCount == 1; }));
}

TEST_F(StoreForExit, a_silent_manager_is_waited_for_a_second) {
    runManager(SavingManager::Temper::isSilent);
    desk.pasteboard->writeString("text");

    desk.pasteboard->storeForExit(done());
    ASSERT_TRUE(desk.runUntil([&] { return manager->requestCount == 1; }));

    desk.queue.advance(std::chrono::milliseconds(999));
    EXPECT_EQ(doneCount, 0);
    desk.queue.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(doneCount, 1);
}

TEST_F(StoreForExit, an_answer_about_something_else_does_not_end_the_wait) {
    runManager(SavingManager::Temper::isSilent);
    desk.pasteboard->writeString("text");
    desk.pasteboard->storeForExit(done());
    xcb_selection_notify_event_t event{};
    event.response_type = XCB_SELECTION_NOTIFY;
    event.requestor = program.client().selectionOwner("CLIPBOARD");
    event.selection = XCB_ATOM_PRIMARY;
    event.target = program.client().atom("SAVE_TARGETS");
    std::array<char, 32> message{};
    std::memcpy(message.data(), &event, sizeof event);
    xcb_send_event(program.client().get(), 0, event.requestor, XCB_EVENT_MASK_NO_EVENT,
                   message.data());
    program.client().synchronize();

    EXPECT_EQ(desk.paste(program, "UTF8_STRING").bytes, bytesOf("text"));
    EXPECT_EQ(doneCount, 0);
}

TEST_F(StoreForExit, asked_twice_it_asks_the_manager_once_and_ends_both) {
    runManager(SavingManager::Temper::saves);
    desk.pasteboard->writeString("text");

    desk.pasteboard->storeForExit(done());
    desk.pasteboard->storeForExit(done());

    ASSERT_TRUE(desk.runUntil([&] { return doneCount > 0; }));
    EXPECT_EQ(doneCount, 2);
    EXPECT_EQ(manager->requestCount, 1);
}

TEST_F(StoreForExit, a_time_limit_of_an_earlier_wait_does_not_end_the_next) {
    runManager(SavingManager::Temper::refuses);
    desk.pasteboard->writeString("text");
    desk.pasteboard->storeForExit(done());
    ASSERT_TRUE(desk.runUntil([&] { return doneCount == 1; }));
    desk.queue.advance(std::chrono::milliseconds(500));
    runManager(SavingManager::Temper::isSilent);

    desk.pasteboard->storeForExit(done());
    desk.queue.advance(std::chrono::milliseconds(600));

    EXPECT_EQ(doneCount, 1);
    desk.queue.advance(std::chrono::milliseconds(400));
    EXPECT_EQ(doneCount, 2);
}

TEST_F(StoreForExit, nothing_is_called_after_the_pasteboard_has_ended) {
    runManager(SavingManager::Temper::isSilent);
    desk.pasteboard->writeString("text");
    desk.pasteboard->storeForExit(done());

    desk.pasteboard.reset();
    desk.queue.advance(ClipboardManager::patience);

    EXPECT_EQ(doneCount, 0);
}

}  // namespace
