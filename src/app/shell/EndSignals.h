#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace volvelle {

// Has Ctrl+C and the signals that ask a program to end told by Qt's loop. One for the process; the signals
// are as before with its end. [main]
class EndSignals : public QObject {
public:
    explicit EndSignals(std::function<void()> asked);
    ~EndSignals() override;

private:
    int ends[2] = {-1, -1}; // of a pipe
    QSocketNotifier notifier;
};

} // namespace volvelle
