#pragma once

#include <QWidget>

namespace ui {

/// A line of one point between two things. Main thread.
class Divider final : public QWidget {
  public:
    explicit Divider(Qt::Orientation orientation);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace ui
