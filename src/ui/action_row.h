#pragma once

#include <QWidget>
#include <chrono>
#include <optional>

#include "ui/first_run.h"
#include "ui/push_button.h"

namespace ui {

/// The one button of the permissions window, which is chosen each time the row is drawn. Main
/// thread.
class ActionRow final : public QWidget {
  public:
    /// `firstRun` outlives the row.
    explicit ActionRow(FirstRun& firstRun);

    /// Lets no click of the pointer through to the button that has just become another one.
    bool eventFilter(QObject* object, QEvent* event) override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void chooseAction();
    [[nodiscard]] bool hasJustChanged() const;

    FirstRun& firstRun_;
    FirstRunAction action_ = FirstRunAction::refreshStatus;
    /// When the button became what it is; nothing at first.
    std::optional<std::chrono::steady_clock::time_point> changedAt_;
    PushButton* button_;
};

}  // namespace ui
