#include "ui/first_run_modal.h"

#include <QShowEvent>
#include <QVBoxLayout>

#include "ui/action_row.h"
#include "ui/appearance.h"
#include "ui/card.h"
#include "ui/divider.h"
#include "ui/first_run_header.h"
#include "ui/focus_ring.h"
#include "ui/text_label.h"

namespace ui {

namespace {

constexpr int panelWidth = 500;
constexpr int panelPadding = 32;
constexpr int sectionSpacing = 24;
constexpr int videoHeight = 250;
constexpr double videoRadius = 12;
/// The usual padding around something.
constexpr int videoPadding = 16;
constexpr double groupRadius = 8;
/// What a group box keeps free by itself, and what the rows add.
constexpr int groupPadding = 4 + 8;
constexpr int rowSpacing = 12;

}  // namespace

FirstRunModal::FirstRunModal(const Mediator& mediator)
    : firstRun_(mediator.firstRun, [this] { showStatus(); }), action_(new ActionRow(firstRun_)) {
    setFixedWidth(panelWidth);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(panelPadding, panelPadding, panelPadding, panelPadding);
    column->setSpacing(sectionSpacing);
    column->addWidget(new FirstRunHeader(mediator.bundle));
    column->addWidget(makeVideo(mediator));
    auto* text =
        new TextLabel(QStringLiteral("To get started, please grant the following permissions:"),
                      systemFont(bodySize), TextLabel::Prominence::secondary);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    column->addWidget(text);
    column->addWidget(makePermissions());
    column->addWidget(action_);
    new FocusRing(*this);
}

QWidget* FirstRunModal::makeVideo(const Mediator& mediator) {
    auto* frame = new QWidget;
    auto* stack = new QVBoxLayout(frame);
    stack->setContentsMargins(videoPadding, 0, videoPadding, 0);
    auto* video = new LoopingVideoPlayer("animation", mediator.video);
    video->setObjectName(QStringLiteral("video"));
    video->setFixedHeight(videoHeight);
    video->setCornerRadius(videoRadius);
    stack->addWidget(video);
    return frame;
}

QWidget* FirstRunModal::makePermissions() {
    auto* group = new Card(groupRadius);
    group->setObjectName(QStringLiteral("permissionGroup"));
    auto* stack = new QVBoxLayout(group);
    stack->setContentsMargins(groupPadding, groupPadding, groupPadding, groupPadding);
    stack->setSpacing(rowSpacing);
    for (const Permission permission : everyPermission) {
        if (!rows_.empty()) {
            stack->addWidget(new Divider(Qt::Horizontal));
        }
        rows_.push_back(new PermissionRow(firstRun_, permission));
        stack->addWidget(rows_.back());
    }
    return group;
}

void FirstRunModal::showStatus() {
    for (PermissionRow* row : rows_) {
        row->showStatus();
    }
    // The button is chosen anew when it is drawn.
    action_->update();
}

void FirstRunModal::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        firstRun_.refreshStatus();
    }
    QWidget::showEvent(event);
}

}  // namespace ui
