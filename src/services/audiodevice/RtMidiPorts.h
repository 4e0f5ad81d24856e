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
    Result<std::vector<std::string>> inputNames() override;
    Result<std::unique_ptr<MIDIInput>> openInput(const std::string& name,
                                                 std::shared_ptr<MIDIReceiver> receiver) override;
    Result<std::unique_ptr<MIDIInput>> openVirtualInput(const std::string& name,
                                                        std::shared_ptr<MIDIReceiver> receiver) override;

private:
    // For one direction, RtMidiOut or RtMidiIn. The first fails where no service answers.
    template <class Midi>
    Result<std::unique_ptr<Midi>> connect() const;
    template <class Midi>
    Result<std::vector<std::string>> names() const;
    Result<std::unique_ptr<MIDIOutput>> outputTo(const std::string& name, bool isVirtual) const;
    Result<std::unique_ptr<MIDIInput>>
    inputFrom(const std::string& name, std::shared_ptr<MIDIReceiver> receiver, bool isVirtual) const;

    std::vector<RtMidi::Api> order;
};

} // namespace volvelle
