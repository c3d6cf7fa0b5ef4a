#pragma once

#include <memory>

class QMenu;

namespace platform::macos {

/// The program's permanent presence: an icon in the menu bar with its menu.
class StatusItem {
  public:
    // Main thread, as every method here.
    /// `menu` must outlive the object.
    explicit StatusItem(QMenu& menu);
    ~StatusItem();
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;

  private:
    struct Item;
    std::unique_ptr<Item> item_;
};

}  // namespace platform::macos
