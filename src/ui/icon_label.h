#pragma once

#include <QLabel>
#include <QPoint>
#include <optional>

#include "base/bundle.h"

class QMimeData;

namespace ui {

/// The application icon, and a source of drags: what is dragged away is the URL of the application.
/// Main thread.
class IconLabel final : public QLabel {
  public:
    /// `size` in points, each way. Holds no picture when the bundle's icon cannot be read.
    IconLabel(const base::Bundle& bundle, int size);

    [[nodiscard]] bool hasIcon() const { return !pixmap(Qt::ReturnByValue).isNull(); }

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    void startDrag();

    std::string location_;
    std::optional<QPoint> pressedAt_;
};

}  // namespace ui
