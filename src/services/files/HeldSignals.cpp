#include "services/files/HeldSignals.h"

#include <algorithm>

namespace volvelle {

HeldSignals::HeldSignals()
{
    sigemptyset(&held);
    for (const int signal : endingSignals) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            sigaddset(&held, signal);
        }
    }
    pthread_sigmask(SIG_BLOCK, &held, &before);
}

HeldSignals::~HeldSignals()
{
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

bool HeldSignals::isOneWaiting() const
{
    sigset_t waiting{};
    sigpending(&waiting);
    return std::ranges::any_of(endingSignals, [&](int signal) {
        return sigismember(&held, signal) == 1 && sigismember(&waiting, signal) == 1;
    });
}

} // namespace volvelle
