#include "services/audiograph/graph/AudioComponentRegistry.h"

#include "services/audiograph/graph/PeakLimiter.h"

#include <array>
#include <map>

namespace volvelle {

namespace {

using Name = std::array<std::uint32_t, 3>;

Name nameOf(const AudioComponentDescription& description)
{
    return {description.componentType, description.componentSubType, description.componentManufacturer};
}

std::map<Name, AudioComponentFactory>& components()
{
    static std::map<Name, AudioComponentFactory> list{
        {nameOf(limiterComponent), [](const AudioComponentDescription& description) {
             return std::make_shared<PeakLimiter>(description);
         }}};
    return list;
}

} // namespace

void registerAudioComponent(const AudioComponentDescription& description, AudioComponentFactory factory)
{
    if (factory) {
        components()[nameOf(description)] = std::move(factory);
    } else {
        components().erase(nameOf(description));
    }
}

std::shared_ptr<AUAudioUnit> makeAudioComponent(const AudioComponentDescription& description)
{
    const auto found = components().find(nameOf(description));
    return found == components().end() ? nullptr : found->second(description);
}

} // namespace volvelle
