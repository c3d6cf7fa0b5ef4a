#pragma once

#include <QWidget>

#include "base/bundle.h"

namespace ui {

/// The application's icon, where there is one, its name and its tag line. Main thread.
class ContentHeader final : public QWidget {
  public:
    explicit ContentHeader(const base::Bundle& bundle);
};

}  // namespace ui
