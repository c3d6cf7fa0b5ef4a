#include "platform/qt/help_window.h"

#include <QTextBrowser>
#include <QUrl>

namespace platform::qt {

namespace {

/// Points.
constexpr int width = 620;
constexpr int height = 560;
constexpr int margin = 24;

}  // namespace

void HelpWindow::show(const std::string& path) {
    if (window_ == nullptr) {
        auto* browser = new QTextBrowser;
        browser->setAttribute(Qt::WA_DeleteOnClose);
        browser->setObjectName(QStringLiteral("help"));
        browser->setWindowRole(browser->objectName());
        browser->setWindowTitle(QStringLiteral("Lumaframe Help"));
        browser->setFrameShape(QFrame::NoFrame);
        browser->setSource(QUrl::fromLocalFile(QString::fromStdString(path)));
        browser->document()->setDocumentMargin(margin);
        browser->resize(width, height);
        // In front of the permissions window, which floats.
        browser->setWindowFlag(Qt::WindowStaysOnTopHint);
        window_ = browser;
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
}

}  // namespace platform::qt
