#pragma once

#include <QWidget>

#include "base/bundle.h"

namespace ui {

/// The application's icon, where there is one, to be dragged, and what to do with it. Main thread.
class FirstRunHeader final : public QWidget {
  public:
    explicit FirstRunHeader(const base::Bundle& bundle);
};

}  // namespace ui
