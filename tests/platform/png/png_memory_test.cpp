#include <gtest/gtest.h>

#include "allocation_limit.h"
#include "platform/png/png_encoder.h"
#include "sample_pictures.h"

namespace platform::png {

using base::AlphaChannel;

TEST(PngMemory, a_lack_of_memory_is_an_error_and_not_an_exception) {
    PngEncoder encoder;
    const auto image = sample_pictures::noise(1280, 800, AlphaChannel::none);

    for (const std::size_t limit : {100U * 1024U, 1024U * 1024U}) {
        const allocation_limit::AllocationLimit scarce(limit);
        const auto outcome = encoder.encodePng(image, {1280, 800});

        ASSERT_FALSE(outcome);
        EXPECT_EQ(outcome.error().kind, base::ErrorKind::failed);
        EXPECT_EQ(outcome.error().sentence,
                  "There is not enough memory to write the picture as PNG.");
    }
}

}  // namespace platform::png
