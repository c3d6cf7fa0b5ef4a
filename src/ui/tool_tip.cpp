#include "ui/tool_tip.h"

namespace ui {

QString toolTipOf(const QString& text) {
    if (text.isEmpty()) {
        return {};
    }
    // Blanks are part of a name.
    return QStringLiteral("<div style='white-space:pre'>") + text.toHtmlEscaped() +
           QStringLiteral("</div>");
}

}  // namespace ui
