// The system refuses what a picture needs: memory of every kind, and room on the disk.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <functional>
#include <limits>
#include <new>
#include <stdexcept>

#include "desktop/poor_server.h"
#include "journeys/refused_calls.h"
#include "journeys/session.h"

namespace journeys {
namespace {

using testing::EndsWith;
using testing::IsEmpty;

/// The orders that the program under test obeys.
class Refusals {
  public:
    explicit Refusals(const std::filesystem::path& directory) : file_(directory / "refusals") {
        const int file = ::open(file_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        const bool isLong = ::ftruncate(file, sizeof(RefusalOrders)) == 0;
        void* const memory =
            ::mmap(nullptr, sizeof(RefusalOrders), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        ::close(file);
        if (!isLong || memory == MAP_FAILED) {
            throw std::runtime_error("No memory for the orders.");
        }
        orders_ = new (memory) RefusalOrders{};
    }
    ~Refusals() { ::munmap(orders_, sizeof(RefusalOrders)); }
    Refusals(const Refusals&) = delete;
    Refusals& operator=(const Refusals&) = delete;

    [[nodiscard]] desktop::Environment environment() const {
        return {{"LD_PRELOAD", LUMAFRAME_TEST_REFUSED_CALLS}, {refusalsVariable, file_}};
    }
    void begin(std::uint32_t calls, std::uint64_t smallest, int granted, int refused) {
        orders_->calls = 0;
        orders_->smallest = smallest;
        orders_->granted = granted;
        orders_->refused = refused;
        orders_->refusals = 0;
        orders_->calls = calls;
    }
    /// Refuses nothing from here on; gives what was refused.
    int end() {
        orders_->calls = 0;
        return orders_->refusals;
    }

  private:
    std::filesystem::path file_;
    RefusalOrders* orders_ = nullptr;
};

class Refusal : public testing::Test {
  protected:
    explicit Refusal(const desktop::DesktopOptions& options = {}) : session(options) {
        // The library for sounds shares memory of its own.
        session.writeSettings({{"playSounds", false}});
        session.start(SettingsWindow::closed, refusals.environment());
    }
    /// Takes a picture, or not; gives the place in the log before it.
    std::size_t drag() {
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().drag({area.x, area.y}, {area.x + area.width, area.y + area.height});
        session.waitUntilClosed();
        return before;
    }
    void expectPicture() {
        const Picture expected = session.screen(area);
        const std::filesystem::path saved = session.waitForLine(line::saved, drag());
        EXPECT_EQ(desktop::difference(expected, session.clipboardPicture().picture), "equal");
        EXPECT_EQ(
            desktop::difference(expected, desktop::decodePng(desktop::readFile(saved)).picture),
            "equal");
    }
    /// Takes what the window shows, with a shadow around it; gives the place in the log before.
    std::size_t click(const desktop::TestWindow& window) {
        const desktop::Place at{window.place().x + 20, window.place().y + 20};
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().tap(desktop::key::space);
        session.waitForLine(line::toggled, before);
        session.input().moveTo({at.x - 1, at.y});
        session.input().click(at);
        session.waitUntilClosed();
        return before;
    }
    /// The one line with which a capture ended.
    std::string outcome(std::size_t before) {
        std::vector<std::string> found;
        session.require("The end of the capture", [&] {
            found.clear();
            for (const std::string& text : session.linesSince(before)) {
                for (const char* prefix :
                     {line::saved, line::notSaved, notEncoded, notCaptured, windowNotCaptured}) {
                    if (text.starts_with(prefix)) {
                        found.push_back(text);
                    }
                }
            }
            return !found.empty();
        });
        EXPECT_EQ(found.size(), 1U) << testing::PrintToString(found);
        return found.front();
    }
    void expectToLiveOn() {
        ASSERT_TRUE(session.program().isRunning());
        expectPicture();
        EXPECT_THAT(session.program().errorLines(), IsEmpty());
    }

    static constexpr const char* notEncoded = "Failed to convert image to PNG";
    static constexpr const char* notCaptured = "Error capturing screenshot: ";
    static constexpr const char* windowNotCaptured = "Error capturing window: ";
    static constexpr const char* noMemory = "Optional(There is not enough memory for the picture.)";
    static constexpr std::uint64_t pictureSize = 1 << 20;
    static constexpr int forGood = std::numeric_limits<int>::max();

    Session session;
    Refusals refusals{session.desktop().directory()};
    /// Four MB of pixels, which hardly become fewer in a PNG.
    const Area area{2, 3, 1270, 790};
};

TEST_F(Refusal, of_room_on_the_disk_by_a_quota_is_one_line) {
    const Picture expected = session.screen(area);
    refusals.begin(RefusalOrders::writeBeyondQuota, 0, 0, forGood);
    EXPECT_THAT(outcome(drag()), EndsWith("couldn’t be saved because there is no space left."));
    EXPECT_EQ(desktop::difference(expected, session.clipboardPicture().picture), "equal");
    EXPECT_GT(refusals.end(), 0);
    expectToLiveOn();
}

/// How often something is refused.
struct Shortage {
    const char* name;
    desktop::Compositor compositor;
    int refused;
};

class Memory : public Refusal, public testing::WithParamInterface<Shortage> {
  protected:
    Memory() : Refusal({.compositor = GetParam().compositor}) {}

    /// Refuses the first, the second, ... request of a capture and of the pastes after it, until
    /// there is none left.
    void expectOneLineAtEachMoment(const std::function<std::size_t()>& capture) {
        constexpr int mostMoments = 60;
        int refused = 1;
        int moment = 0;
        for (; refused > 0; ++moment) {
            ASSERT_LT(moment, mostMoments);
            refusals.begin(RefusalOrders::allocation, pictureSize, moment, GetParam().refused);
            const std::string end = outcome(capture());
            // Other programs paste it as it is, and in a form that is made for it.
            for (const char* target : {"image/png", "image/bmp", "image/jpeg"}) {
                static_cast<void>(session.clipboard().read(target));
            }
            refused = refusals.end();
            ASSERT_TRUE(session.program().isRunning()) << "at moment " << moment << ": " << end;
            EXPECT_TRUE(end == notEncoded || end.starts_with(line::saved)) << end;
        }
        // The file and each of the other forms.
        EXPECT_GT(moment, 3);
        expectToLiveOn();
    }
};

INSTANTIATE_TEST_SUITE_P(Refused, Memory,
                         testing::Values(Shortage{"once", desktop::Compositor::none, 1},
                                         Shortage{"from_then_on", desktop::Compositor::picom,
                                                  std::numeric_limits<int>::max()}),
                         [](const auto& parameter) { return parameter.param.name; });

TEST_P(Memory, refused_at_any_moment_costs_one_picture_and_one_line) {
    expectPicture();
    expectOneLineAtEachMoment([this] { return drag(); });
}

TEST_P(Memory, refused_at_any_moment_of_a_window_costs_one_picture_and_one_line) {
    const desktop::TestWindow window(session.desktop().displayName(),
                                     {.x = 20, .y = 30, .width = 1200, .height = 700});
    session.waitUntilStill();
    outcome(click(window));
    expectOneLineAtEachMoment([&] { return click(window); });
}
/// How many of the steps to memory that the X server shares are taken before one fails.
class SharedMemory : public Refusal, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Steps, SharedMemory, testing::Values(0, 1, 2));

TEST_P(SharedMemory, refused_costs_one_picture_and_one_line) {
    refusals.begin(RefusalOrders::sharedMemory, pictureSize, GetParam(), forGood);
    EXPECT_EQ(outcome(drag()), std::string(notCaptured) + noMemory);
    EXPECT_GT(refusals.end(), 0);
    expectToLiveOn();
}

TEST_P(SharedMemory, refused_for_a_window_costs_one_picture_and_one_line) {
    const desktop::TestWindow window(session.desktop().displayName(),
                                     {.x = 20, .y = 30, .width = 1200, .height = 700});
    session.waitUntilStill();
    refusals.begin(RefusalOrders::sharedMemory, pictureSize, GetParam(), forGood);
    EXPECT_EQ(outcome(click(window)), std::string(windowNotCaptured) + noMemory);
    EXPECT_GT(refusals.end(), 0);
}

TEST_F(Refusal, of_memory_to_share_with_the_recognition_costs_the_text_alone) {
    // What the picture itself takes.
    constexpr int steps = 3;
    const Picture expected = session.screen(area);
    session.openRecognitionOverlay();
    const std::size_t before = session.mark();
    refusals.begin(RefusalOrders::sharedMemory, pictureSize, steps, forGood);
    session.input().drag({area.x, area.y}, {area.x + area.width, area.y + area.height});
    EXPECT_EQ(session.waitForLine("Unable to perform OCR: ", before),
              "The picture could not be handed to the text recognition helper: Too many open "
              "files.");
    EXPECT_EQ(refusals.end(), 1);
    EXPECT_EQ(desktop::difference(expected, session.clipboardPicture().picture), "equal");
    EXPECT_EQ(session.countSince(before, line::saved), 1U);
    session.waitUntilClosed();
    expectToLiveOn();
}

/// So large that the server's memory for a picture of it always comes from the system.
class LargeRefusal : public Refusal {
  protected:
    LargeRefusal() : Refusal({.outputs = {{0, 0, 4096, 2304}}}) {}
};

TEST_F(LargeRefusal, of_a_pixmap_ends_the_opening_by_itself) {
    desktop::TestWindow window(session.desktop().displayName(), {.x = 300, .y = 300});
    window.focus();
    session.waitUntilStill();
    {
        const desktop::PoorServer poor(session.desktop().server());
        const std::size_t before = session.mark();
        session.pressScreenshotShortcut();
        const std::size_t opened = session.program().waitForLine(line::cursorSet, before) + 1;
        session.waitForLine(line::cursorRestored, opened);
        EXPECT_FALSE(session.isOpen());
        window.takeKeys();
        session.input().tap(desktop::key::a);
        session.require("A key in the window that was typed in before", [&] {
            return window.takeKeys() == std::vector<std::uint8_t>{desktop::key::a};
        });
    }
    // At once, though an opening so soon takes a snapshot over.
    expectToLiveOn();
}

}  // namespace
}  // namespace journeys
