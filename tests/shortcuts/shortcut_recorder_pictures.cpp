// Pictures of the shortcut recorder in all of its states, to be looked at:
//
//   lumaframe_shortcut_recorder_pictures OUTPUT_DIRECTORY
#include <QAbstractButton>
#include <QApplication>
#include <QPalette>
#include <QPixmap>
#include <QVBoxLayout>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "shortcuts/recorder_fixture.h"
#include "shortcuts/shortcut_recorder.h"

namespace {

struct Row {
    std::int64_t keyCode;
    std::int64_t modifiers;
};

/// One below the other: the default, what else may be recorded, and one that records.
void keep(const QString& file, Qt::LayoutDirection direction) {
    doubles::CallLog calls;
    doubles::FakeKeyMonitor keyboard;
    // command, shift, option, control: 256, 512, 2048, 4096.
    const std::vector<Row> rows{{18, 768},  {49, 6912}, {36, 256},  {48, 512},  {51, 2048},
                                {53, 4096}, {123, 768}, {126, 768}, {10, 6144}, {19, 768}};
    std::vector<std::unique_ptr<fixtures::BoundShortcut>> bound;
    QWidget window;
    window.setLayoutDirection(direction);
    auto* column = new QVBoxLayout(&window);
    shortcuts::ShortcutRecorder* last = nullptr;
    for (const Row& row : rows) {
        bound.push_back(std::make_unique<fixtures::BoundShortcut>(
            fixtures::BoundShortcut{row.keyCode, row.modifiers}));
        last = new shortcuts::ShortcutRecorder(bound.back()->fields(calls), keyboard, &window);
        column->addWidget(last);
    }
    last->pill().click();
    window.resize(220, window.sizeHint().height());
    window.show();
    QCoreApplication::sendPostedEvents();
    window.grab().save(file);
    std::cout << file.toStdString() << std::endl;
}

QPalette darkPalette() {
    QPalette palette(QColor(0x2b, 0x2b, 0x2e));
    palette.setColor(QPalette::WindowText, QColor(0xf2, 0xf2, 0xf2));
    return palette;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]) + u'/';
    keep(folder + QStringLiteral("light.png"), Qt::LeftToRight);
    keep(folder + QStringLiteral("right-to-left.png"), Qt::RightToLeft);
    QApplication::setPalette(darkPalette());
    keep(folder + QStringLiteral("dark.png"), Qt::LeftToRight);
    return 0;
}
