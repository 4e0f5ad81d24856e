#include "MIDISequences/realtime/AUMIDISequencerLine.h"
#include "MIDISequences/realtime/AUMIDISequencerOwning.h"
#include "base/Checked.h"
#include "base/Console.h"

#include <system_error>

namespace volvelle {

void AUMIDISequencer::loadMIDIFile(const std::optional<std::filesystem::path>& url, bool force)
{
    if (!prepareFile(url)) {
        return;
    }
    if (force) {
        rewind();
        loadMIDIFileInternal();
        return;
    }
    auto next = parse(required(currentFile));
    own([&] {
        prepared = std::move(next);
        isLoadPending = true;
    });
}

bool AUMIDISequencer::prepareFile(const std::optional<std::filesystem::path>& url)
{
    own([&] {
        stopHeld();
        tempoFactor = 1.0;
        currentFile = url;
        dropPending();
    });
    if (!currentFile) {
        debugprint("AUMIDISequencer::ERROR: The current file URL is nil.");
        return false;
    }
    std::error_code error;
    if (!std::filesystem::exists(*currentFile, error)) {
        debugprint("AUMIDISequencer::ERROR: The given MIDI file (", currentFile->string(),
                   " does not exist.");
        currentFile.reset();
        return false;
    }
    debugprint("AUMIDISequencer: The following MIDI file will be loaded and parsed: ", currentFile->string());
    return true;
}

void AUMIDISequencer::loadMIDIFileInternal()
{
    own([this] { useListHeld(std::make_unique<AUMIDISequencerList>(SequencerFile{}, list().sequence)); });
    useList(parse(required(currentFile)));
}

void AUMIDISequencer::loadSequence(const MusicSequence& music)
{
    own([this] { useListHeld(std::make_unique<AUMIDISequencerList>(SequencerFile{}, list().sequence)); });
    const auto made = std::make_shared<MIDISequence16>();
    made->setMusicSequence(music);
    useList(flatten(made, {}));
}

std::unique_ptr<AUMIDISequencerList> AUMIDISequencer::parse(const std::filesystem::path& url) const
{
    const auto made = std::make_shared<MIDISequence16>();
    made->loadFromFile(url);
    return flatten(made, url.string());
}

std::unique_ptr<AUMIDISequencerList> AUMIDISequencer::flatten(const std::shared_ptr<MIDISequence16>& music,
                                                              std::string path) const
{
    music->musicSequenceToSequenceNode();
    return std::make_unique<AUMIDISequencerList>(
        SequencerFile{std::move(path), music->nodesToAUMIDIEvent(samplerate, cable)}, music);
}

void AUMIDISequencer::useList(std::unique_ptr<AUMIDISequencerList> list)
{
    required(list.get());
    if (!isMultiChannel) {
        list->writeChannel(currentChannel);
    }
    own([&] { useListHeld(std::move(list)); });
    tell({delegate, false, true, std::nullopt});
}

void AUMIDISequencer::useListHeld(std::unique_ptr<AUMIDISequencerList> list)
{
    dropPending();
    eventCount = checkedCast<int>(list->size());
    durationInSamples = list->duration();
    durationInBeats = list->beats();
    currentEventIndex = 0;
    sequencerPosition = 0;
    sequencerPositionV = 0;
    std::unique_ptr<AUMIDISequencerList> old(current.exchange(list.release(), std::memory_order_acq_rel));
    old->next = std::move(retired);
    retired = std::move(old);
}

void AUMIDISequencer::dropPending()
{
    isLoadPending = false;
    if (prepared) {
        prepared->next = std::move(retired);
        retired = std::move(prepared);
    }
}

std::vector<std::shared_ptr<AUMIDIEventEx>> AUMIDISequencer::getTempoEvents()
{
    const auto music = sequence();
    const MusicTrack track = music->getTempoTrack();
    return track ? music->getTempoEvents(track, samplerate) : std::vector<std::shared_ptr<AUMIDIEventEx>>{};
}

std::uint8_t AUMIDISequencer::getPatchForChannel(std::uint8_t channel)
{
    return sequence()->getPatchForChannel(channel);
}

void AUMIDISequencer::loadClip()
{
    required(phraseMixer).loadTrack(0, {});
    required(phraseMixer).loadTrack(1, {});
}

void AUMIDISequencer::saveMIDIFile(const std::filesystem::path& url)
{
    sequence()->saveToFile(url);
}

bool AUMIDISequencer::saveMIDIFile2(const std::filesystem::path& /*url*/)
{
    return isEmpty();
}

void AUMIDISequencer::dumpout()
{
    debugprint("AUMIDISequencer: The following MIDI data is loaded and scheduled for playing: ");
    const auto events = getEventList();
    for (std::size_t i = 0; i < events.size(); ++i) {
        debugprint(" - ", i, " : ", events[i]->toHex());
    }
}

void AUMIDISequencer::setChannel(std::uint8_t channel)
{
    if (channel >= channelCount) {
        AUMIDISequencerLine::print("AUMIDISequencer::ERROR: The channel is invalid.");
        return;
    }
    own([&] {
        currentChannel = channel;
        current.load(std::memory_order_relaxed)->writeChannel(channel);
    });
}

} // namespace volvelle
