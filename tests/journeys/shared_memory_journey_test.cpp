// Pixels are shared with the X server and with the helper programs: by memory that no other user
// can open, and that goes with the program. That nothing of it is in /dev/shm is seen in every
// journey (left_on_disk.h).
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <sstream>

#include "journeys/session.h"

namespace journeys {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::Each;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// The identifiers of the System V segments that a process has made, which outlive it.
std::vector<int> segmentsOf(pid_t process) {
    std::vector<int> identifiers;
    std::ifstream table("/proc/sysvipc/shm");
    std::string line;
    std::getline(table, line);
    while (std::getline(table, line)) {
        std::istringstream fields(line);
        long key = 0;
        int identifier = 0;
        std::string permissions;
        std::string size;
        pid_t maker = 0;
        fields >> key >> identifier >> permissions >> size >> maker;
        if (maker == process) {
            identifiers.push_back(identifier);
        }
    }
    return identifiers;
}

/// What lies behind the memory of a process that others can write into too.
std::vector<std::string> sharedMappings(pid_t process) {
    std::vector<std::string> files;
    std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream fields(line);
        std::string range;
        std::string access;
        std::string offset;
        std::string device;
        std::string node;
        std::string file;
        fields >> range >> access >> offset >> device >> node >> std::ws;
        std::getline(fields, file);
        if (access.starts_with("rw") && access.ends_with('s')) {
            files.push_back(file);
        }
    }
    return files;
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

TEST_F(SharedPixels, are_in_memory_without_a_name) {
    takePicture();
    const pid_t program = session.program().pid();
    EXPECT_THAT(sharedMappings(program), Not(IsEmpty()));
    EXPECT_THAT(sharedMappings(program), Each(StartsWith("/memfd:")));
    EXPECT_THAT(segmentsOf(program), IsEmpty());
    // It would be seen.
    const int segment = ::shmget(IPC_PRIVATE, 4096, IPC_CREAT | 0600);
    ASSERT_GE(segment, 0);
    EXPECT_THAT(segmentsOf(::getpid()), Contains(segment));
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
