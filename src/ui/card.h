#pragma once

#include <QWidget>

namespace ui {

/// A group of controls on a lighter ground with a hairline around it. Main thread.
class Card final : public QWidget {
  public:
    static constexpr double usualCornerRadius = 12;
    explicit Card(double cornerRadius = usualCornerRadius) : cornerRadius_(cornerRadius) {}

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    double cornerRadius_;
};

}  // namespace ui
