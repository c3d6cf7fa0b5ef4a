#pragma once

#include <optional>
#include <string>
#include <vector>

#include "doubles/call_log.h"
#include "overlay/pointer.h"

namespace doubles {

/// A pointer at the place that the test says. In a call log: "cursor: <name>".
class FakePointer final : public overlay::Pointer, public Recorder {
  public:
    void setCursor(overlay::Cursor cursor) override {
        cursors.push_back(cursor);
        record("cursor: " + name(cursor));
    }
    std::optional<base::Point> location() override {
        ++locationCount;
        return place;
    }
    /// The cursor that is shown, the arrow before the first call.
    [[nodiscard]] overlay::Cursor cursor() const {
        return cursors.empty() ? overlay::Cursor::arrow : cursors.back();
    }

    std::optional<base::Point> place{{0, 0}};
    std::vector<overlay::Cursor> cursors;
    int locationCount = 0;

  private:
    static std::string name(overlay::Cursor cursor) {
        switch (cursor) {
            case overlay::Cursor::arrow:
                return "arrow";
            case overlay::Cursor::crosshair:
                return "crosshair";
            case overlay::Cursor::pointingHand:
                return "pointing hand";
        }
        return {};
    }
};

}  // namespace doubles
