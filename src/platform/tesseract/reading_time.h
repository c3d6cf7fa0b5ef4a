#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace platform::tesseract {

/// How long the resident program waits for a picture to be read; beyond that the helper hangs.
struct WaitingTime {
    /// For any picture, and for each megapixel of it: a 4K display full of small text was seen to
    /// take 1.6 s for each on one thread, 2.4 s beside other work.
    std::chrono::milliseconds picture{5000};
    std::chrono::milliseconds megapixel{4000};
    /// For the largest, since the program stands still meanwhile.
    std::chrono::milliseconds longest{60000};

    [[nodiscard]] std::chrono::milliseconds forPixels(std::int64_t count) const {
        return std::min(longest, picture + megapixel * count / 1'000'000);
    }
};

/// How long its reading may be foreseen to take: with the rest of the waiting time for what is not
/// foreseen, whoever gives a picture up says why before the other side stops waiting.
inline std::chrono::milliseconds longestReading(std::int64_t pixelCount) {
    return WaitingTime{}.forPixels(pixelCount) * 3 / 4;
}

}  // namespace platform::tesseract
