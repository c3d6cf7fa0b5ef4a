#pragma once

#include <QPushButton>

namespace ui {

/// A button with a text. The keyboard presses it by Space and by Return. Main thread.
class PushButton final : public QPushButton {
  public:
    enum class Style { bordered, prominent };
    enum class ControlSize { small, regular, large };
    PushButton(const QString& label, Style style, ControlSize controlSize);

    void setControlSize(ControlSize controlSize);
    /// Points.
    [[nodiscard]] double cornerRadius() const;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void paintGround(QPainter& painter) const;

    Style style_;
    ControlSize controlSize_;
};

}  // namespace ui
