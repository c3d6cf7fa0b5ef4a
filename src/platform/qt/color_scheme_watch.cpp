#include "platform/qt/color_scheme_watch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <limits>
#include <optional>
#include <utility>

namespace platform::qt {

namespace {

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString changeSignal = QStringLiteral("SettingChanged");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");
/// Without a limit no timer runs; a question that is not answered costs nothing.
constexpr int noLimit = std::numeric_limits<int>::max();

/// None for a value that is no number. Numbers that are not known count as no preference, as the
/// interface asks for.
std::optional<ColorScheme> schemeFrom(QVariant value) {
    // `Read` wraps the value twice, some portals only once.
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    if (value.metaType() != QMetaType::fromType<uint>()) {
        return std::nullopt;
    }
    switch (value.toUInt()) {
        case 1:
            return ColorScheme::dark;
        case 2:
            return ColorScheme::light;
        default:
            return ColorScheme::unstated;
    }
}

}  // namespace

ColorSchemeWatch::ColorSchemeWatch(const QDBusConnection& bus,
                                   std::function<void(ColorScheme)> onChange)
    : bus_(bus),
      serviceWatcher_(portalName, bus, QDBusServiceWatcher::WatchForRegistration),
      onChange_(std::move(onChange)) {
    connect(&serviceWatcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] { ask(); });
    // The toolkit looks the slot's types up by their names; one that it has not met yet it refuses.
    qRegisterMetaType<QDBusVariant>();
    // Only this setting's changes: every other one would wake the program up for nothing.
    bus_.connect(portalName, portalPath, settingsInterface, changeSignal, {appearance, colorScheme},
                 QStringLiteral("ssv"), this, SLOT(noteSetting(QString, QString, QDBusVariant)));
    ask();
}

ColorSchemeWatch::~ColorSchemeWatch() {
    bus_.disconnect(portalName, portalPath, settingsInterface, changeSignal,
                    {appearance, colorScheme}, QStringLiteral("ssv"), this,
                    SLOT(noteSetting(QString, QString, QDBusVariant)));
}

void ColorSchemeWatch::ask() {
    auto question = QDBusMessage::createMethodCall(portalName, portalPath, settingsInterface,
                                                   QStringLiteral("Read"));
    question << appearance << colorScheme;
    auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(question, noLimit), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusMessage reply = finished->reply();
                if (reply.type() == QDBusMessage::ReplyMessage) {
                    note(reply.arguments().value(0));
                }
            });
}

void ColorSchemeWatch::noteSetting(const QString& space, const QString& key,
                                   const QDBusVariant& value) {
    if (space == appearance && key == colorScheme) {
        note(value.variant());
    }
}

void ColorSchemeWatch::note(const QVariant& value) {
    if (const auto scheme = schemeFrom(value)) {
        onChange_(*scheme);
    }
}

}  // namespace platform::qt
