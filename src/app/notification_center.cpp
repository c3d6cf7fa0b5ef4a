#include "app/notification_center.h"

#include <utility>
#include <vector>

namespace app {

NotificationCenter::Observation NotificationCenter::observe(const std::string& name,
                                                            std::function<void()> observer) {
    auto token = std::make_shared<const std::function<void()>>(std::move(observer));
    observers_.emplace(name, token);
    return Observation(token);
}

void NotificationCenter::post(const std::string& name) {
    // Held while they run: an observer may end its own observation, or begin another.
    std::vector<std::shared_ptr<const std::function<void()>>> due;
    const auto [first, last] = observers_.equal_range(name);
    for (auto entry = first; entry != last;) {
        if (auto observer = entry->second.lock()) {
            due.push_back(std::move(observer));
            ++entry;
        } else {
            entry = observers_.erase(entry);
        }
    }
    for (const auto& observer : due) {
        (*observer)();
    }
}

}  // namespace app
