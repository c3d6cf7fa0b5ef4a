#include "ui/bound_check_box.h"

namespace ui {

BoundCheckBox::BoundCheckBox(const QString& label, const SettingBinding<bool>& setting)
    : CheckBox(label), setting_(setting) {
    setObjectName(QString::fromLatin1(setting.key()));
    setChecked(setting.value());
    // "toggled" and not "clicked": assistive programs toggle without a click. It also comes when
    // the box follows the store, which then holds the value already.
    connect(this, &QCheckBox::toggled, this, [this](bool isOn) {
        if (isOn != setting_.value()) {
            setting_.set(isOn);
        }
    });
    observation_ = setting.observe([this] { setChecked(setting_.value()); });
}

}  // namespace ui
