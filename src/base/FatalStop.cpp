#include "base/FatalStop.h"

#include "base/MainQueue.h"
#include "base/PlainText.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace volvelle {

namespace {
std::atomic<FinalStep> finalStep{nullptr};
} // namespace

void fatalStop(std::string_view message)
{
    std::string line = plainText(message);
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
    mainQueue().writeWaitingLines();
    if (const FinalStep step = finalStep.load()) {
        step();
    }
    std::abort();
}

FinalStep setFinalStep(FinalStep step)
{
    return finalStep.exchange(step);
}

} // namespace volvelle
