#include "ui/first_run_header.h"

#include <QVBoxLayout>
#include <memory>

#include "ui/appearance.h"
#include "ui/icon_label.h"
#include "ui/text_label.h"

namespace ui {

namespace {

constexpr int iconSize = 80;
constexpr int spacing = 12;

}  // namespace

FirstRunHeader::FirstRunHeader(const base::Bundle& bundle) {
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(spacing);
    auto icon = std::make_unique<IconLabel>(bundle, iconSize);
    if (icon->hasIcon()) {
        stack->addWidget(icon.release(), 0, Qt::AlignHCenter);
    }
    auto* title = new TextLabel(QStringLiteral("Drag App Icon to the Settings"),
                                systemFont(titleSize, QFont::Bold), TextLabel::Prominence::primary);
    title->setAlignment(Qt::AlignCenter);
    stack->addWidget(title, 0, Qt::AlignHCenter);
}

}  // namespace ui
