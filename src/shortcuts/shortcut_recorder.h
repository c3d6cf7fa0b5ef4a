#pragma once

#include <QWidget>

#include "shortcuts/key_monitor.h"
#include "shortcuts/recorder_model.h"

class QAbstractButton;

namespace shortcuts {

class Pill;
class ResetButton;

/// The control that shows a shortcut and records a new one: a pill as wide as there is room, and a
/// button that brings the default back. Main thread.
///
/// A click, Space or Return on the pill begins to record; the next key that is pressed in this
/// program is the shortcut (Space and Return too), Escape and a second click leave it as it is.
/// Hiding the control ends a recording. The host marks the control that has the keyboard focus.
class ShortcutRecorder final : public QWidget {
  public:
    /// The fields are read at every `refresh`; they and `keyMonitor` must outlive the control.
    ShortcutRecorder(RecorderFields fields, KeyMonitor& keyMonitor, QWidget* parent = nullptr);
    ~ShortcutRecorder() override;

    /// Shows the fields as they are now. Called by the host when the bound values have changed for
    /// another reason than this control; an observer that is told before a change asks for it in a
    /// later turn.
    void refresh();
    /// What the shortcut is for, which an assistive program reads with both controls.
    void setPurpose(const QString& purpose);
    /// The two controls, in reading order.
    [[nodiscard]] QAbstractButton& pill() const;
    [[nodiscard]] QAbstractButton& resetButton() const;

  protected:
    void hideEvent(QHideEvent* event) override;

  private:
    RecorderModel model_;
    // Owned as children.
    Pill* pill_;
    ResetButton* resetButton_;
};

}  // namespace shortcuts
