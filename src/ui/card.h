#pragma once

#include <QWidget>

namespace ui {

/// A group of controls on a lighter ground with a hairline around it. Main thread.
class Card final : public QWidget {
  public:
    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace ui
