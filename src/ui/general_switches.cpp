#include "ui/general_switches.h"

#include <QVBoxLayout>
#include <memory>
#include <utility>
#include <vector>

#include "ui/bound_check_box.h"
#include "ui/divider.h"

namespace ui {

namespace {

/// Above and below a divider.
constexpr int dividerPadding = 8;

}  // namespace

GeneralSwitches::GeneralSwitches(const ContentSettings& settings, LoginItem::Mediator loginItem)
    : loginItem_(loginItem, [this](RunAtStartup value) {
          findChild<CheckBox*>(QStringLiteral("runAtStartup"))
              ->setChecked(value == RunAtStartup::on);
      }) {
    auto* runAtStartup = new CheckBox(QStringLiteral("Run at startup"));
    runAtStartup->setObjectName(QStringLiteral("runAtStartup"));
    runAtStartup->setChecked(loginItem_.runAtStartup() == RunAtStartup::on);
    connect(runAtStartup, &QCheckBox::toggled, this, [this](bool isOn) {
        loginItem_.setRunAtStartup(isOn ? RunAtStartup::on : RunAtStartup::off);
    });
    const std::vector<QWidget*> rows{
        runAtStartup,
        new BoundCheckBox(QStringLiteral("Hide dock icon"), settings.hideDockIcon),
        new BoundCheckBox(QStringLiteral("Show notifications"), settings.showNotifications),
        new BoundCheckBox(QStringLiteral("Capture window shadows by Spacebar"),
                          settings.captureShadows),
        new BoundCheckBox(QStringLiteral("Play sounds"), settings.playSounds),
    };
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    for (QWidget* row : rows) {
        if (row != rows.front()) {
            stack->addSpacing(dividerPadding);
            stack->addWidget(new Divider(Qt::Horizontal));
            stack->addSpacing(dividerPadding);
        }
        stack->addWidget(row, 0, Qt::AlignLeading);
    }
}

}  // namespace ui
