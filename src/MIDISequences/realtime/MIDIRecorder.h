#pragma once

#include "base/WallClock.h"
#include "midi/Tempo.h"
#include "sequence/MIDISequence.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <vector>

namespace volvelle {

// A sequence of sixteen tracks, written by a stream of messages: a note is written when its end comes, all
// else at once. Messages come live, timed by the clock, or with a sample position at 48,000 Hz; whoever has
// times of another rate converts them. Notes that stand open when it starts, pauses or stops are dropped.
// While it is not started each message is told in the log and dropped. [main]
class MIDIRecorder : public MIDISequence {
public:
    struct Note {
        std::uint8_t number = 0; // key
        std::uint8_t channel = 0;
        std::uint8_t velocity = 0;
        std::uint8_t release = 0;        // velocity
        double position = 0.0;           // beats
        double duration = 0.0;           // beats; 0 while it is open
        std::int64_t samplePosition = 0; // samples
        std::int64_t sampleDuration = 0; // samples
    };

    static constexpr std::uint16_t trackCount = 16;
    static constexpr double samplesPerBeat = usualSamplesPerBeat;

private:
    std::vector<MusicTrack> tracks;                  // stays empty
    std::map<std::uint16_t, std::deque<Note>> notes; // open, by channel and key, the first ones first

public:
    bool isStarted = false;

private:
    double startTime = 0.0;     // seconds since 1970
    double startPosition = 0.0; // seconds of live messages, samples of the others
    double beatsFactor = 2.0;   // beats per second at 120 beats per minute
    double tempoFactor = 1.0;   // 0.1 to 10
    double tempo = 120.0;       // beats per minute, 12 to 1200

public:
    MIDIRecorder();
    // The clock lives as long as the recorder.
    explicit MIDIRecorder(const Clock& newClock);

    virtual void setBeatPosition(double position); // seconds
    virtual void start();
    virtual void pause();
    virtual void stop(); // also sets what setBeatPosition() and setStartPosition() set to 0
    // Empties the tree; the music sequence stays as it is.
    virtual void reset();
    // At 120 beats per minute whatever the tempo; told in the log at every call.
    virtual double getCurrentPositionInBeats();

    virtual void noteOn(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity);
    // Closes every open note of that channel and key.
    virtual void noteOff(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity);
    virtual void controller(std::uint8_t channel, std::uint8_t number, std::uint8_t value); // does nothing

    virtual void setStartPosition(std::int64_t sampletime);
    virtual void setTempofactor(double value); // to 0.1 to 10; what is not a number changes nothing
    // Sets tempo and factor within their ranges, but the tempo of the sequence to `value` as it is. What is
    // not a number changes nothing.
    virtual void setRecordTempo(double value);
    // A faster tempo gives fewer beats.
    virtual double samplesToBeats(std::int64_t samplePosition);

    virtual void noteOnAtSamplePosition(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity,
                                        std::int64_t position);
    // Closes the first open note of that channel and key. One that lasted no sample is not written. One that
    // ends before it begins, where the tempo changed meanwhile, stands in the tree alone: the service refuses
    // it.
    virtual void noteOffAtSamplePosition(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity,
                                         std::int64_t position);
    virtual void controllerAtSamplePosition(std::uint8_t channel, std::uint8_t number, std::uint8_t value,
                                            std::int64_t position);
    // `number` plays no part.
    virtual void aftertouchAtSamplePosition(std::uint8_t channel, std::uint8_t number, std::uint8_t value,
                                            std::int64_t position);
    // `number` is the first data byte, `value` the second.
    virtual void pitchWheelAtSamplePosition(std::uint8_t channel, std::uint8_t number, std::uint8_t value,
                                            std::int64_t position);
    virtual void polyPressureAtSamplePosition(std::uint8_t channel, std::uint8_t number, std::uint8_t value,
                                              std::int64_t position);
    // `number` plays no part.
    virtual void programChangeAtSamplePosition(std::uint8_t channel, std::uint8_t number, std::uint8_t value,
                                               std::int64_t position);
    virtual void sysexAtSamplePosition(std::uint16_t length, const std::vector<std::uint8_t>& data,
                                       std::int64_t position);
    // Nothing for a `length` below 4.
    virtual void metaAtSamplePosition(int length, const std::vector<std::uint8_t>& data,
                                      std::int64_t position, std::uint8_t type);

    // Records the event at its sample time. Real-time messages of one byte, packets that begin with 0xF7 and
    // data bytes at the start are left out, other system messages told in the log by their status. A meta
    // event is taken with all its bytes and the type in `meta`.
    virtual void addAUMIDIEvent(const std::shared_ptr<AUMIDIEventEx>& event);
    virtual void addAUMIDIEvents(const std::vector<std::shared_ptr<AUMIDIEventEx>>& events);

private:
    // Tells where it is not.
    bool isRecording() const;
    double beatsAt(std::int64_t position);
    void write(const Note& note);
    void close(Note& note, std::uint8_t velocity, std::int64_t position);
    void addChannelEvent(const AUMIDIEvent& event);
    void addNoteEvent(const AUMIDIEvent& event);

    const Clock& clock;
};

} // namespace volvelle
