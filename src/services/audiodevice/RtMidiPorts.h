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

    Result<std::vector<std::string>> outputNames() override;
    Result<std::unique_ptr<MIDIOutput>> openOutput(const std::string& name) override;
    Result<std::unique_ptr<MIDIOutput>> openVirtualOutput(const std::string& name) override;

private:
    // Fails where no service answers.
    Result<std::unique_ptr<RtMidiOut>> connect() const;

    std::vector<RtMidi::Api> order;
};

} // namespace volvelle
