#pragma once

#include "base/realtime/BoundedQueue.h"
#include "services/audiograph/graph/AUAudioUnitBus.h"
#include "services/audiograph/graph/AUMIDIProgram.h"
#include "services/audiograph/graph/AudioComponentDescription.h"
#include "services/audiograph/parameters/AUParameterTree.h"
#include "services/audiograph/parameters/PropertyDictionary.h"
#include "services/musicsequence/MusicSequence.h"
#include "wire/TimedMessageLine.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace volvelle {

// Takes a message of `length` bytes at `sampleOffset`, in frames at 48,000 Hz from the start of the next
// block.
using AUScheduleMIDIEventBlock = std::function<OSStatus(std::int64_t sampleOffset, std::uint8_t cable,
                                                        int length, const std::uint8_t* bytes)>;
// Gets what a unit plays, with the time in frames of the unit since its first.
using AUMIDIOutputEventBlock = std::function<OSStatus(std::int64_t sampleTime, std::uint8_t cable, int length,
                                                      const std::uint8_t* bytes)>;

// Something that makes sound or changes it: the base of the synthesizer, the limiter and the units of tests.
// Stereo. A subclass fills busses and parameters in its constructor and writes renderBlock().
//
// It belongs to its node, and to each render plan that the node is in: it is destroyed on the main thread,
// when the render thread no longer knows it.
class AUAudioUnit {
public:
    static constexpr int maximumFrames = 512; // of one block
    static constexpr int pullAhead = 256;     // frames that converters behind a unit may pull too early

    explicit AUAudioUnit(const AudioComponentDescription& description);
    virtual ~AUAudioUnit();
    AUAudioUnit(const AUAudioUnit&) = delete;
    AUAudioUnit& operator=(const AUAudioUnit&) = delete;

    // MARK: What it is [main] Busses never change once a node holds the unit.

    const AudioComponentDescription componentDescription;
    std::string audioUnitName;
    std::optional<std::string> contextName;
    std::vector<AUAudioUnitBus> inputBusses;        // none for an instrument or a generator
    std::vector<AUAudioUnitBus> outputBusses;       // at least one; only the first is heard
    std::vector<std::string> MIDIOutputNames;       // not empty: it plays MIDI itself
    std::shared_ptr<AUParameterTree> parameterTree; // null: no parameters
    bool takesMIDI = false;

    // Seconds from what goes in to what comes out, and from the last input to silence. [main]
    virtual double latency() const { return 0.0; }

    virtual double tailTime() const { return 0.0; }

    // "type", "subtype", "manufacturer" and "parameters", a dictionary from the decimal address to the value.
    // A subclass adds to it. [main]
    virtual PropertyDictionary fullState() const;

    // Sets the parameters that the state names and this unit has; what does not fit is passed over. [main]
    virtual void setFullState(const PropertyDictionary& state);

    // Everything that a unit can be told by number. The default knows none: kAudioToolboxErr_InvalidProperty.
    // [main]
    [[nodiscard]] virtual OSStatus setProperty(std::uint32_t property, std::uint32_t scope,
                                               std::uint32_t element, const void* data, std::uint32_t size);

    // MARK: MIDI

    // A channel message from outside, at `sampleOffset` frames of the next block. Goes through a queue of
    // 2,047 messages that the render thread empties, and 512 more that end something; a full one answers
    // kAudioToolboxErr_CannotDoInCurrentContext, a status below 0x80 or a unit that takes no MIDI
    // kAudio_ParamError. [main]
    [[nodiscard]] virtual OSStatus musicDeviceMIDIEvent(std::uint32_t status, std::uint32_t data1,
                                                        std::uint32_t data2, std::uint32_t sampleOffset);

    // Whatever a unit has to do on the main thread while it plays; the engine calls it some times a second
    // and whenever it is edited. [main]
    virtual void housekeeping() {}

    // The engine has stopped: what was sent so far and waits is not heard any more. [main]
    virtual void engineStopped() { era.fetch_add(1, std::memory_order_release); }

    // What a sequence is going to ask for, before it plays: the moment to load sounds. [main]
    virtual void prepareToPlay(std::span<const AUMIDIProgram> programs);

    // Calls scheduleMIDIEvent(); empty for a unit that takes no MIDI. The block must not outlive the unit.
    // [main] The block itself is called on the render thread.
    AUScheduleMIDIEventBlock scheduleMIDIEventBlock();

    // Puts a copy of a message in line for the next block; equal offsets keep the order of entry. Where the
    // unit is in no render plan, or the line is full (16,384 messages with the ends that are owed, 262,144
    // bytes of long ones), it answers kAudioToolboxErr_CannotDoInCurrentContext; the end of what began is
    // never refused. [render]
    [[nodiscard]] OSStatus scheduleMIDIEvent(std::int64_t sampleOffset, std::uint8_t cable, int length,
                                             const std::uint8_t* bytes) noexcept;

    // The same at a fraction of a frame, above -1. It acts at the nearest frame of the unit's own rate, each
    // time at the same one, however far a converter has pulled the unit ahead: a unit at another rate than
    // the engine's is `pullAhead` frames late throughout. [render]
    [[nodiscard]] OSStatus scheduleMIDIEventAt(double sampleOffset, std::uint8_t cable, int length,
                                               const std::uint8_t* bytes) noexcept;

    // Where the unit's own MIDI goes; empty for nowhere. Called on the render thread. [main]
    void setMIDIOutputEventBlock(AUMIDIOutputEventBlock block);

    // MARK: Rendering

    // Writes one block of 1 to maximumFrames frames of the unit's own rate, with the messages that fall into
    // it; later messages stay in line. The inputs are null for a unit without input busses. [render]
    void render(const float* inputLeft, const float* inputRight, float* left, float* right,
                int frames) noexcept;

    // Falls silent and forgets what it heard; settings stay. [render]
    virtual void reset() noexcept {}

    // Forgets, at once, what earlier messages set and no message for a single channel can undo: tunings, and
    // parameters that are not registered. [render]
    virtual void forgetSettings() noexcept {}

    // Bit n: a message for channel n was put in line since the unit was made. [render]
    std::uint16_t heardChannels() const noexcept { return heard; }

    // Begins anew after a stop of the engine: nothing waits, and nothing was heard. [render]
    void beginAnew() noexcept;

    // Enters or leaves the running render plan: a unit outside of it takes no messages, and starts without
    // any when it comes in. A unit that never met an engine counts as inside. [render]
    void setInPlan(bool isIn) noexcept;

    // The engine has rendered so many frames of its own. [render]
    void advanceEngine(int frames) noexcept { engineClock += frames; }

protected:
    // `events` stand by offset, all of them below `frames`. No lock, no allocation. [render]
    virtual void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right,
                             int frames, std::span<const TimedMessage> events) noexcept = 0;

    // Hands a message to the output block. [render]
    [[nodiscard]] OSStatus sendMIDIOutput(std::int64_t sampleTime, std::uint8_t cable, int length,
                                          const std::uint8_t* bytes) noexcept;

    // Frames rendered so far: the sample time of the first frame of the block under way. [render]
    std::int64_t renderedFrames() const { return clock; }

private:
    struct OutsideMessage {
        std::uint32_t offset = 0;
        std::uint32_t era = 0;
        ShortMessage bytes{};
    };

    void takeOutsideMessages() noexcept;
    std::int64_t ownOffset(double sampleOffset) const noexcept;

    BoundedQueue<OutsideMessage> outside; // main thread to render thread
    std::atomic<std::uint32_t> era{0};    // counts stops of the engine
    std::uint32_t heardEra = 0;           // render thread
    TimedMessageLine line;                // render thread
    std::int64_t clock = 0;               // render thread, frames
    std::uint16_t heard = 0;              // render thread, channels
    bool isInPlan = true;                 // render thread
    bool isInEngine = false;              // render thread
    std::int64_t engineClock = 0;         // frames of the engine since the unit came into its plan
    std::int64_t clockAtEntry = 0;        // frames of the unit at that time
    std::atomic<const AUMIDIOutputEventBlock*> output{nullptr};
    std::vector<std::unique_ptr<AUMIDIOutputEventBlock>>
        outputs; // all that were ever set: one may be running
};

} // namespace volvelle
