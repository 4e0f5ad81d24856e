#pragma once

#include "services/audiodevice/MIDIPorts.h"

#include <RtMidi.h>
#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// The ports of the first service that answers.
class RtMidiPorts : public MIDIPorts {
public:
    explicit RtMidiPorts(MIDIServices services);

    std::vector<std::string> outputNames(std::string& error) override;
    std::unique_ptr<MIDIOutput> openOutput(const std::string& name, std::string& error) override;
    std::unique_ptr<MIDIOutput> openVirtualOutput(const std::string& name, std::string& error) override;

private:
    // Null, with the line for no MIDI in `error`, where no service answers.
    std::unique_ptr<RtMidiOut> connect(std::string& error) const;

    std::vector<RtMidi::Api> order;
};

} // namespace volvelle
