#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "desktop/wait.h"
#include "desktop/x_server.h"
#include "doubles/manual_main_queue.h"
#include "pasting_program.h"
#include "platform/x11/x11_pasteboard.h"

namespace pasteboard_test {

using Bytes = std::vector<std::uint8_t>;

/// An encoder that gives back prepared bytes and counts how often it was asked.
class PreparedEncoder final : public capture::ImageEncoder {
  public:
    explicit PreparedEncoder(Bytes bytes) : bytes_(std::move(bytes)) {}
    base::Result<Bytes> encodePng(const base::Image&, base::Size) override {
        ++callCount;
        if (bytes_.empty()) {
            return base::Error{base::ErrorKind::failed, "There is nothing to encode."};
        }
        return bytes_;
    }
    int callCount = 0;

  private:
    Bytes bytes_;
};

inline std::shared_ptr<capture::CapturedImage> imageOf(PreparedEncoder& encoder) {
    return std::make_shared<capture::CapturedImage>(
        base::Image::fromPixels(1, 1, Bytes(4), base::AlphaChannel::none), base::Size{1, 1},
        encoder);
}

inline Bytes randomBytes(std::size_t size) {
    std::mt19937_64 random(size);
    Bytes bytes(size);
    for (auto& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

inline Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

/// A directory that goes away with this object.
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::string pattern = std::filesystem::temp_directory_path() / "pasteboard-XXXXXX";
        path_ = ::mkdtemp(pattern.data());
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

/// A server of a test's own, which it can end.
class PrivateServer {
  public:
    [[nodiscard]] desktop::XServer& get() { return *server_; }
    void end() { server_.reset(); }

  private:
    TemporaryDirectory directory_;
    std::unique_ptr<desktop::XServer> server_ = std::make_unique<desktop::XServer>(
        directory_.path(), std::vector<desktop::Output>{{0, 0, 64, 64}});
};

/// One X server for all tests of a program.
inline desktop::XServer& sharedServer() {
    static PrivateServer server;
    return server.get();
}

/// A pasteboard on a real server, and an event loop that runs it and any number of other programs
/// in steps on one thread.
class PasteboardDesktop {
  public:
    explicit PasteboardDesktop(
        platform::x11::ImageConverter converter = {},
        std::size_t pieceSize = platform::x11::SelectionTransfers::defaultPieceSize,
        const desktop::XServer& server = sharedServer())
        : connection(std::move(platform::x11::Connection::open(server.displayName()).value())),
          pasteboard(std::move(platform::x11::X11Pasteboard::create(*connection, queue,
                                                                    std::move(converter), pieceSize)
                                   .value())) {
        // A look at a transfer that has ended in the meantime may still be due.
        queue.allowLeftovers();
    }

    /// Runs everything until `condition` holds; false when it does not within the limit.
    bool runUntil(const std::function<bool()>& condition) {
        return desktop::waitUntil([&] {
            connection->dispatchPendingEvents();
            queue.runAll();
            for (PastingProgram* program : programs) {
                program->step();
            }
            if (alsoRun) {
                alsoRun();
            }
            return condition();
        });
    }
    /// Asks for the clipboard as `target` and waits for the whole of it.
    Paste paste(PastingProgram& program, const std::string& target) {
        program.convert(target);
        programs = {&program};
        EXPECT_TRUE(runUntil([&] { return program.paste().isDecided(); })) << target;
        return program.paste();
    }

    doubles::ManualMainQueue queue;
    std::unique_ptr<platform::x11::Connection> connection;
    std::unique_ptr<platform::x11::X11Pasteboard> pasteboard;
    std::vector<PastingProgram*> programs;
    std::function<void()> alsoRun;
};

class X11PasteboardTest : public testing::Test {
  protected:
    PreparedEncoder encoder{bytesOf("\x89PNG picture")};
    PasteboardDesktop desk{[](std::span<const std::uint8_t> png, std::string_view mimeType) {
        Bytes converted = bytesOf(std::string(mimeType) + " of ");
        converted.insert(converted.end(), png.begin(), png.end());
        return converted;
    }};
    PastingProgram program{sharedServer().displayName()};
};

}  // namespace pasteboard_test
