#pragma once

#include "base/realtime/Handoff.h"
#include "base/realtime/LatestValue.h"
#include "services/audiograph/sequencer/SequencerCommand.h"
#include "services/audiograph/sequencer/SequencerContent.h"
#include "services/audiograph/sequencer/SequencerPosition.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace volvelle {

// The part of a sequencer that plays. Held by the sequencer and by the render plan.
class SequencerCore {
public:
    // MARK: [main]

    void setContent(std::unique_ptr<SequencerContent> content) { contents.publish(std::move(content)); }

    void send(const SequencerCommand& command) { commands.write(command); }

    SequencerPosition position();

    void collectGarbage() { contents.collect(); }

    // MARK: [render]

    // Obeys what the main thread sent.
    void beginBlock() noexcept;

    // Hands the units the events of the next `frames` frames, and moves on by them.
    void play(int frames) noexcept;

    // Tells the main thread how far it is.
    void endBlock() noexcept;

    // The last call: ends what sounds.
    void leave() noexcept;

private:
    bool takeContent(bool isSounding) noexcept;
    void begin(double beats, bool isMove) noexcept;
    void anchor(double seconds) noexcept;
    void playGroup(std::size_t first, std::size_t last) noexcept;
    bool isDue(const SequencerEvent& noteOff) const noexcept;
    void endAtOnce(const std::vector<SequencerEvent>& events, std::size_t onset, std::size_t last) noexcept;
    double halfFrame() const noexcept;
    double seconds() const noexcept;
    double beats() const noexcept;
    double distance(const SequencerEvent& event) const noexcept;
    std::int64_t frame(const SequencerEvent& event) const noexcept;
    double offset(const SequencerEvent& event) const noexcept;

    LatestValue<SequencerCommand> commands;   // main thread to render thread
    LatestValue<SequencerPosition> positions; // render thread to main thread
    Handoff<SequencerContent> contents;

    // All below: render thread.
    SequencerCommand current;
    std::size_t cursor = 0; // the next event
    std::int64_t clock = 0; // frames played so far
    std::int64_t anchorFrame = 0;
    double anchorSeconds = 0.0; // the position at anchorFrame
    double startSeconds = 0.0;  // where playing began
};

} // namespace volvelle
