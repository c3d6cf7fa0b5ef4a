#include "ui/folder_chooser.h"

#include <QDir>
#include <QFileDialog>
#include <QStandardPaths>
#include <QUrl>
#include <utility>

namespace ui {

namespace {

QString firstShown(const std::string& path) {
    const QString chosen = QString::fromStdString(path);
    const QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    for (const QString& folder : {chosen, downloads}) {
        if (!folder.isEmpty() && QDir(folder).exists()) {
            return folder;
        }
    }
    return QDir::homePath();
}

}  // namespace

void chooseFolder(QWidget& parent, const std::string& path,
                  std::function<void(const std::string& folder)> onChosen) {
    auto* dialog = new QFileDialog(&parent, QStringLiteral("Choose a Folder"), firstShown(path));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, QStringLiteral("Select"));
    QObject::connect(dialog, &QFileDialog::accepted, dialog,
                     [dialog, onChosen = std::move(onChosen)] {
                         const auto chosen = dialog->selectedUrls();
                         if (!chosen.isEmpty() && chosen.front().isLocalFile()) {
                             onChosen(chosen.front().toLocalFile().toStdString());
                         }
                     });
    // Modal to the window: a dialog of the system's own that is modal to the program would have to
    // be waited for in a loop of its own.
    dialog->open();
}

}  // namespace ui
