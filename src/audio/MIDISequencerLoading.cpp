#include "audio/MIDISequencer.h"
#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"
#include "sequence/SequenceFileBytes.h"

namespace volvelle {

void MIDISequencer::connect(const std::shared_ptr<AVAudioEngine>& toEngine)
{
    engine = toEngine;
    if (!engine) {
        debugprint("MIDISequencer::connect() : WARNING: The engine was set to nil.");
    } else if (!sequencer) {
        sequencer = std::make_shared<AVAudioSequencer>(engine);
    }
}

void MIDISequencer::connect(const std::shared_ptr<AVAudioUnit>& toUnit)
{
    unit = toUnit;
}

void MIDISequencer::loadMIDIFile(const std::filesystem::path& url)
{
    forgetContent();
    if (!sequencer) {
        return;
    }
    if (const auto loaded = sequencer->loadFromURL(url, AVAudioSequencer::channelsToTracks); !loaded) {
        directPrint("MIDISequencer::loadMIDIFile() : ERROR: The MIDI file could not be loaded: ",
                    loaded.error());
        return;
    }
    debugprint("MIDISequencer::loadMIDIFile() : The following file was loaded into the sequencer: ",
               url.string());
    currentMIDIFile = url;
    routeLoadedTracks();
}

void MIDISequencer::loadMIDIFileAndParse(const std::filesystem::path& url)
{
    forgetContent();
    if (!sequencer) {
        debugprint("MIDISequencer::loadMIDIFileAndParse() : ERROR: sequencer is nil");
        return;
    }
    sequences = std::make_shared<MIDISequence16>();
    sequences->delegate = weak_from_this();
    sequences->loadFromFile(url);
    sequences->musicSequenceToSequenceNode();
    musicSequence = sequences->getMusicSequence();
    const auto data = sequenceData(musicSequence);
    if (!data) {
        debugprint(
            "MIDISequencer::loadMIDIFileAndParse() : ERROR: Could not receive data from music sequence.");
        return;
    }
    if (const auto loaded = sequencer->loadFromData(*data, AVAudioSequencer::channelsToTracks); !loaded) {
        debugprint("MIDISequencer::loadMIDIFileAndParse() : ERROR: The external sequencer could not load "
                   "Data. Status: ",
                   loaded.error());
        return;
    }
    debugprint("MIDISequencer::loadMIDIFileAndParse() : The external sequencer was loaded with data.");
    currentMIDIFile = url;
    routeLoadedTracks();
}

void MIDISequencer::loadFromSequence(const std::shared_ptr<MIDISequence16>& sequence)
{
    const MusicSequence handle = required(sequence).getMusicSequence();
    required(handle);
    if (const auto data = sequenceData(handle)) {
        loadFromData(*data);
    } else {
        debugprint("MIDISequencer::loadFromSequence() : ERROR: Could not receive data from music sequence.");
    }
}

void MIDISequencer::loadFromData(const std::vector<std::uint8_t>& data)
{
    const auto loaded = required(sequencer).loadFromData(data, AVAudioSequencer::channelsToTracks);
    if (!loaded) {
        debugprint("MIDISequencer::loadFromSequence() : ERROR: The external sequencer could not load Data. "
                   "Status: ",
                   loaded.error());
        return;
    }
    debugprint("MIDISequencer::loadFromSequence() : The external sequencer was loaded with data.");
    directPrint(text(std::vector<std::string>(sequencer->tracks().size(), "AVMusicTrack")));
    sequencer->prepareToPlay();
}

std::optional<std::vector<std::uint8_t>> MIDISequencer::sequenceData(const MusicSequence& sequence)
{
    std::vector<std::uint8_t> data;
    if (const OSStatus status = sequenceFileBytes(sequence, data); status != noErr) {
        debugprint(
            "MIDISequencer::sequenceData() : Error: Could not convert music sequence to data. Status: ",
            status);
        return std::nullopt;
    }
    return data;
}

void MIDISequencer::forgetContent()
{
    resetPatches();
    stop();
    lengthInSeconds = 0.0;
    lengthInBeats = 0.0;
}

void MIDISequencer::routeLoadedTracks()
{
    if (unit) {
        setTrackPorts();
        sequencer->prepareToPlay();
    }
}

} // namespace volvelle
