#pragma once

#include <QLabel>

namespace ui {

/// The word "Granted" in a capsule. Main thread.
class GrantedLabel final : public QLabel {
  public:
    GrantedLabel();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace ui
