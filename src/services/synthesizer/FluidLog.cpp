#include "services/synthesizer/FluidLog.h"

#include "base/Console.h"
#include "base/Text.h"

#include <fluidsynth.h>

#include <mutex>

namespace volvelle {

namespace {

thread_local bool isRendering = false;

void print(int level, const char* message, void* /*data*/)
{
    constexpr const char* speaker = "Synthesizer: ";
    if (level > FLUID_WARN) {
        return;
    }
    if (isRendering) {
        realtimeprint(speaker, message);
    } else {
        debugprint(speaker, message);
    }
}

} // namespace

void routeFluidLog()
{
    static std::once_flag once;
    std::call_once(once, [] {
        for (const int level : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG}) {
            fluid_set_log_function(level, print, nullptr);
        }
    });
}

RenderingMark::RenderingMark() noexcept : before(isRendering)
{
    isRendering = true;
}

RenderingMark::~RenderingMark()
{
    isRendering = before;
}

} // namespace volvelle
