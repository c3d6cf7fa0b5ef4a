// An ordinary message box of another Qt program:
//
//   lumaframe_test_message_box light|dark TEXT DETAILS CHECK_BOX
#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QPalette>

namespace {

/// As desktops with a dark theme have it.
QPalette darkPalette() {
    QPalette palette;
    const QColor window(0x2d, 0x2f, 0x33);
    const QColor text(0xe6, 0xe6, 0xe6);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Button, window.lighter(130));
    palette.setColor(QPalette::Base, window.darker(140));
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        palette.setColor(role, text);
    }
    return palette;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication::setStyle("Fusion");
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 5) {
        return 2;
    }
    QFont font("DejaVu Sans");
    font.setPixelSize(13);
    QApplication::setFont(font);
    if (arguments[1] == "dark") {
        QApplication::setPalette(darkPalette());
    }
    QMessageBox box(QMessageBox::Warning, "Editor", arguments[2],
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    box.setInformativeText(arguments[3]);
    QCheckBox checkBox(arguments[4]);
    box.setCheckBox(&checkBox);
    box.show();
    return QApplication::exec();
}
