#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

namespace fuzz {

/// Ends the program as a crash, which keeps the input, unless what must always hold does.
inline void require(bool holds, const char* rule) {
    if (!holds) {
        std::fprintf(stderr, "Broken: %s\n", rule);
        std::abort();
    }
}

/// The bytes that libFuzzer made up, taken from the front; 0 where there are no more.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    std::uint8_t byte() {
        if (rest_.empty()) {
            return 0;
        }
        const std::uint8_t first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }
    std::uint64_t number() {
        std::uint64_t number = 0;
        for (int index = 0; index < 8; ++index) {
            number = number << 8U | byte();
        }
        return number;
    }
    /// What is left of the first line, without its end.
    std::string line() {
        std::string line;
        while (!rest_.empty()) {
            const char letter = static_cast<char>(byte());
            if (letter == '\n') {
                break;
            }
            line.push_back(letter);
        }
        return line;
    }
    [[nodiscard]] std::span<const std::uint8_t> rest() const { return rest_; }
    [[nodiscard]] std::string_view text() const {
        return {reinterpret_cast<const char*>(rest_.data()), rest_.size()};
    }

  private:
    std::span<const std::uint8_t> rest_;
};

/// How large a made-up picture is.
struct PictureSize {
    int width = 1;
    int height = 1;
};

/// Mostly so small that thousands are tried in a second; one in eight is up to 256 x 64.
inline PictureSize pictureSize(Input& input) {
    const std::uint8_t kind = input.byte();
    const std::uint8_t width = input.byte();
    const std::uint8_t height = input.byte();
    return kind % 8 == 7 ? PictureSize{1 + width, 1 + height % 64}
                         : PictureSize{1 + width % 48, 1 + height % 16};
}

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
