#include "ui/permission_row.h"

#include <QHBoxLayout>
#include <algorithm>

#include "ui/appearance.h"
#include "ui/granted_label.h"
#include "ui/push_button.h"
#include "ui/text_label.h"
#include "ui/tool_tip.h"

namespace ui {

namespace {

/// The usual distance between two things in a stack.
constexpr int spacing = 8;

}  // namespace

PermissionRow::PermissionRow(FirstRun& firstRun, Permission permission)
    : firstRun_(firstRun),
      permission_(permission),
      granted_(new GrantedLabel),
      refusal_(makeRefusal()) {
    const QString title = QString::fromStdString(permissionTitle(permission));
    setObjectName(title);
    setAccessibleName(title);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    row->addWidget(new TextLabel(title, systemFont(bodySize), TextLabel::Prominence::primary));
    row->addStretch(1);
    granted_->setAccessibleDescription(title);
    row->addWidget(granted_);
    row->addWidget(refusal_);
    // Of one height in both states, so that nothing moves when one changes into the other.
    setMinimumHeight(std::max(granted_->sizeHint().height(), refusal_->sizeHint().height()));
    showStatus();
}

QWidget* PermissionRow::makeRefusal() {
    const QString title = QString::fromStdString(permissionTitle(permission_));
    auto* refusal = new QWidget;
    auto* row = new QHBoxLayout(refusal);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    auto* label =
        new TextLabel(QStringLiteral("Not Granted"), systemFont(capsuleTextSize, QFont::Medium),
                      TextLabel::Prominence::refused);
    label->setAccessibleDescription(title);
    row->addWidget(label);
    auto* button = new PushButton(QStringLiteral("Open Settings"), PushButton::Style::bordered,
                                  PushButton::ControlSize::small);
    button->setAccessibleDescription(title);
    connect(button, &QPushButton::clicked, this,
            [this] { firstRun_.openSettingsPage(permission_); });
    row->addWidget(button);
    return refusal;
}

void PermissionRow::showStatus() {
    const bool isGranted = firstRun_.isGranted(permission_);
    granted_->setVisible(isGranted);
    refusal_->setVisible(!isGranted);
    const QString help = QString::fromStdString(firstRun_.help(permission_));
    setToolTip(toolTipOf(help));
    setAccessibleDescription(help);
}

}  // namespace ui
