#pragma once

#include "shortcuts/hot_key_service.h"

namespace platform::macos {

/// The system's hot keys, on the application's event target. One per process: the callback of the
/// system gets no user data.
class CarbonHotKeyService final : public shortcuts::HotKeyService {
  public:
    // Main thread, as every method here and the calls of the handler: the application's event
    // target belongs to it.
    CarbonHotKeyService() = default;
    ~CarbonHotKeyService() override;
    CarbonHotKeyService(const CarbonHotKeyService&) = delete;
    CarbonHotKeyService& operator=(const CarbonHotKeyService&) = delete;

    Registration<shortcuts::HotKeyRef> registerHotKey(std::uint32_t keyCode,
                                                      std::uint32_t modifiers,
                                                      shortcuts::EventHotKeyID hotKeyID) override;
    shortcuts::OSStatus unregisterHotKey(shortcuts::HotKeyRef ref) override;
    Registration<shortcuts::EventHandlerRef> installEventHandler(Handler handler) override;
    shortcuts::OSStatus removeEventHandler(shortcuts::EventHandlerRef ref) override;
};

}  // namespace platform::macos
