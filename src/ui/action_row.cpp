#include "ui/action_row.h"

#include <QHBoxLayout>
#include <QPaintEvent>
#include <utility>

namespace ui {

namespace {

constexpr int spacing = 12;
constexpr int topPadding = 8;
/// The mark of the focus stays within it.
constexpr int focusMargin = 4;
/// Who clicks sooner after a change has aimed at the button before it: the click that brings the
/// window back to the front also refreshes it. The keyboard and assistive programs do not aim.
constexpr std::chrono::milliseconds glance{400};

struct ButtonLook {
    QString label;
    PushButton::ControlSize size;
};

ButtonLook lookOf(FirstRunAction action) {
    switch (action) {
        case FirstRunAction::refreshStatus:
            return {QStringLiteral("Refresh Status"), PushButton::ControlSize::regular};
        case FirstRunAction::getStarted:
            return {QStringLiteral("Get Started"), PushButton::ControlSize::large};
    }
    return {};
}

}  // namespace

ActionRow::ActionRow(FirstRun& firstRun)
    : firstRun_(firstRun),
      button_(new PushButton(lookOf(action_).label, PushButton::Style::prominent,
                             lookOf(action_).size)) {
    button_->setObjectName(QStringLiteral("action"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, topPadding, 0, 0);
    row->setSpacing(spacing);
    row->addWidget(button_, 0, Qt::AlignCenter);
    connect(button_, &QPushButton::clicked, this, [this] { firstRun_.perform(action_); });
    button_->installEventFilter(this);
    // Also before the first drawing: the window gets its size from it.
    chooseAction();
    changedAt_.reset();
}

void ActionRow::paintEvent(QPaintEvent* event) {
    // Not when the button alone is drawn, because the pointer or the focus is on it: it would
    // become another one between the decision to press it and the press.
    const QRect button =
        button_->geometry().marginsAdded({focusMargin, focusMargin, focusMargin, focusMargin});
    if (!button.contains(event->rect())) {
        chooseAction();
    }
}

bool ActionRow::eventFilter(QObject* object, QEvent* event) {
    if (object != button_ || event->type() != QEvent::MouseButtonRelease || !hasJustChanged()) {
        return QWidget::eventFilter(object, event);
    }
    // Pressed no longer, and not clicked.
    button_->setDown(false);
    return true;
}

bool ActionRow::hasJustChanged() const {
    return changedAt_ && std::chrono::steady_clock::now() - *changedAt_ < glance;
}

void ActionRow::chooseAction() {
    const FirstRunAction action = firstRun_.actionToOffer();
    if (std::exchange(action_, action) == action) {
        return;
    }
    // One button for both, so that the keyboard focus stays.
    changedAt_ = std::chrono::steady_clock::now();
    const ButtonLook look = lookOf(action);
    button_->setText(look.label);
    button_->setControlSize(look.size);
}

}  // namespace ui
