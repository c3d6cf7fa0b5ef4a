#include <cstdio>
#include <memory>
#include <string>

#include "app/lumaframe_app.h"
#include "app/notification_center.h"
#include "platform/patient_log.h"
#include "platform/running_platform.h"
#include "platform/select_platform.h"
#include "platform/session.h"

namespace {

int fail(const base::Error& error) {
    std::fprintf(stderr, "%s\n", error.sentence.c_str());
    return 1;
}

}  // namespace

int main(int, char** argv) {
    const platform::Session session = platform::Session::fromEnvironment();
    platform::settleEnvironment(session);
    const auto system = platform::selectPlatform(platform::compiledSystems(), session);
    if (!system) {
        return fail(system.error());
    }
    platform::PatientLog log;
    app::NotificationCenter notifications;
    const auto running =
        system.value().create({.arguments = argv, .notifications = notifications, .log = log});
    if (!running) {
        return fail(running.error());
    }
    platform::RunningPlatform& platform = *running.value();

    std::unique_ptr<app::LumaframeApp> lumaframe;
    const platform::Requests requests{
        .activate = [&] { lumaframe->showMainWindow(); },
        .performAction = [&](const std::string& action) { lumaframe->performAction(action); }};
    if (platform.serve(requests) == platform::Instance::second) {
        return 0;
    }
    lumaframe = std::make_unique<app::LumaframeApp>(platform.ports(), notifications, log);
    platform.showScenes(lumaframe->scenes());
    lumaframe->launch(session.isStartedByBus ? app::LaunchReason::action : app::LaunchReason::user);
    platform.showMenu(lumaframe->menu());
    return platform.run();
}
