#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "desktop/desktop.h"

namespace journeys {

/// A window manager with what blends its windows: the desktops that people have.
struct SetUp {
    /// For the names of tests: letters, digits and underscores.
    std::string name;
    desktop::WindowManager windowManager;
    desktop::Compositor compositor;
    /// For people.
    std::string title;
};

inline void PrintTo(const SetUp& setUp, std::ostream* stream) {
    *stream << setUp.name;
}

/// Every set-up that the program is tested under.
inline const std::vector<SetUp>& everySetUp() {
    using desktop::Compositor;
    using desktop::WindowManager;
    static const std::vector<SetUp> setUps{
        {"no_window_manager", WindowManager::none, Compositor::none, "No window manager"},
        {"no_window_manager_picom", WindowManager::none, Compositor::picom,
         "No window manager, picom (xrender)"},
        {"openbox", WindowManager::openbox, Compositor::none, "openbox"},
        {"openbox_picom_xrender", WindowManager::openbox, Compositor::picom,
         "openbox, picom (xrender)"},
        {"openbox_picom_fading", WindowManager::openbox, Compositor::picomFading,
         "openbox, picom (xrender) with fading"},
        {"openbox_picom_fading_shadows", WindowManager::openbox, Compositor::picomShadows,
         "openbox, picom (xrender) with fading and shadows"},
        {"openbox_picom_glx", WindowManager::openbox, Compositor::picomGlx,
         "openbox, picom (OpenGL in software)"},
        {"xfwm4", WindowManager::xfwm4, Compositor::none, "xfwm4, compositing off"},
        {"xfwm4_compositing", WindowManager::xfwm4, Compositor::builtIn, "xfwm4, compositing on"},
        {"kwin_x11", WindowManager::kwin, Compositor::none, "kwin_x11, compositing off"},
        {"kwin_x11_compositing", WindowManager::kwin, Compositor::builtIn,
         "kwin_x11, compositing on (OpenGL in software)"},
        {"mutter", WindowManager::mutter, Compositor::builtIn, "mutter as X11"},
        {"i3", WindowManager::i3, Compositor::none, "i3"},
        {"i3_picom", WindowManager::i3, Compositor::picom, "i3, picom (xrender)"},
    };
    return setUps;
}

/// Some of them, for what few of them make a difference to.
inline std::vector<SetUp> setUpsNamed(const std::vector<std::string>& names) {
    std::vector<SetUp> chosen;
    for (const SetUp& setUp : everySetUp()) {
        if (std::find(names.begin(), names.end(), setUp.name) != names.end()) {
            chosen.push_back(setUp);
        }
    }
    return chosen;
}

/// The name of a set-up's tests.
inline std::string setUpName(const testing::TestParamInfo<SetUp>& parameter) {
    return parameter.param.name;
}

}  // namespace journeys
