#pragma once

#include "audio/SequencedUnit.h"
#include "cli/sound/MusicTransport.h"

#include <memory>

namespace volvelle {

// Plays by the realtime sequencer inside the instrument of an engine. [main]
class SequencedTransport : public MusicTransport {
public:
    explicit SequencedTransport(std::shared_ptr<SequencedUnit> played); // never null

    Result<> load(const std::vector<std::uint8_t>& data) override { return unit->load(data); }

    Result<> start() override;

    void pause() override { unit->pause(); }

    void goOn() override { unit->goOn(); }

    void stop() override { unit->stop(); }

    double position() const override { return unit->positionInBeats(); }

    bool hasEnded() const override { return unit->hasEnded(); }

private:
    const std::shared_ptr<SequencedUnit> unit;
};

} // namespace volvelle
