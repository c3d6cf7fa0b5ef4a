#pragma once

#include <QCheckBox>

namespace ui {

/// A switch in the style of a check box. Main thread.
class CheckBox : public QCheckBox {
  public:
    explicit CheckBox(const QString& label);

    /// Where the box itself is, in the widget's coordinates.
    [[nodiscard]] QRect boxRectangle() const;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    [[nodiscard]] bool hitButton(const QPoint& place) const override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void paintBox(QPainter& painter) const;
};

}  // namespace ui
