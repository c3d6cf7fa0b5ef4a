#pragma once

#include <QFocusFrame>
#include <QPainterPath>
#include <QPointer>

namespace ui {

/// Marks the control of one view that has the keyboard focus, once the keyboard was used to get
/// there. It lies above the controls, so that it can be around them without a place in the layout.
/// Main thread.
///
/// A QFocusFrame, because assistive programs leave that one out of what they read.
class FocusRing final : public QFocusFrame {
  public:
    /// A child of `view`.
    explicit FocusRing(QWidget& view);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void follow(QWidget* focus);
    void place();
    [[nodiscard]] QPainterPath outlineAround(const QRectF& middle) const;

    QPointer<QWidget> control_;
};

}  // namespace ui
