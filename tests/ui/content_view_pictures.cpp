// Pictures of the settings view and the permissions window as different desktops show them, to be
// looked at:
//
//   lumaframe_content_view_pictures OUTPUT_DIRECTORY
#include <QApplication>
#include <QPalette>
#include <QPixmap>
#include <iostream>

#include "ui/content_view_world.h"
#include "ui/permissions_window.h"

namespace {

QPalette darkPalette() {
    QPalette palette(QColor(0x2b, 0x2b, 0x2e));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, QColor(0xf2, 0xf2, 0xf2));
    }
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8f, 0xf5));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

struct Variant {
    const char* name;
    std::function<void(ui_tests::ContentViewWorld&)> arrange = [](auto&) {};
    std::function<void(QWidget&)> adapt = [](auto&) {};
};

void keep(const Variant& variant, const QString& folder) {
    ui_tests::ContentViewWorld world;
    variant.arrange(world);
    ui::ContentView view(world.mediator());
    variant.adapt(view);
    view.show();
    QCoreApplication::sendPostedEvents();
    view.grab().save(folder + u'/' + QString::fromLatin1(variant.name) + QStringLiteral(".png"));
    std::cout << variant.name << ' ' << view.width() << 'x' << view.height() << std::endl;
}

void keepPermissions(const Variant& variant, const QString& folder) {
    ui_tests::ContentViewWorld world;
    variant.arrange(world);
    ui::PermissionsWindow window(world.permissionsWindowMediator());
    variant.adapt(window);
    window.show();
    QCoreApplication::sendPostedEvents();
    window.grab().save(folder + QStringLiteral("/permissions-") +
                       QString::fromLatin1(variant.name) + QStringLiteral(".png"));
    std::cout << "permissions-" << variant.name << ' ' << window.width() << 'x' << window.height()
              << std::endl;
}

const std::vector<Variant>& permissionsVariants() {
    static const auto refuse = [](ui_tests::ContentViewWorld& world) {
        world.permissions.accessibilityIsTrusted = false;
        world.fileManager.downloads.clear();
    };
    static const std::vector<Variant> variants{
        {.name = "granted"},
        {.name = "refused", .arrange = refuse},
        {.name = "right-to-left",
         .arrange = refuse,
         .adapt = [](QWidget& window) { window.setLayoutDirection(Qt::RightToLeft); }},
        {.name = "focus",
         .arrange = refuse,
         .adapt =
             [](QWidget& window) {
                 window.setAttribute(Qt::WA_KeyboardFocusChange);
                 window.findChild<QWidget*>(QStringLiteral("action"))->setFocus();
             }},
        {.name = "without-icon", .arrange = [](auto& world) { world.bundle.icon.clear(); }},
    };
    return variants;
}

void keepEveryPermissionsVariant(const QString& folder) {
    for (const Variant& variant : permissionsVariants()) {
        keepPermissions(variant, folder);
    }
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2) {
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const auto name = [&](const char* role) { return role; };
    const std::vector<Variant> variants{
        {.name = "light"},
        {.name = "right-to-left",
         .adapt = [](QWidget& view) { view.setLayoutDirection(Qt::RightToLeft); }},
        {.name = "long-folder",
         .arrange =
             [](auto& world) {
                 world.settings.setString(app::keys::screenshotSavePath,
                                          "/home/someone/Pictures of everything that happened");
                 world.settings.setString(app::keys::ocrSavePath, "/home/someone/Shots");
                 world.manager->setScreenshotKeyCode(20);
             }},
        {.name = "focus",
         .adapt =
             [](QWidget& view) {
                 view.setAttribute(Qt::WA_KeyboardFocusChange);
                 view.findChild<QWidget*>(QStringLiteral("hideDockIcon"))->setFocus();
             }},
        {.name = "without-icon", .arrange = [](auto& world) { world.bundle.icon.clear(); }},
    };
    for (const Variant& variant : variants) {
        keep(variant, folder);
    }
    keepEveryPermissionsVariant(folder);
    const QFont usual = QApplication::font();
    QApplication::setFont(QFont(QStringLiteral("URW Bookman"), 18));
    keep({.name = "large-fonts"}, folder);
    keepPermissions({.name = "large-fonts", .arrange = permissionsVariants().at(1).arrange},
                    folder);
    QApplication::setFont(usual);
    QApplication::setPalette(darkPalette());
    keep({.name = name("dark")}, folder);
    keepPermissions({.name = "dark", .arrange = permissionsVariants().at(1).arrange}, folder);
    keepPermissions({.name = "dark-granted"}, folder);
    return 0;
}
