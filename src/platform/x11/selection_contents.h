#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "capture/pasteboard.h"
#include "platform/x11/connection.h"

namespace platform::x11 {

/// What a selection gives for one target: the type, format and bytes of a property. Shared, because
/// a transfer in pieces goes on when the selection already offers something else.
struct SelectionValue {
    xcb_atom_t type = XCB_ATOM_NONE;
    /// Bits of one item: 8 or 32.
    std::uint8_t format = 8;
    std::shared_ptr<const std::vector<std::uint8_t>> bytes;
};

/// Turns the bytes of a PNG file into another kind of picture file; empty when it cannot.
using ImageConverter =
    std::function<std::vector<std::uint8_t>(std::span<const std::uint8_t>, std::string_view)>;

/// Something that a selection offers. Main thread.
class SelectionContents {
  public:
    virtual ~SelectionContents() = default;
    /// What it can be had as, best first.
    [[nodiscard]] virtual std::vector<xcb_atom_t> targets() const = 0;
    /// The few of them that a clipboard manager should keep: what the others can be made from.
    [[nodiscard]] virtual std::vector<xcb_atom_t> lastingTargets() const = 0;
    /// Nothing for a target that is not offered, or that cannot be made after all.
    [[nodiscard]] virtual std::optional<SelectionValue> convert(xcb_atom_t target) = 0;
};

/// A picture: its PNG form, made when it is first asked for, and without a copy of it; other forms
/// are made from that each time, since holding them would cost more than making them.
class ImageContents final : public SelectionContents {
  public:
    ImageContents(Connection& connection, std::shared_ptr<capture::CapturedImage> image,
                  ImageConverter converter);
    [[nodiscard]] std::vector<xcb_atom_t> targets() const override;
    [[nodiscard]] std::vector<xcb_atom_t> lastingTargets() const override;
    [[nodiscard]] std::optional<SelectionValue> convert(xcb_atom_t target) override;

  private:
    xcb_atom_t png_;
    std::vector<std::pair<xcb_atom_t, std::string_view>> convertedForms_;
    std::shared_ptr<capture::CapturedImage> image_;
    ImageConverter converter_;
};

/// A plain text.
class TextContents final : public SelectionContents {
  public:
    /// `text` is UTF-8.
    TextContents(Connection& connection, const std::string& text);
    [[nodiscard]] std::vector<xcb_atom_t> targets() const override;
    [[nodiscard]] std::vector<xcb_atom_t> lastingTargets() const override;
    [[nodiscard]] std::optional<SelectionValue> convert(xcb_atom_t target) override;

  private:
    xcb_atom_t utf8_;
    xcb_atom_t anyText_;
    std::vector<xcb_atom_t> mimeTypes_;
    std::shared_ptr<const std::vector<std::uint8_t>> text_;
};

}  // namespace platform::x11
