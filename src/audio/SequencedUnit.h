#pragma once

#include "MIDISequences/realtime/AUMIDISequencer.h"
#include "audio/FileTempo.h"
#include "base/Result.h"
#include "services/audiograph/graph/AUAudioUnit.h"
#include "wire/ShortMessage.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace volvelle {

// An instrument that plays a file by itself: the realtime sequencer runs in it, cycle by cycle, and hands the
// instrument what falls due. All else that it is told goes to the instrument.
//
// The first block after a start plays nothing of the file but resets all channels: the music is late by that
// block. The file's tempo is followed up to the limits of FileTempo. An event stands within a frame of its
// place, below 120 beats a minute within a sample of the file; at 120 it stands exactly there. An
// exclusive above 1,040 bytes, which the list cuts short, is left out.
//
// Records sound where stampInOrder() puts them, those that it leaves to the next block with its first frame.
//
// The main thread operates, the render thread plays. A block that meets an operation plays on without the
// file, which waits. [main]
class SequencedUnit : public AUAudioUnit {
public:
    // Never null, and a node's only through this unit.
    explicit SequencedUnit(std::shared_ptr<AUAudioUnit> played);
    ~SequencedUnit() override; // the instrument may live on: it sends nothing any more

    const std::shared_ptr<AUAudioUnit> instrument;

    // For its filters and questions. Transport and loading are this unit's; it does not loop.
    AUMIDISequencer sequencer;

    // MARK: Music

    // Stops, takes the bytes of a MIDI file, and announces its programs to the instrument.
    Result<> load(const std::vector<std::uint8_t>& data);
    // The same with what readSequencedMusic() read.
    Result<> load(const MusicSequence& music);

    void start(); // from the beginning; where there is nothing to play it has ended at once
    void pause(); // ends what sounds, and lifts the pedals
    void goOn();  // after a pause, with the pedals as they were
    void stop();  // resets all channels, and rewinds

    bool isPlaying() const { return sequencer.isPlaying(); }

    // In beats from the start; 0 where it neither plays nor pauses. [any]
    double positionInBeats() const;

    // The file was played to its end since the last start. [any]
    bool hasEnded() const { return ended.load(std::memory_order_acquire); }

    // MARK: What goes to the instrument

    double latency() const override { return instrument->latency(); }

    double tailTime() const override { return instrument->tailTime(); }

    PropertyDictionary fullState() const override { return instrument->fullState(); }

    void setFullState(const PropertyDictionary& state) override { instrument->setFullState(state); }

    [[nodiscard]] OSStatus setProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element,
                                       const void* data, std::uint32_t size) override;
    [[nodiscard]] OSStatus musicDeviceMIDIEvent(std::uint32_t status, std::uint32_t data1,
                                                std::uint32_t data2, std::uint32_t sampleOffset) override;

    void housekeeping() override { instrument->housekeeping(); }

    void engineStopped() override; // stops the file as well
    void prepareToPlay(std::span<const AUMIDIProgram> programs) override;
    void reset() noexcept override;

    void forgetSettings() noexcept override { instrument->forgetSettings(); }

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const TimedMessage> events) noexcept override;

private:
    using Pedals = std::array<std::array<std::uint8_t, holdPedals.size()>, channelCount>; // their values

    // A block of many tempi has the chains of several cycles.
    const RenderEventRoom room{{2048, 256, 64, 64}};

    double rate() const { return outputBusses.empty() ? 48000.0 : outputBusses.front().format.sampleRate; }

    void announce(const MusicSequence& music);
    void sendPedals(const Pedals& values);
    void liftPedals();

    // MARK: [render]

    void playFile(int frames) noexcept;
    int playStep(int place, int frames) noexcept;
    void noteEnd(bool hasMoved) noexcept;
    void schedule(AURenderEvent* chain, int place, int frames) noexcept;
    void send(const AUMIDIEvent& record, std::int64_t offset) noexcept;
    void sendAt(std::int64_t offset, std::uint8_t cable, std::span<const std::uint8_t> bytes) noexcept;
    void notePedal(std::span<const std::uint8_t> bytes) noexcept;

    std::atomic<bool> wasStopped{false}; // the engine, since the last block
    std::atomic<bool> ended{false};
    bool isPaused = false;
    Pedals pausedPedals{}; // when it was paused

    // Whoever has it has the sequencer and what stands below.
    std::atomic_flag busy = ATOMIC_FLAG_INIT;
    FileTempo tempo;
    std::int64_t time = 0;       // frames since the start, as the next
    std::int64_t fileFrames = 0; // of them those that moved the file
    Pedals pedals{};             // as the instrument was told
};

} // namespace volvelle
