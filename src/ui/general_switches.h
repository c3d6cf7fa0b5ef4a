#pragma once

#include <QWidget>

#include "ui/content_settings.h"
#include "ui/login_item.h"

namespace ui {

/// The switches that hold for both modes. Main thread.
class GeneralSwitches final : public QWidget {
  public:
    /// Reads the login item's state once. What `loginItem` names outlives the object.
    GeneralSwitches(const ContentSettings& settings, LoginItem::Mediator loginItem);

  private:
    LoginItem loginItem_;
};

}  // namespace ui
