#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace volvelle {

// Has Ctrl+C and the signals that ask a program to end told by Qt's loop, those too that came since hold().
// Where one still waits half a second later, the next ends the process at once, without its temporary files.
// One for the process; the signals end it at once after its own end. [main]
class EndSignals : public QObject {
public:
    // From now on these signals wait. After what may wait for another process without end, and before
    // anything is begun that a sudden end would leave half done.
    static void hold();

    explicit EndSignals(std::function<void()> asked);
    ~EndSignals() override;

private:
    QSocketNotifier notifier;
};

} // namespace volvelle
