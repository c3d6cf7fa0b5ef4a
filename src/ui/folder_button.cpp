#include "ui/folder_button.h"

#include <QPainter>

#include "ui/appearance.h"
#include "ui/folder_chooser.h"
#include "ui/folder_label.h"
#include "ui/tool_tip.h"

namespace ui {

namespace {

constexpr int horizontalPadding = 8;
constexpr int verticalPadding = 3;
constexpr double opacity = 0.1;
constexpr double hoveredOpacity = 0.14;
constexpr double pressedOpacity = 0.2;

}  // namespace

FolderButton::FolderButton(const SettingBinding<std::string>& path) : path_(path) {
    setObjectName(QString::fromLatin1(path.key()));
    setFont(systemFont(capsuleTextSize, QFont::Medium));
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(this, &QPushButton::clicked, this, [this] {
        chooseFolder(*this, path_.value(),
                     [this](const std::string& folder) { path_.set(folder); });
    });
    observation_ = path.observe([this] { showPath(); });
    showPath();
}

void FolderButton::showPath() {
    const std::string path = path_.value();
    // Not the button's text, in which an ampersand would mark a key.
    label_ = QString::fromStdString(folderLabel(path));
    setAccessibleName(label_);
    setToolTip(toolTipOf(QString::fromStdString(path)));
    updateGeometry();
    update();
}

QSize FolderButton::sizeFor(const QString& label) const {
    return {fontMetrics().horizontalAdvance(label) + 2 * horizontalPadding,
            fontMetrics().height() + 2 * verticalPadding};
}

QSize FolderButton::sizeHint() const {
    return sizeFor(label_);
}

QSize FolderButton::minimumSizeHint() const {
    return sizeHint().boundedTo(leastRoom());
}

QSize FolderButton::leastRoom() const {
    return sizeFor(QString::fromStdString(folderLabel({})));
}

void FolderButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double strength = isDown() ? pressedOpacity : underMouse() ? hoveredOpacity : opacity;
    painter.fillPath(capsule(rect()), primaryColor(palette(), strength));
    const QRect inside = rect().adjusted(horizontalPadding, 0, -horizontalPadding, 0);
    painter.setPen(primaryColor(palette()));
    const bool isWhole = fontMetrics().horizontalAdvance(label_) <= inside.width();
    painter.drawText(
        inside, Qt::AlignCenter | Qt::TextSingleLine,
        isWhole ? label_ : fontMetrics().elidedText(label_, Qt::ElideRight, inside.width()));
}

}  // namespace ui
