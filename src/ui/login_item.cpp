#include "ui/login_item.h"

#include <string>
#include <utility>

namespace ui {

LoginItem::LoginItem(Mediator mediator, std::function<void(RunAtStartup value)> onReverted)
    : mediator_(mediator),
      onReverted_(std::move(onReverted)),
      runAtStartup_(mediator.service.status() == LoginItemStatus::enabled ? RunAtStartup::on
                                                                          : RunAtStartup::off) {}

void LoginItem::setRunAtStartup(RunAtStartup value) {
    if (value != runAtStartup_) {
        update(std::exchange(runAtStartup_, value), value);
    }
}

void LoginItem::update(RunAtStartup oldValue, RunAtStartup newValue) {
    const bool isRegistration = newValue == RunAtStartup::on;
    const base::Status changed =
        isRegistration ? mediator_.service.registerItem() : mediator_.service.unregisterItem();
    if (changed) {
        return;
    }
    const char* verb = isRegistration ? "register" : "unregister";
    mediator_.log.line("Failed to " + std::string(verb) +
                       " login item: " + changed.error().sentence);
    // The value first: the switch that follows it reports a change to a value that is there
    // already.
    runAtStartup_ = oldValue;
    onReverted_(oldValue);
}

}  // namespace ui
