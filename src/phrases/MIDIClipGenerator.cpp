#include "phrases/MIDIClipGenerator.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Paths.h"
#include "base/RandomSource.h"
#include "base/Text.h"
#include "phrases/ChordFollowing.h"
#include "phrases/PhraseEventWriter.h"
#include "phrases/PhraseLibrary.h"

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr int mixChannel = -1;

std::vector<std::string> entriesOf(const std::string& path)
{
    auto names = namesIn(path);
    if (!names) {
        fatalStop(names.error());
    }
    return *std::move(names);
}

} // namespace

MIDIClipGenerator::MIDIClipGenerator() = default;

MIDIClipGenerator::~MIDIClipGenerator() = default;

MIDIPhraseMixer& MIDIClipGenerator::mixer()
{
    return required(phraseMixer, implicitNilMessage);
}

std::shared_ptr<MIDISequence16> MIDIClipGenerator::makeArrangement(bool empty)
{
    directPrint("MIDIClipGenerator::makeArrangement()");
    const auto resources = resourcesFolder();
    phraseMixer = nullptr;
    phraseMixer = std::make_shared<MIDIPhraseMixer>();
    if (empty) {
        return phraseMixer->getSequence();
    }
    for (const ArrangementTrack& track : arrangementTracks) {
        track.phraseIn(*phraseMixer).channel = track.channel;
        fill(track, resources);
    }
    return phraseMixer->getSequence();
}

std::shared_ptr<MIDISequence16> MIDIClipGenerator::makeArrangementLong(int count)
{
    const auto target = std::make_shared<MIDISequence16>();
    for (const int i : checkedRange(0, count)) {
        makeArrangement(false);
        const double offset = i * double{arrangementBeats};
        if (phraseMixer->mixedEvents.empty()) {
            directPrint("Arranger::makeSequence() : WARNING: There are no events at ", offset,
                        " for mixing together.");
            continue;
        }
        for (const auto& event : phraseMixer->mixedEvents) {
            writePhraseEvent(*target, *event, offset);
        }
    }
    mixer().sequence = nullptr;
    mixer().sequence = target;
    return target;
}

void MIDIClipGenerator::makePhrase(int channel, int /*instance*/)
{
    const auto resources = resourcesFolder();
    if (channel == mixChannel) {
        makeArrangement(false);
        return;
    }
    const ArrangementTrack* track = arrangementTrackOf(channel);
    if (track == nullptr) {
        return;
    }
    fill(*track, resources);
    if (channel == chordChannel) {
        followChords();
        mixer().getSequence();
    }
}

PhraseEvents MIDIClipGenerator::getPhrase(int channel)
{
    const MIDIPhraseMixer& tracks = mixer();
    if (channel == mixChannel) {
        return tracks.mixedEvents;
    }
    const ArrangementTrack* track = arrangementTrackOf(channel);
    return track == nullptr ? PhraseEvents() : track->phraseIn(tracks).*track->heard;
}

std::string MIDIClipGenerator::getName(int channel)
{
    return channelLabel(channel == mixChannel ? chordChannel : channel);
}

void MIDIClipGenerator::changeChords()
{
    mixer().chordTrack->updateChordEvents();
    followChords();
    mixer().getSequence();
}

std::vector<std::shared_ptr<ChordEvent>> MIDIClipGenerator::getChords()
{
    return mixer().chordTrack->chords;
}

void MIDIClipGenerator::saveArrangement(MIDIPhraseMixer& arrangement, int number)
{
    const auto documents = documentsFolder();
    const std::string folder = required(documents).string() + "/Phrases/output";
    directPrint("MIDIClipGenerator::saveArrangement() Saving '", folder, "'...");
    arrangement.save(fs::path(folder) / concat("phraseMixer_", formatNumber(number), ".mid"));
}

void MIDIClipGenerator::save(int /*channel*/, const std::string& /*name*/) {}

fs::path MIDIClipGenerator::loadRandomFileAt(const std::string& path)
{
    directPrint("MIDIClipGenerator::loadRandomFileAt() Loading '", path, "'...");
    const std::vector<std::string> entries = entriesOf(path);
    const int count = countFiles(entries, path);
    if (count == 0) {
        fatalStop(concat("No files found in '", path, "'"));
    }
    if (std::cmp_not_equal(entries.size(), count)) {
        directPrint("WARNING: There are other files at '", path, "' too.");
    }
    const std::string file = concat(path, formatNumber(randomInteger(1, count)), ".mid");
    std::error_code error;
    if (!fs::exists(file, error)) {
        fatalStop(concat("The file '", file, "' does not exist."));
    }
    if (!fs::is_regular_file(file, error)) {
        fatalStop(concat("'", file, "' is no file."));
    }
    directPrint("MIDIClipGenerator::loadRandomFileAt() Loading '", file, "'");
    return file;
}

int MIDIClipGenerator::countFiles(const std::vector<std::string>& files, const std::string& at)
{
    const int count = countPhrases(files);
    directPrint("There were ", count, " MIDI files found at '", at, "'.");
    return count;
}

std::string MIDIClipGenerator::formatNumber(int number)
{
    return phraseNumber(number);
}

void MIDIClipGenerator::fill(const ArrangementTrack& track, const std::optional<fs::path>& resources)
{
    MIDIPhrase& phrase = track.phraseIn(mixer());
    switch (track.source) {
    case ArrangementTrack::Source::chordPattern: {
        const std::string path = phraseFolderOf(track, resources);
        const int transposition = randomInteger(-farthestMove, farthestMove);
        phrase.loadPhrase(loadRandomFileAt(path), transposition);
        break;
    }
    case ArrangementTrack::Source::phrase:
        phrase.loadPhrase2(loadRandomFileAt(phraseFolderOf(track, resources)), 0);
        break;
    case ArrangementTrack::Source::polyRhythm:
        phrase.generateRandomPhrase_PolyRhythmic(-1);
        break;
    case ArrangementTrack::Source::polyMeter:
        phrase.generateRandomPhrase_PolyMetric(track.channel, polyMeterSteps);
        break;
    }
    if (track.followsChords) {
        phrase.transposeTrackNotes(*mixer().chordTrack);
    }
}

void MIDIClipGenerator::followChords()
{
    for (const ArrangementTrack& track : arrangementTracks) {
        if (track.followsChords) {
            track.phraseIn(mixer()).transposeTrackNotes(*mixer().chordTrack);
        }
    }
}

} // namespace volvelle
