// Pixels are shared with the X server and with the helper programs: by memory that no other user
// can open, that goes with the program, and that soon holds nothing of a picture any more. That
// nothing of it is in /dev/shm is seen in every journey (left_on_disk.h).
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>

#include "journeys/session.h"

namespace journeys {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::Each;
using testing::Field;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// Memory of System V, which outlives the process that has made it.
struct Segment {
    int identifier = 0;
    unsigned permissions = 0;
};

std::vector<Segment> segmentsOf(pid_t process) {
    std::vector<Segment> segments;
    std::ifstream table("/proc/sysvipc/shm");
    std::string line;
    std::getline(table, line);
    while (std::getline(table, line)) {
        std::istringstream fields(line);
        long key = 0;
        Segment segment;
        std::string size;
        pid_t maker = 0;
        fields >> key >> segment.identifier >> std::oct >> segment.permissions >> std::dec >>
            size >> maker;
        if (maker == process) {
            segments.push_back(segment);
        }
    }
    return segments;
}

/// A line of a process's table of its memory.
struct Mapping {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    std::string access;
    std::string file;
};

std::vector<Mapping> writableMappings(pid_t process) {
    std::vector<Mapping> found;
    std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream fields(line);
        Mapping mapping;
        char dash = 0;
        std::string offset;
        std::string device;
        std::string node;
        fields >> std::hex >> mapping.begin >> dash >> mapping.end >> mapping.access >> offset >>
            device >> node >> std::ws;
        std::getline(fields, mapping.file);
        if (mapping.access.starts_with("rw")) {
            found.push_back(mapping);
        }
    }
    return found;
}

/// Whether a tool watches over its memory, which keeps for a while what the process has given back.
bool isWatched(pid_t process) {
    constexpr std::uintptr_t terabyte = std::uintptr_t{1} << 40U;
    return std::ranges::any_of(writableMappings(process), [](const Mapping& mapping) {
        return mapping.end - mapping.begin > terabyte;
    });
}

/// What lies behind the memory of a process that others can write into too.
std::vector<std::string> sharedMappings(pid_t process) {
    std::vector<std::string> files;
    for (const Mapping& mapping : writableMappings(process)) {
        if (mapping.access.ends_with('s')) {
            files.push_back(mapping.file);
        }
    }
    return files;
}

/// The pixels as the server gives them, whatever is in their fourth bytes.
std::vector<std::string> formsOf(const std::vector<std::uint32_t>& pixels) {
    std::vector<std::string> forms;
    for (const std::uint32_t alpha : {0x00000000U, 0xff000000U}) {
        std::string bytes(pixels.size() * sizeof alpha, '\0');
        for (std::size_t index = 0; index < pixels.size(); ++index) {
            const std::uint32_t pixel = (pixels[index] & 0xffffffU) | alpha;
            std::memcpy(bytes.data() + index * sizeof pixel, &pixel, sizeof pixel);
        }
        forms.push_back(std::move(bytes));
    }
    return forms;
}

/// Whether these pixels, side by side, are anywhere in the memory of a process.
bool remembers(pid_t process, const std::vector<std::uint32_t>& pixels) {
    const auto forms = formsOf(pixels);
    const int memory =
        ::open(("/proc/" + std::to_string(process) + "/mem").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_GE(memory, 0);
    bool isThere = false;
    for (const Mapping& mapping : writableMappings(process)) {
        std::string bytes(mapping.end - mapping.begin, '\0');
        // What goes away meanwhile has no bytes.
        const ssize_t size =
            ::pread(memory, bytes.data(), bytes.size(), static_cast<off_t>(mapping.begin));
        bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        isThere = isThere || std::ranges::any_of(forms, [&bytes](const std::string& form) {
                      return std::search(bytes.begin(), bytes.end(),
                                         std::boyer_moore_horspool_searcher(
                                             form.begin(), form.end())) != bytes.end();
                  });
    }
    ::close(memory);
    return isThere;
}

class SharedPixels : public testing::Test {
  protected:
    SharedPixels() {
        session.writeSettings(nlohmann::json::object());
        session.start();
    }
    /// Until the program has shared the pixels of a picture.
    void takePicture() {
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().drag({200, 150}, {1100, 700});
        session.waitForLine(line::saved, before);
        session.waitUntilClosed();
    }
    Session session;
};

TEST_F(SharedPixels, of_a_picture_are_forgotten_soon_after_it) {
    // Of the first row and of one in the middle.
    std::vector<std::vector<std::uint32_t>> rows;
    for (const int y : {150, 400}) {
        rows.push_back(session.screen({300, y, 64, 1}).pixels);
    }
    const pid_t program = session.program().pid();
    if (isWatched(program)) {
        GTEST_SKIP() << "Needs a program without a sanitizer.";
    }
    const auto areRemembered = [&] {
        return std::ranges::any_of(rows, [&](const auto& row) { return remembers(program, row); });
    };
    EXPECT_FALSE(areRemembered());
    takePicture();
    EXPECT_TRUE(areRemembered()) << "It would be seen.";
    session.require("The oblivion", [&] { return !areRemembered(); });
}

TEST_F(SharedPixels, of_windows_are_in_memory_that_goes_with_the_program) {
    session.desktop().bus({"activate"});
    std::optional<xcb_window_t> window;
    session.require("The settings window", [&] {
        window = session.windowWithRole("main");
        return window && session.activeWindow() == *window;
    });
    session.waitUntilStill();
    const pid_t program = session.program().pid();
    EXPECT_THAT(segmentsOf(program), Each(Field(&Segment::permissions, 0600U)));
    session.program().signal(SIGKILL);
    ASSERT_TRUE(session.program().waitForExit().has_value());
    session.require("The end of the window", [&] { return !session.windowWithRole("main"); });
    EXPECT_THAT(segmentsOf(program), IsEmpty());
}

TEST_F(SharedPixels, are_in_memory_without_a_name) {
    takePicture();
    const pid_t program = session.program().pid();
    EXPECT_THAT(sharedMappings(program), Not(IsEmpty()));
    EXPECT_THAT(sharedMappings(program), Each(StartsWith("/memfd:")));
    EXPECT_THAT(segmentsOf(program), IsEmpty());
    // It would be seen.
    const int segment = ::shmget(IPC_PRIVATE, 4096, IPC_CREAT | 0600);
    ASSERT_GE(segment, 0);
    EXPECT_THAT(segmentsOf(::getpid()), Contains(Field(&Segment::identifier, segment)));
    ::shmctl(segment, IPC_RMID, nullptr);
}

TEST_F(SharedPixels, leave_nothing_behind_when_the_program_is_killed) {
    takePicture();
    session.openOverlay();
    session.input().moveTo({200, 150});
    session.input().pressButton();
    session.input().moveInSteps({200, 150}, {1100, 700});
    const pid_t program = session.program().pid();
    session.program().signal(SIGKILL);
    ASSERT_TRUE(session.program().waitForExit().has_value());
    session.waitUntilClosed();
    EXPECT_THAT(segmentsOf(program), IsEmpty());
}

}  // namespace
}  // namespace journeys
