#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "capture/pasteboard.h"
#include "doubles/fake_image_encoder.h"

namespace contracts {

/// A pasteboard and a program that pastes from it.
class PasteboardWorld {
  public:
    virtual ~PasteboardWorld() = default;
    virtual capture::Pasteboard& pasteboard() = 0;
    /// What the other program gets as PNG; nothing when there is no picture for it.
    virtual std::optional<std::string> pastedImage() = 0;
    virtual std::optional<std::string> pastedText() = 0;
};

/// A name for the world, and how it is made.
struct PasteboardWorldMaker {
    std::string name;
    std::function<std::unique_ptr<PasteboardWorld>()> make;
};

/// What every pasteboard does.
class PasteboardContract : public testing::TestWithParam<PasteboardWorldMaker> {
  protected:
    std::shared_ptr<capture::CapturedImage> makeImage(int width, int height) {
        const auto size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
        return std::make_shared<capture::CapturedImage>(
            base::Image::fromPixels(width, height, std::vector<std::uint8_t>(size),
                                    base::AlphaChannel::none),
            base::Size{static_cast<double>(width), static_cast<double>(height)}, encoder);
    }

    doubles::FakeImageEncoder encoder;
    std::unique_ptr<PasteboardWorld> world = GetParam().make();
    capture::Pasteboard& pasteboard = world->pasteboard();
};

}  // namespace contracts
