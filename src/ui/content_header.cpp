#include "ui/content_header.h"

#include <QVBoxLayout>
#include <memory>

#include "ui/appearance.h"
#include "ui/icon_label.h"
#include "ui/text_label.h"

namespace ui {

namespace {

constexpr int iconSize = 150;
/// The usual distance between two things in a stack.
constexpr int spacing = 8;
/// The tag line is pulled this much closer to the name.
constexpr int tagLinePull = 2;

}  // namespace

ContentHeader::ContentHeader(const base::Bundle& bundle) {
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    auto icon = std::make_unique<IconLabel>(bundle, iconSize);
    if (icon->hasIcon()) {
        stack->addWidget(icon.release(), 0, Qt::AlignHCenter);
        stack->addSpacing(spacing);
    }
    auto* name = new TextLabel(QStringLiteral("Lumaframe"), systemFont(bodySize, QFont::DemiBold),
                               TextLabel::Prominence::primary);
    name->setObjectName(QStringLiteral("applicationName"));
    stack->addWidget(name, 0, Qt::AlignHCenter);
    stack->addSpacing(spacing - tagLinePull);
    auto* tagLine =
        new TextLabel(QStringLiteral("Advanced screenshot capture and instant text recognition."),
                      systemFont(captionSize), TextLabel::Prominence::secondary);
    tagLine->setObjectName(QStringLiteral("tagLine"));
    tagLine->setAlignment(Qt::AlignCenter);
    stack->addWidget(tagLine, 0, Qt::AlignHCenter);
}

}  // namespace ui
