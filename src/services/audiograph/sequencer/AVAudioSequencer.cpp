#include "services/audiograph/sequencer/AVAudioSequencer.h"

#include "base/MainThread.h"
#include "services/audiograph/graph/AVAudioEngine.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

namespace volvelle {

namespace {

constexpr float highestRate = 1000.0F;

}

AVAudioSequencer::AVAudioSequencer(const std::shared_ptr<AVAudioEngine>& newEngine)
    : engine(newEngine), core(std::make_shared<SequencerCore>())
{
    loadFromEvents(std::make_shared<const SequencerEvents>());
    if (newEngine != nullptr) {
        newEngine->addSequencer(*this);
    }
}

AVAudioSequencer::~AVAudioSequencer()
{
    letTracksGo();
    if (const std::shared_ptr<AVAudioEngine> running = engine.lock()) {
        running->removeSequencer(*this);
    }
}

Result<> AVAudioSequencer::loadFromURL(const std::filesystem::path& url, std::uint32_t options)
{
    MusicSequence sequence;
    const OSStatus status = NewMusicSequenceFromFile(url, options, sequence);
    return take(sequence, status);
}

Result<> AVAudioSequencer::loadFromData(const std::vector<std::uint8_t>& data, std::uint32_t options)
{
    MusicSequence sequence;
    const OSStatus status = NewMusicSequenceFromData(data, options, sequence);
    return take(sequence, status);
}

Result<> AVAudioSequencer::loadFromSequence(const MusicSequence& sequence)
{
    assertMainThread();
    return take(sequence, sequence == nullptr ? kAudio_ParamError : noErr);
}

Result<> AVAudioSequencer::take(const MusicSequence& sequence, OSStatus status)
{
    const auto loaded = std::make_shared<SequencerEvents>();
    status = status == noErr ? loaded->read(sequence) : status;
    if (status != noErr) {
        return failure("The MIDI file could not be read (" + std::to_string(status) + ").");
    }
    loadFromEvents(loaded);
    return {};
}

void AVAudioSequencer::loadFromEvents(std::shared_ptr<const SequencerEvents> newEvents)
{
    letTracksGo();
    events = std::move(newEvents);
    trackList.clear();
    double longest = 0.0;
    for (const SequencerTrackInfo& track : events->tracks) {
        const double seconds = events->tempo.seconds(track.lengthInBeats);
        longest = std::max(longest, seconds);
        trackList.push_back(std::make_shared<AVMusicTrack>(this, track.lengthInBeats, seconds));
    }
    tempo = trackList.front();
    trackList.erase(trackList.begin());
    info = {{"tempo", {events->tempo.firstTempo()}}, {"approximate duration in seconds", {longest}}};
    if (!events->title.empty()) {
        info["title"] = {events->title};
    }
    if (!events->copyright.empty()) {
        info["copyright"] = {events->copyright};
    }
    destinationChanged();
}

void AVAudioSequencer::letTracksGo()
{
    for (const auto& track : trackList) {
        track->sequencer = nullptr;
    }
    if (tempo != nullptr) {
        tempo->sequencer = nullptr;
    }
}

void AVAudioSequencer::destinationChanged()
{
    isContentOld = true;
    if (playing) {
        publishContent();
    }
}

void AVAudioSequencer::publishContent()
{
    isContentOld = false;
    core->setContent(std::make_unique<SequencerContent>(events, destinations()));
}

std::vector<std::shared_ptr<AVAudioUnit>> AVAudioSequencer::destinations() const
{
    std::vector<std::shared_ptr<AVAudioUnit>> result{tempo->destination};
    for (const auto& track : trackList) {
        result.push_back(track->destination);
    }
    return result;
}

void AVAudioSequencer::prepareToPlay()
{
    assertMainThread();
    const std::vector<std::shared_ptr<AVAudioUnit>> units = destinations();
    std::map<AVAudioUnit*, std::vector<AUMIDIProgram>> wanted;
    std::set<std::pair<AVAudioUnit*, AUMIDIProgram>> known;
    for (const SequencerProgram& program : events->programs) {
        AVAudioUnit* unit = units[program.track].get();
        const AUMIDIProgram entry{program.channel, program.bankMSB, program.bankLSB, program.program};
        if (known.insert({unit, entry}).second) {
            wanted[unit].push_back(entry);
        }
    }
    for (const auto& [unit, programs] : wanted) {
        if (unit != nullptr) {
            unit->auAudioUnit()->prepareToPlay(programs);
        }
    }
}

Result<> AVAudioSequencer::start()
{
    assertMainThread();
    const std::shared_ptr<AVAudioEngine> running = engine.lock();
    if (running == nullptr || !running->isRunning()) {
        return failure("The audio engine is not running.");
    }
    if (!playing) {
        if (isContentOld) {
            publishContent();
        }
        playing = true;
        command.isPlaying = true;
        ++command.startSerial;
        move(command.beats);
    }
    return {};
}

void AVAudioSequencer::stop()
{
    assertMainThread();
    if (!playing) {
        return;
    }
    command.beats = currentPositionInBeats();
    command.isPlaying = false;
    playing = false;
    send();
}

double AVAudioSequencer::currentPositionInBeats()
{
    const SequencerPosition position = core->position();
    return playing && position.serial >= command.moveSerial ? position.beats : command.beats;
}

double AVAudioSequencer::currentPositionInSeconds()
{
    const SequencerPosition position = core->position();
    return playing && position.serial >= command.moveSerial ? position.seconds
                                                            : events->tempo.seconds(command.beats);
}

void AVAudioSequencer::setCurrentPositionInBeats(double beats)
{
    assertMainThread();
    move(beats > 0.0 && std::isfinite(beats) ? beats : 0.0);
}

void AVAudioSequencer::move(double beats)
{
    command.beats = beats;
    command.moveSerial = command.serial + 1;
    send();
}

void AVAudioSequencer::setRate(float rate)
{
    if (rate > 0.0F && rate <= highestRate) {
        command.rate = rate;
        send();
    }
}

void AVAudioSequencer::send()
{
    ++command.serial;
    core->send(command);
}

} // namespace volvelle
