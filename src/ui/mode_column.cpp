#include "ui/mode_column.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "shortcuts/shortcut_recorder.h"
#include "ui/appearance.h"
#include "ui/bound_check_box.h"
#include "ui/folder_button.h"
#include "ui/text_label.h"

namespace ui {

namespace {

constexpr int rowSpacing = 10;
constexpr int saveRowSpacing = 4;
/// The least that a flexible space takes, with the spacing on both of its sides.
constexpr int leastSpace = 8 + 2 * saveRowSpacing;

}  // namespace

ModeColumn::ModeColumn(const Content& content, shortcuts::KeyMonitor& keyMonitor) {
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(rowSpacing);
    stack->addWidget(new TextLabel(content.title, systemFont(captionSize, QFont::Bold),
                                   TextLabel::Prominence::secondary));
    QWidget* recorder = makeRecorder(content, keyMonitor);
    stack->addWidget(recorder);

    auto* saveRow = new QHBoxLayout;
    saveRow->setSpacing(0);
    auto* save = new BoundCheckBox(QStringLiteral("Save to"), content.save);
    save->setAccessibleDescription(content.title);
    saveRow->addWidget(save);
    saveRow->addSpacerItem(new QSpacerItem(leastSpace, 0, QSizePolicy::MinimumExpanding));
    auto* folder = new FolderButton(content.savePath);
    folder->setAccessibleDescription(content.title);
    saveRow->addWidget(folder);
    stack->addLayout(saveRow);

    auto* copy = new BoundCheckBox(QStringLiteral("Copy to clipboard"), content.copy);
    copy->setAccessibleDescription(content.title);
    stack->addWidget(copy, 0, Qt::AlignLeading);
    stack->addStretch(1);

    const int saveRowWidth = save->sizeHint().width() + leastSpace + folder->leastRoom().width();
    setMinimumWidth(std::max(saveRowWidth, stack->minimumSize().width()));
}

QWidget* ModeColumn::makeRecorder(const Content& content, shortcuts::KeyMonitor& keyMonitor) {
    const ModeShortcut& shortcut = content.shortcut;
    auto* recorder = new shortcuts::ShortcutRecorder(
        {.keyCode = {.get = [shortcut] { return shortcut.keyCode(); },
                     .set = [shortcut](std::int64_t code) { shortcut.setKeyCode(code); }},
         .modifiers = {.get = [shortcut] { return shortcut.modifiers(); },
                       .set = [shortcut](std::int64_t mask) { shortcut.setModifiers(mask); }},
         .isDefault = [shortcut] { return shortcut.isDefault(); },
         .resetAction = [shortcut] { shortcut.reset(); }},
        keyMonitor);
    recorder->setPurpose(content.title);
    recorder->setObjectName(QStringLiteral("recorder"));
    shortcutChanges_ = shortcut.observeChanges([recorder] {
        // Later: this is told before the change.
        QMetaObject::invokeMethod(
            recorder, [recorder] { recorder->refresh(); }, Qt::QueuedConnection);
    });
    return recorder;
}

QSize ModeColumn::sizeHint() const {
    return {minimumWidth(), layout()->sizeHint().height()};
}

}  // namespace ui
