#pragma once

#include <QString>

namespace ui {

/// The tool tip that shows exactly `text`, in its own lines; none for an empty text. The toolkit
/// guesses whether a tool tip is markup: some names are, and an escaped name may not be.
QString toolTipOf(const QString& text);

}  // namespace ui
