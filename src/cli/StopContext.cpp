#include "cli/StopContext.h"

#include "base/FatalStop.h"
#include "base/Text.h"
#include "cli/CommandOutput.h"

#include <string>

namespace volvelle {

namespace {

std::string line;
FinalStep stepBefore = nullptr;

void tellFileAndStop()
{
    CommandOutput(false).failure(line);
    if (stepBefore != nullptr) {
        stepBefore();
    }
}

} // namespace

StopContext::StopContext(const std::filesystem::path& file)
{
    line = concat("That stopped the loading of '", file.string(), "'.");
    stepBefore = setFinalStep(tellFileAndStop);
}

StopContext::~StopContext()
{
    setFinalStep(stepBefore);
}

} // namespace volvelle
