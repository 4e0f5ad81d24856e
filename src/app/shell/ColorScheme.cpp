#include "app/shell/ColorScheme.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>

namespace volvelle {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.Settings";
const QString group = "org.freedesktop.appearance";
const QString key = "color-scheme";
constexpr unsigned preferDark = 1;
constexpr unsigned preferLight = 2;

} // namespace

ColorScheme::ColorScheme()
    : current(QGuiApplication::palette().color(QPalette::Window).lightness() < 128 ? Theme::dark
                                                                                   : Theme::light)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    bus.connect(service, path, interface, "SettingChanged", this, SLOT(settingChanged(QDBusMessage)));
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, "Read");
    question << group << key;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (!reply.isError()) {
            take(reply.value().variant());
        }
        call->deleteLater();
    });
}

// Group, key and value.
void ColorScheme::settingChanged(const QDBusMessage& message)
{
    const QVariantList parts = message.arguments();
    if (parts.size() == 3 && parts[0] == group && parts[1] == key) {
        take(parts[2]);
    }
}

// The portal wraps a variant into another one.
void ColorScheme::take(const QVariant& value)
{
    if (value.canConvert<QDBusVariant>()) {
        take(value.value<QDBusVariant>().variant());
        return;
    }
    const unsigned wish = value.toUInt();
    if (wish != preferDark && wish != preferLight) {
        return;
    }
    const Theme wanted = wish == preferDark ? Theme::dark : Theme::light;
    if (wanted != current) {
        current = wanted;
        Q_EMIT changed(current);
    }
}

} // namespace volvelle
