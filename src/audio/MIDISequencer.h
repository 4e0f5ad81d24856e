#pragma once

#include "audio/MIDISequencerDelegate.h"
#include "base/Timer.h"
#include "sequence/MIDISequence16.h"
#include "sequence/SequenceFoundDelegate.h"
#include "services/audiograph/graph/AVAudioEngine.h"
#include "services/audiograph/graph/AVAudioUnit.h"
#include "services/audiograph/sequencer/AVAudioSequencer.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle {

// The transport: loads a Standard MIDI File into the sequencer of an engine, sends its tracks to units, and
// starts, pauses, goes on, stops and seeks. A timer tells the delegate how far it is, and stops it at the
// end.
//
// One file each: lengths only grow, so a fresh transport is made for every play. connect(engine) comes first;
// what needs the sequencer is a fatal stop without it. Failures are logged or printed. The calls of the
// delegate are queued, and each keeps the transport until it has run; the delegate is held weakly, the timer
// ends with the transport. [main]
class MIDISequencer : public SequenceFoundDelegate, public std::enable_shared_from_this<MIDISequencer> {
public:
    static std::shared_ptr<MIDISequencer> make();

    ~MIDISequencer() override;
    MIDISequencer(const MIDISequencer&) = delete;
    MIDISequencer& operator=(const MIDISequencer&) = delete;

    std::weak_ptr<MIDISequencerDelegate> delegate;

private:
    std::shared_ptr<AVAudioEngine> engine;
    std::shared_ptr<AVAudioUnit> unit; // where all tracks go
    std::shared_ptr<AVAudioSequencer> sequencer;

public:
    std::shared_ptr<MIDISequence16> sequences; // set by loadMIDIFileAndParse() alone

private:
    MusicSequence musicSequence;  // that of `sequences`
    double lengthInSeconds = 0.0; // of the longest track, as the next
    double lengthInBeats = 0.0;
    double currentPosition = 0.0; // beats: where it was paused, and play() goes on
    std::optional<std::filesystem::path> currentMIDIFile;
    std::shared_ptr<Timer> timer;
    std::vector<std::uint8_t> melodicPatches;  // distinct programs
    std::vector<std::uint8_t> rhythmicPatches; // nothing but the 0 of resetPatches()
    std::vector<std::uint8_t> patches = std::vector<std::uint8_t>(channelCount, 0);

public:
    // MARK: Connecting and loading

    // The first engine counts; a later one leaves the sequencer as it is.
    virtual void connect(const std::shared_ptr<AVAudioEngine>& engine);
    virtual void connect(const std::shared_ptr<AVAudioUnit>& unit);

    // Both stop first, which takes a sequencer, and route the tracks if a unit is connected. The second plays
    // what the sequence made of the file, and notes its programs.
    virtual void loadMIDIFile(const std::filesystem::path& url);
    virtual void loadMIDIFileAndParse(const std::filesystem::path& url);

    // Both neither route the tracks nor take their lengths: a setTrackPorts() comes after them.
    virtual void loadFromSequence(const std::shared_ptr<MIDISequence16>& sequence);
    virtual void loadFromData(const std::vector<std::uint8_t>& data);

private:
    virtual std::optional<std::vector<std::uint8_t>> sequenceData(const MusicSequence& sequence);
    // All tracks and the tempo track to the connected unit.
    virtual void setTrackPorts();

public:
    // MARK: Routing

    // Each track to the unit of its channel, the tempo track to the first; only after
    // loadMIDIFileAndParse(). A channel above the count of units ends it, one that equals the count is a
    // fatal stop.
    virtual void setTrackPorts(const std::vector<std::shared_ptr<AVAudioUnit>>& units);
    // All tracks to one unit; the tempo track keeps its destination.
    virtual void setTrackPorts(const std::shared_ptr<AVAudioUnit>& unit);
    // `channel` is an index of a track; one that equals their count is a fatal stop.
    virtual void setTrackPort(int channel, const std::shared_ptr<AVAudioUnit>& unit);

    // MARK: Transport

    virtual bool isPlaying() const;
    virtual bool start(); // from the beginning
    virtual bool pause(); // the timer ticks on
    virtual bool play();  // from where it was last paused, also after a stop
    virtual bool stop();  // false where it does not play, and then nothing happens

    // In beats; 0 once the sequence is over, which also stops it.
    virtual double getPosition();
    // In seconds and in beats; 1.0 for none.
    virtual double getLength() const;
    virtual double getBeats() const;
    virtual double getTime() const; // seconds
    virtual PropertyDictionary getInfo() const;
    virtual void setTempo(float factor);
    virtual void setPosition(float value); // beats

    // The timer's tick.
    void onTimer();

    // MARK: Programs

    const std::vector<std::uint8_t>& getMelodicPatches() const { return melodicPatches; }

    const std::vector<std::uint8_t>& getRhythmicPatches() const { return rhythmicPatches; }

    std::uint8_t getPatch(int channel) const; // 0 beyond the sixteen channels
    void foundProgramChangeEvent(const std::shared_ptr<MidiProgramChangeEvent>& event) override;

protected:
    MIDISequencer();

private:
    static constexpr int channelCount = 16;

    Result<> begin(double beats);
    void setupTimer();
    void stopTimer();
    void resetPatches();
    void forgetContent();
    void followLength(const AVMusicTrack& track);
    void routeLoadedTracks();
    void tellState(std::string_view state);
    template <class Call>
    void queue(Call call);
};

} // namespace volvelle
