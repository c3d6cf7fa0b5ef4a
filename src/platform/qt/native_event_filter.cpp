#include "platform/qt/native_event_filter.h"

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QCoreApplication>
#include <utility>

namespace platform::qt {

class NativeEventFilter::Filter final : public QAbstractNativeEventFilter {
  public:
    explicit Filter(Look look) : look_(std::move(look)) {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }
    bool nativeEventFilter(const QByteArray& /*type*/, void* event, qintptr* /*result*/) override {
        return look_(event) == Verdict::consumed;
    }

  private:
    Look look_;
};

NativeEventFilter::NativeEventFilter(Look look)
    : filter_(std::make_unique<Filter>(std::move(look))) {}

NativeEventFilter::~NativeEventFilter() = default;

}  // namespace platform::qt
