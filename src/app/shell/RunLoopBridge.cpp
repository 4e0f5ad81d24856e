#include "app/shell/RunLoopBridge.h"

#include "base/Clock.h"
#include "base/MainQueue.h"
#include "base/RunLoop.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>

namespace volvelle {

RunLoopBridge::RunLoopBridge()
{
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, [this] { turn(); });
    mainQueue().setWakeUp([this] { wake(); });
    wake();
}

RunLoopBridge::~RunLoopBridge()
{
    mainQueue().setWakeUp({});
    mainQueue().drain();
}

void RunLoopBridge::wake()
{
    if (!isWoken.exchange(true)) {
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
}

bool RunLoopBridge::event(QEvent* event)
{
    if (event->type() == QEvent::User) {
        turn();
        return true;
    }
    return QObject::event(event);
}

void RunLoopBridge::turn()
{
    isWoken = false;
    mainRunLoop().turn();
    if (const auto next = mainRunLoop().nextFire()) {
        timer.start(std::max(0, static_cast<int>((*next - SteadyClock().now()) * 1000.0) + 1));
    } else {
        timer.stop();
    }
}

} // namespace volvelle
