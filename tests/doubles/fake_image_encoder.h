#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/text.h"
#include "capture/image_encoder.h"
#include "doubles/call_log.h"

namespace doubles {

/// "Encodes" a picture into a text that names its sizes, for example "PNG 4x2 2.0x1.0".
/// In a call log: "encode".
class FakeImageEncoder final : public capture::ImageEncoder, public Recorder {
  public:
    base::Result<std::vector<std::uint8_t>> encodePng(const base::Image& image,
                                                      base::Size pointSize) override {
        record("encode");
        ++encodeCount;
        if (error) {
            return *error;
        }
        const std::string text =
            "PNG " + std::to_string(image.width()) + "x" + std::to_string(image.height()) + " " +
            base::decimalText(pointSize.width) + "x" + base::decimalText(pointSize.height);
        return std::vector<std::uint8_t>(text.begin(), text.end());
    }

    std::optional<base::Error> error;
    int encodeCount = 0;
};

}  // namespace doubles
