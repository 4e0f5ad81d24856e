#pragma once

#include <array>
#include <csignal>

namespace volvelle {

// What asks a process to end and can be answered.
inline constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU};

// Holds those back for its lifetime, unless they are ignored; one that came meanwhile comes at the end.
// [main] While there is no other thread.
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
