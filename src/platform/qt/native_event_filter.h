#pragma once

#include <functional>
#include <memory>

namespace platform::qt {

/// Shows each event of the window system to a function before the toolkit sees it. Main thread,
/// while a QApplication lives.
class NativeEventFilter {
  public:
    enum class Verdict { pass, consumed };
    /// What the event is depends on the window system: with X11 an `xcb_generic_event_t`.
    using Look = std::function<Verdict(const void* event)>;

    explicit NativeEventFilter(Look look);
    ~NativeEventFilter();
    NativeEventFilter(const NativeEventFilter&) = delete;
    NativeEventFilter& operator=(const NativeEventFilter&) = delete;

  private:
    class Filter;
    std::unique_ptr<Filter> filter_;
};

}  // namespace platform::qt
