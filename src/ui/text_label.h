#pragma once

#include <QLabel>

namespace ui {

/// Text that follows the desktop's colours. Main thread.
class TextLabel final : public QLabel {
  public:
    enum class Prominence { primary, secondary, refused };
    TextLabel(const QString& text, const QFont& font, Prominence prominence);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Prominence prominence_;
};

}  // namespace ui
