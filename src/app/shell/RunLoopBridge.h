#pragma once

#include <QObject>
#include <QTimer>

#include <atomic>

namespace volvelle {

// Has Qt's loop turn the main run loop: whenever something is posted to the main queue, and when a timer is
// due. One for the process, made once the main queue is there; what waits in the end is drained. [main]
class RunLoopBridge : public QObject {
public:
    RunLoopBridge();
    ~RunLoopBridge() override;

protected:
    bool event(QEvent* event) override;

private:
    void wake(); // [any]
    void turn();

    std::atomic<bool> isWoken{false};
    QTimer timer;
};

} // namespace volvelle
