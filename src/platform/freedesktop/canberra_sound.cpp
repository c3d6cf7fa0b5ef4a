#include "platform/freedesktop/canberra_sound.h"

#include <canberra.h>
#include <dlfcn.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <memory>
#include <system_error>

namespace platform::freedesktop {

namespace {

// Longer than every sound that confirms something; a server that never reports the end is left.
constexpr std::chrono::seconds longestSound{10};

/// The functions of libcanberra that are used, found at run time: without the library, which need
/// not be installed, there is no sound and nothing else is missing.
struct Canberra {
    decltype(&ca_context_create) createContext = nullptr;
    decltype(&ca_context_destroy) destroyContext = nullptr;
    decltype(&ca_context_set_driver) setDriver = nullptr;
    decltype(&ca_context_open) open = nullptr;
    decltype(&ca_context_play_full) play = nullptr;
    decltype(&ca_proplist_create) createProperties = nullptr;
    decltype(&ca_proplist_destroy) destroyProperties = nullptr;
    decltype(&ca_proplist_sets) setProperty = nullptr;

    /// Never unloaded: the process ends soon.
    static std::unique_ptr<Canberra> load() {
        void* library = ::dlopen("libcanberra.so.0", RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            return nullptr;
        }
        auto canberra = std::make_unique<Canberra>();
        const bool isComplete = find(library, "ca_context_create", canberra->createContext) &&
                                find(library, "ca_context_destroy", canberra->destroyContext) &&
                                find(library, "ca_context_set_driver", canberra->setDriver) &&
                                find(library, "ca_context_open", canberra->open) &&
                                find(library, "ca_context_play_full", canberra->play) &&
                                find(library, "ca_proplist_create", canberra->createProperties) &&
                                find(library, "ca_proplist_destroy", canberra->destroyProperties) &&
                                find(library, "ca_proplist_sets", canberra->setProperty);
        return isComplete ? std::move(canberra) : nullptr;
    }

  private:
    template <typename Function>
    static bool find(void* library, const char* name, Function& function) {
        function = reinterpret_cast<Function>(::dlsym(library, name));
        return function != nullptr;
    }
};

/// ALSA's library complains on standard error about a machine without a sound card.
bool hasSoundCard() {
    std::error_code error;
    return std::filesystem::exists("/dev/snd/controlC0", error);
}

bool openFor(const Canberra& canberra, ca_context* context) {
    if (canberra.setDriver(context, "pulse") == CA_SUCCESS &&
        canberra.open(context) == CA_SUCCESS) {
        return true;
    }
    return hasSoundCard() && canberra.setDriver(context, "alsa") == CA_SUCCESS &&
           canberra.open(context) == CA_SUCCESS;
}

/// `end` is kept until the context is destroyed, since its callbacks may come until then.
void playIn(const Canberra& canberra, ca_context* context, const std::string& path,
            std::promise<void>& end) {
    ca_proplist* properties = nullptr;
    if (canberra.createProperties(&properties) != CA_SUCCESS) {
        return;
    }
    canberra.setProperty(properties, CA_PROP_MEDIA_FILENAME, path.c_str());
    canberra.setProperty(properties, CA_PROP_MEDIA_ROLE, "event");
    canberra.setProperty(properties, CA_PROP_APPLICATION_NAME, "Lumaframe");
    canberra.setProperty(properties, CA_PROP_APPLICATION_ID, "app.lumaframe.Lumaframe");
    auto heard = end.get_future();
    const auto onEnd = [](ca_context*, std::uint32_t, int, void* promise) {
        static_cast<std::promise<void>*>(promise)->set_value();
    };
    if (canberra.play(context, 1, properties, onEnd, &end) == CA_SUCCESS) {
        heard.wait_for(longestSound);
    }
    canberra.destroyProperties(properties);
}

}  // namespace

void playThroughCanberra(const std::string& path) {
    const auto canberra = Canberra::load();
    ca_context* context = nullptr;
    if (!canberra || canberra->createContext(&context) != CA_SUCCESS) {
        return;
    }
    std::promise<void> end;
    if (openFor(*canberra, context)) {
        playIn(*canberra, context, path, end);
    }
    canberra->destroyContext(context);
}

}  // namespace platform::freedesktop
