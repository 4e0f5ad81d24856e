#pragma once

#include "base/Result.h"
#include "services/audiograph/parameters/PropertyDictionary.h"
#include "services/audiograph/sequencer/AVMusicTrack.h"
#include "services/audiograph/sequencer/SequencerCore.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace volvelle {

class AVAudioEngine;

// Plays a sequence into units of an engine, each event at its exact frame. It never stops by itself: past the
// end its position goes on growing.
//
// The main thread calls and reads; the render thread plays. Neither waits for the other, and a position that
// was set reads back at once. [main]
class AVAudioSequencer {
public:
    static constexpr std::uint32_t channelsToTracks = 1; // option of the loaders: one track per MIDI channel

    explicit AVAudioSequencer(const std::shared_ptr<AVAudioEngine>& engine);
    // What sounds ends with the next block.
    ~AVAudioSequencer();
    AVAudioSequencer(const AVAudioSequencer&) = delete;
    AVAudioSequencer& operator=(const AVAudioSequencer&) = delete;

    // MARK: Content
    //
    // Loading replaces tracks and content and forgets the destinations; position, rate and playing stay.
    // After a failure nothing has changed.

    Result<> loadFromURL(const std::filesystem::path& url, std::uint32_t options);
    Result<> loadFromData(const std::vector<std::uint8_t>& data, std::uint32_t options);
    // Takes what the sequence holds now: later changes of it are not heard.
    Result<> loadFromSequence(const MusicSequence& sequence);
    // Takes what was read before. Not null.
    void loadFromEvents(std::shared_ptr<const SequencerEvents> newEvents);

    const std::vector<std::shared_ptr<AVMusicTrack>>& tracks() const { return trackList; }

    // Never null; empty before any loading.
    const std::shared_ptr<AVMusicTrack>& tempoTrack() const { return tempo; }

    // "title" and "copyright" where the file has them, "tempo" (beats a minute) and "approximate duration in
    // seconds".
    const PropertyDictionary& userInfo() const { return info; }

    // MARK: Transport

    // Tells the destinations which programs will be needed, so that they are there in time.
    void prepareToPlay();

    // Plays from the current position; done where it plays already. Fails where the engine does not run. At 0
    // the destinations are reset; elsewhere program, bank, controllers and bend are brought up to date.
    Result<> start();

    // Ends what sounds and keeps the position.
    void stop();

    bool isPlaying() const { return playing; }

    // In beats from the start. Not below 0; what is not a number counts as 0.
    double currentPositionInBeats();
    void setCurrentPositionInBeats(double beats);

    // The same by the tempo track, at rate 1.0.
    double currentPositionInSeconds();

    // A factor on the tempo, 1.0 at first. Takes finite values above 0, up to 1000; others are ignored.
    float rate() const { return command.rate; }

    void setRate(float rate);

    // MARK: For the engine and the tracks

    const std::shared_ptr<SequencerCore>& renderCore() const { return core; }

    void destinationChanged();

    void collectGarbage() { core->collectGarbage(); }

private:
    Result<> take(const MusicSequence& sequence, OSStatus status);
    void letTracksGo();
    void move(double beats);
    void send();
    void publishContent();
    std::vector<std::shared_ptr<AVAudioUnit>> destinations() const;

    std::weak_ptr<AVAudioEngine> engine;
    std::shared_ptr<const SequencerEvents> events;
    std::shared_ptr<AVMusicTrack> tempo;
    std::vector<std::shared_ptr<AVMusicTrack>> trackList;
    PropertyDictionary info;
    bool playing = false;
    bool isContentOld = false; // the render thread gets the new one with the next start
    SequencerCommand command;  // the last one sent; its beats are the position until the render thread has it
    std::shared_ptr<SequencerCore> core;
};

} // namespace volvelle
