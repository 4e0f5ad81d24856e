#pragma once

#include <csignal>

namespace volvelle {

// Holds back, for its lifetime, the signals that ask the process to end, and that it does not ignore; one
// that came meanwhile comes at the end. [one thread, the only one of the process]
class HeldSignals {
public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    // Whether one of them waits.
    bool isOneWaiting() const;

private:
    sigset_t held{};
    sigset_t before{};
};

} // namespace volvelle
