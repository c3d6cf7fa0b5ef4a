#pragma once

#include "base/image.h"
#include "base/result.h"
#include "platform/helper/owned_descriptor.h"
#include "platform/tesseract/recognition_protocol.h"

namespace platform::tesseract {

using helper::OwnedDescriptor;

/// The shape in which `image` is sent: rows without padding.
PictureShape sealedShapeOf(const base::Image& image);

/// Copies the pixels of `image` once, in `sealedShapeOf` it, into anonymous memory that nobody can
/// change or resize any more. The copy is not in this process's own memory. The picture must be
/// acceptable for the protocol.
base::Result<OwnedDescriptor> makeSealedPicture(const base::Image& image);

/// The picture in `memory`, mapped for reading for as long as the image lives. An error when it is
/// not sealed against changes, or is not exactly as large as `shape` says.
base::Result<base::Image> mapSealedPicture(const OwnedDescriptor& memory,
                                           const PictureShape& shape);

}  // namespace platform::tesseract
