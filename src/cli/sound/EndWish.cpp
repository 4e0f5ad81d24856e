#include "cli/sound/EndWish.h"

#include "services/files/HeldSignals.h"

#include <atomic>
#include <csignal>

namespace volvelle {

namespace {

std::atomic<bool> endWanted{false};

void onSignal(int /*signal*/)
{
    endWanted = true;
}

} // namespace

void listenForEndWish()
{
    for (const int signal : endingSignals) {
        if (std::signal(signal, onSignal) == SIG_IGN && signal != SIGPIPE) {
            std::signal(signal, SIG_IGN);
        }
    }
    for (const int signal : {SIGTTIN, SIGTTOU}) {
        std::signal(signal, SIG_IGN);
    }
}

bool takeEndWish()
{
    return endWanted.exchange(false);
}

} // namespace volvelle
