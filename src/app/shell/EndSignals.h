#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace volvelle {

// Has Ctrl+C and the signals that ask a program to end told by Qt's loop, those too that came since hold().
// One for the process; the signals end it at once after its own end. [main]
class EndSignals : public QObject {
public:
    // From now on these signals wait. Before anything is begun that a sudden end would leave half done.
    static void hold();

    explicit EndSignals(std::function<void()> asked);
    ~EndSignals() override;

private:
    QSocketNotifier notifier;
};

} // namespace volvelle
