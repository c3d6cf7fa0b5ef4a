#pragma once

#include <QWidget>
#include <functional>
#include <string>

namespace ui {

/// Shows the platform's folder dialog, modal to `parent`'s window, and returns at once. `onChosen`
/// is called on the main thread with the path of an existing folder when the user has accepted one,
/// and else never. The dialog shows the folder at `path` first, where there is one, and ends with
/// `parent` at the latest.
void chooseFolder(QWidget& parent, const std::string& path,
                  std::function<void(const std::string& folder)> onChosen);

}  // namespace ui
