#include "phrases/MIDIClipGenerator.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Paths.h"
#include "base/RandomSource.h"
#include "base/Text.h"
#include "phrases/ClipChannels.h"
#include "phrases/PhraseEventWriter.h"

#include <algorithm>
#include <cctype>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr const char* chordPatterns = "/Phrases/chord patterns/";
constexpr const char* chordPhrases = "/Phrases2/01 chords/";
constexpr const char* leads = "/Phrases2/02 leads/";
constexpr const char* basses = "/Phrases2/09 basses/";
constexpr const char* drums = "/Phrases2/10 drums/";

constexpr double blockLength = 16.0; // beats of one arrangement in a long one

using Resources = std::optional<fs::path>;

std::string requiredText(const Resources& resources)
{
    return required(resources, implicitNilMessage).string();
}

std::vector<std::string> entriesOf(const std::string& path)
{
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(path, error);
    for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    if (error) {
        fatalStop(concat("Getting contents of '", path, "' failed."));
    }
    return names;
}

bool isMIDIFile(std::string name)
{
    std::ranges::transform(name, name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return name.ends_with(".MID");
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
    const Resources folder = resourcesFolder();
    phraseMixer = nullptr;
    phraseMixer = std::make_shared<MIDIPhraseMixer>();
    if (empty) {
        return phraseMixer->getSequence();
    }
    const std::string resources = requiredText(folder);
    MIDIPhraseMixer& tracks = *phraseMixer;
    tracks.chordTrack->channel = 0;
    loadChords(resources);
    tracks.phraseTrack0->channel = 1;
    loadFollower(*tracks.phraseTrack0, resources + chordPhrases);
    tracks.leadTrack0->channel = 2;
    loadFollower(*tracks.leadTrack0, resources + leads);
    tracks.bassTrack0->channel = 8;
    loadFollower(*tracks.bassTrack0, resources + basses);
    tracks.drumTrack0->channel = 9;
    tracks.drumTrack0->loadPhrase2(loadRandomFileAt(resources + drums), 0);
    tracks.polyRhythm0->channel = polyRhythmChannel;
    tracks.polyRhythm0->generateRandomPhrase_PolyRhythmic(-1);
    tracks.polyMeter0->channel = polyMeterChannel;
    tracks.polyMeter0->generateRandomPhrase_PolyMetric(polyMeterChannel, polyMeterSteps);
    tracks.polyMeter0->transposeTrackNotes(*tracks.chordTrack);
    return tracks.getSequence();
}

std::shared_ptr<MIDISequence16> MIDIClipGenerator::makeArrangementLong(int count)
{
    const auto target = std::make_shared<MIDISequence16>();
    for (const int i : checkedRange(0, count)) {
        makeArrangement(false);
        const double offset = i * blockLength;
        if (phraseMixer->mixedEvents.empty()) {
            directPrint(concat("Arranger::makeSequence() : WARNING: There are no events at ", offset,
                               " for mixing together."));
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
    const Resources folder = resourcesFolder();
    switch (channel) {
    case -1:
        makeArrangement(false);
        break;
    case 0:
        mixer();
        loadChords(requiredText(folder));
        followChords();
        mixer().getSequence();
        break;
    case 1:
        loadFollower(*mixer().phraseTrack0, requiredText(folder) + chordPhrases);
        break;
    case 2:
        loadFollower(*mixer().leadTrack0, requiredText(folder) + leads);
        break;
    case 8:
        loadFollower(*mixer().bassTrack0, requiredText(folder) + basses);
        break;
    case 9:
        mixer().drumTrack0->loadPhrase2(loadRandomFileAt(requiredText(folder) + drums), 0);
        break;
    case polyRhythmChannel:
        mixer().polyRhythm0->generateRandomPhrase_PolyRhythmic(-1);
        break;
    case polyMeterChannel:
        mixer().polyMeter0->generateRandomPhrase_PolyMetric(polyMeterChannel, polyMeterSteps);
        mixer().polyMeter0->transposeTrackNotes(*mixer().chordTrack);
        break;
    default:
        break;
    }
}

PhraseEvents MIDIClipGenerator::getPhrase(int channel)
{
    const MIDIPhraseMixer& tracks = mixer();
    switch (channel) {
    case -1:
        return tracks.mixedEvents;
    case 0:
        return tracks.chordTrack->generatedEvents;
    case 1:
        return tracks.phraseTrack0->generatedEvents;
    case 2:
        return tracks.leadTrack0->generatedEvents;
    case 8:
        return tracks.bassTrack0->generatedEvents;
    case 9:
        return tracks.drumTrack0->loadedEvents;
    case polyRhythmChannel:
        return tracks.polyRhythm0->loadedEvents;
    case polyMeterChannel:
        return tracks.polyMeter0->generatedEvents;
    default:
        return {};
    }
}

std::string MIDIClipGenerator::getName(int channel)
{
    switch (channel) {
    case -1:
    case 0:
        return "CHORDS";
    case 1:
        return "CHORD PHRASE";
    case 2:
        return "MELODY PHRASE";
    case 8:
        return "BASS PHRASE";
    case 9:
        return "BASE DRUMS";
    case polyRhythmChannel:
        return "POLYRHYTHM GENERATOR";
    case polyMeterChannel:
        return "POLYMETRIC GENERATOR";
    default:
        return concat("CHANNEL ", channel);
    }
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
    directPrint(concat("MIDIClipGenerator::saveArrangement() Saving '", folder, "'..."));
    arrangement.save(fs::path(folder) / concat("phraseMixer_", formatNumber(number), ".mid"));
}

void MIDIClipGenerator::save(int /*channel*/, const std::string& /*name*/) {}

fs::path MIDIClipGenerator::loadRandomFileAt(const std::string& path)
{
    directPrint(concat("MIDIClipGenerator::loadRandomFileAt() Loading '", path, "'..."));
    const std::vector<std::string> entries = entriesOf(path);
    const int count = countFiles(entries, path);
    if (count == 0) {
        fatalStop(concat("No files found in '", path, "'"));
    }
    if (std::cmp_not_equal(entries.size(), count)) {
        directPrint(concat("WARNING: There are other files at '", path, "' too."));
    }
    const std::string file = concat(path, formatNumber(randomInteger(1, count)), ".mid");
    std::error_code error;
    if (!fs::exists(file, error)) {
        fatalStop(concat("The file '", file, "' does not exist."));
    }
    directPrint(concat("MIDIClipGenerator::loadRandomFileAt() Loading '", file, "'"));
    return file;
}

int MIDIClipGenerator::countFiles(const std::vector<std::string>& files, const std::string& at)
{
    const auto count = std::ranges::count_if(files, isMIDIFile);
    directPrint(concat("There were ", count, " MIDI files found at '", at, "'."));
    return checkedCast<int>(count);
}

std::string MIDIClipGenerator::formatNumber(int number)
{
    if (number < 10) {
        return concat("00", number);
    }
    return number < 100 ? concat("0", number) : text(number);
}

void MIDIClipGenerator::loadChords(const std::string& resources)
{
    const int transposition = randomInteger(-6, 6);
    const fs::path url = loadRandomFileAt(resources + chordPatterns);
    mixer().chordTrack->loadPhrase(url, transposition);
}

void MIDIClipGenerator::loadFollower(MIDIPhrase& track, const std::string& folder)
{
    track.loadPhrase2(loadRandomFileAt(folder), 0);
    track.transposeTrackNotes(*mixer().chordTrack);
}

void MIDIClipGenerator::followChords()
{
    MIDIPhraseMixer& tracks = mixer();
    for (const auto& track : {tracks.phraseTrack0, tracks.leadTrack0, tracks.bassTrack0, tracks.polyMeter0}) {
        track->transposeTrackNotes(*tracks.chordTrack);
    }
}

} // namespace volvelle
