#include "app/shell/SleepWatch.h"

#include <QDBusConnection>

#include <utility>

namespace volvelle {

SleepWatch::SleepWatch(std::function<void()> sleeps, std::function<void()> wakes)
    : sleeps(std::move(sleeps)), wakes(std::move(wakes))
{
    QDBusConnection bus = QDBusConnection::systemBus();
    if (bus.isConnected()) {
        bus.connect("org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                    "PrepareForSleep", this, SLOT(prepareForSleep(bool)));
    }
}

void SleepWatch::prepareForSleep(bool isStarting)
{
    if (std::exchange(isAsleep, isStarting) == isStarting) {
        return;
    }
    const auto& told = isStarting ? sleeps : wakes;
    told();
}

} // namespace volvelle
