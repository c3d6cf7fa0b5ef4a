#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "capture/pasteboard.h"
#include "doubles/call_log.h"

namespace doubles {

/// Holds one thing. In a call log: "pasteboard clear", "pasteboard image",
/// "pasteboard string: <text>".
class FakePasteboard final : public capture::Pasteboard, public Recorder {
  public:
    void clearContents() override {
        record("pasteboard clear");
        image = nullptr;
        text.reset();
        ++clearCount;
    }
    void writeImage(std::shared_ptr<capture::CapturedImage> captured) override {
        record("pasteboard image");
        image = std::move(captured);
        text.reset();
        ++writeCount;
    }
    void writeString(const std::string& string) override {
        record("pasteboard string: " + string);
        text = string;
        image = nullptr;
        ++writeCount;
    }

    std::shared_ptr<capture::CapturedImage> image;
    std::optional<std::string> text;
    int clearCount = 0;
    int writeCount = 0;
};

}  // namespace doubles
