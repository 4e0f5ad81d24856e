#include "cli/sound/PlatformTransport.h"

#include <utility>

namespace volvelle {

std::shared_ptr<PlatformTransport> PlatformTransport::make(const std::shared_ptr<AVAudioEngine>& engine,
                                                           std::shared_ptr<AVAudioUnit> unit)
{
    std::shared_ptr<PlatformTransport> made(new PlatformTransport(std::move(unit)));
    made->transport->delegate = made;
    made->transport->connect(engine);
    return made;
}

PlatformTransport::PlatformTransport(std::shared_ptr<AVAudioUnit> unit)
    : unit(std::move(unit)), transport(MIDISequencer::make())
{
}

Result<> PlatformTransport::load(const std::vector<std::uint8_t>& data)
{
    transport->loadFromData(data);
    transport->setTrackPorts(unit);
    return {};
}

Result<> PlatformTransport::start()
{
    return transport->start() ? Result<>() : failure("The music could not be started.");
}

void PlatformTransport::onSequencerStateChanged(std::string_view /*state*/) {}

void PlatformTransport::onSequencerProgress(double current, double /*total*/)
{
    beats = current;
}

void PlatformTransport::onSequencerComplete()
{
    isComplete = true;
}

void PlatformTransport::onMIDILoad(const std::filesystem::path& /*url*/) {}

} // namespace volvelle
