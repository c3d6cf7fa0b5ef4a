#include "platform/x11/selection_contents.h"

#include <algorithm>

#include "base/text.h"

namespace platform::x11 {

ImageContents::ImageContents(Connection& connection, std::shared_ptr<capture::CapturedImage> image,
                             ImageConverter converter)
    : png_(connection.atom("image/png")),
      image_(std::move(image)),
      converter_(std::move(converter)) {
    if (converter_) {
        for (const std::string_view mimeType : {"image/bmp", "image/jpeg"}) {
            convertedForms_.emplace_back(connection.atom(mimeType), mimeType);
        }
    }
}

std::vector<xcb_atom_t> ImageContents::targets() const {
    std::vector<xcb_atom_t> targets{png_};
    for (const auto& [target, mimeType] : convertedForms_) {
        targets.push_back(target);
    }
    return targets;
}

std::vector<xcb_atom_t> ImageContents::lastingTargets() const {
    return {png_};
}

std::optional<SelectionValue> ImageContents::convert(xcb_atom_t target) {
    const auto form =
        std::ranges::find(convertedForms_, target, &std::pair<xcb_atom_t, std::string_view>::first);
    if (target != png_ && form == convertedForms_.end()) {
        return std::nullopt;
    }
    const std::vector<std::uint8_t>* png = image_->pngRepresentation();
    if (png == nullptr) {
        return std::nullopt;
    }
    if (target == png_) {
        // Keeps the picture alive, and with it its bytes.
        return SelectionValue{png_, 8, {image_, png}};
    }
    auto converted = converter_(*png, form->second);
    if (converted.empty()) {
        return std::nullopt;
    }
    return SelectionValue{target, 8,
                          std::make_shared<const std::vector<std::uint8_t>>(std::move(converted))};
}

TextContents::TextContents(Connection& connection, const std::string& text)
    : utf8_(connection.atom("UTF8_STRING")),
      anyText_(connection.atom("TEXT")),
      mimeTypes_{connection.atom("text/plain;charset=utf-8"), connection.atom("text/plain")},
      text_(std::make_shared<const std::vector<std::uint8_t>>(text.begin(), text.end())) {}

std::vector<xcb_atom_t> TextContents::targets() const {
    std::vector<xcb_atom_t> targets{utf8_};
    targets.insert(targets.end(), mimeTypes_.begin(), mimeTypes_.end());
    targets.insert(targets.end(), {XCB_ATOM_STRING, anyText_});
    return targets;
}

std::vector<xcb_atom_t> TextContents::lastingTargets() const {
    return targets();
}

std::optional<SelectionValue> TextContents::convert(xcb_atom_t target) {
    if (target == XCB_ATOM_STRING) {
        const std::string latin1 =
            base::latin1Text({reinterpret_cast<const char*>(text_->data()), text_->size()});
        return SelectionValue{
            XCB_ATOM_STRING, 8,
            std::make_shared<const std::vector<std::uint8_t>>(latin1.begin(), latin1.end())};
    }
    // TEXT leaves the encoding to the owner, who names it as the type.
    if (target == utf8_ || target == anyText_) {
        return SelectionValue{utf8_, 8, text_};
    }
    if (std::ranges::find(mimeTypes_, target) != mimeTypes_.end()) {
        return SelectionValue{target, 8, text_};
    }
    return std::nullopt;
}

}  // namespace platform::x11
