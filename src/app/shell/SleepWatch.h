#pragma once

#include <QObject>

#include <functional>

namespace volvelle {

// Tells when the machine goes to sleep and when it woke up, as the login service on the system's bus says.
// Without such a bus it tells nothing. [main]
class SleepWatch : public QObject {
    Q_OBJECT

public:
    // Each sleep is told once, and each waking after one.
    SleepWatch(std::function<void()> sleeps, std::function<void()> wakes);

private Q_SLOTS:
    void prepareForSleep(bool isStarting);

private:
    const std::function<void()> sleeps;
    const std::function<void()> wakes;
    bool isAsleep = false;
};

} // namespace volvelle
