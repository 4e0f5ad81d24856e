#include "scores/PhraseFile.h"

#include "base/Checked.h"
#include "base/PlainText.h"
#include "base/Text.h"
#include "phrases/MIDIPhrases.h"
#include "scores/PhraseFolders.h"
#include "scores/ScoreBody.h"
#include "services/musicsequence/MusicSequence.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <ranges>
#include <string>
#include <system_error>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

template <class Text>
std::string textOf(const Text& event)
{
    return plainLine(std::string(event.data.begin(), event.data.end()));
}

void takeTexts(const MIDIPhrase& phrase, Score& score)
{
    for (const auto& track : required(phrase.sequence->sequenceNode).tracks) {
        for (const auto& event : required(track).getElementsOfClass<MetaTrackNameEvent>()) {
            score.title = score.title.empty() ? textOf(*event) : score.title;
        }
        for (const auto& event : required(track).getElementsOfClass<MetaTextEvent>()) {
            const std::string line = textOf(*event);
            if (line.starts_with(Score::styleMark)) {
                score.style = line.substr(Score::styleMark.size());
            }
            score.machine = score.machine || line == Score::machineMark;
            score.colour = score.colour || line == Score::colourMark;
        }
    }
}

void takeNotes(const MIDIPhrase& phrase, Score& score)
{
    for (const auto& event : phrase.loadedEvents) {
        if (event->type == PhraseEvent::noteOn && event->position <= Score::beats) {
            // The grid ends a sixteenth before the phrase.
            const double position = std::min(event->position, Score::beats - Score::sixteenth);
            const double whole = std::round(event->duration / Score::sixteenth) * Score::sixteenth;
            score.notes.push_back({position, whole - Score::gap, event->number, event->value});
        }
    }
}

void takeChords(const MIDIChordPhrase& pattern, Score& score)
{
    for (const auto& chord : pattern.chords) {
        if (chord->position < Score::beats) {
            score.chords.push_back({chord->position, required(chord->nrule).shortName});
        }
    }
    scores::layOutChords(score);
}

// Keeps one note of each key at a position, a sixteenth long at least, up to the next one of its key and to
// the end of the phrase.
void separate(std::vector<ScoreNote>& notes)
{
    std::map<int, double> nextOf;
    std::vector<ScoreNote> kept;
    for (ScoreNote& note : notes | std::views::reverse) {
        const double next = nextOf.try_emplace(note.number, Score::beats).first->second;
        if (note.position < next) {
            note.duration =
                std::clamp(note.duration, Score::sixteenth - Score::gap, next - note.position - Score::gap);
            kept.push_back(note);
        }
        nextOf[note.number] = note.position;
    }
    notes.assign(kept.rbegin(), kept.rend());
}

// Fails with a line where more notes stand at one position than any chord has keys for.
Result<> checkClusters(const Score& score)
{
    constexpr int most = 10;
    std::map<double, int> countAt;
    for (const ScoreNote& note : score.notes) {
        if (score.kind != ScoreKind::drums && ++countAt[note.position] > most) {
            return failure(
                concat("the MIDI file has more than ", most, " notes at once at beat ", note.position));
        }
    }
    return {};
}

// The length of the longest track in beats, in sixteenths.
double lengthOf(const MusicSequence& sequence)
{
    double longest = 0;
    std::uint32_t tracks = 0;
    bool goesOn = MusicSequenceGetTrackCount(sequence, tracks) == noErr;
    for (std::uint32_t i = 0; goesOn && i < tracks; ++i) {
        MusicTrack track;
        double length = 0;
        std::uint32_t size = sizeof(length);
        goesOn = MusicSequenceGetIndTrack(sequence, i, track) == noErr &&
                 MusicTrackGetProperty(track, kSequenceTrackProperty_TrackLength, &length, size) == noErr;
        longest = std::max(longest, length);
    }
    return std::round(longest / Score::sixteenth) * Score::sixteenth;
}

// Fails with a line where what was loaded is no whole MIDI file of sixteen beats.
Result<> checkWhole(const MusicSequence& sequence)
{
    std::vector<std::string> mended;
    if (MusicSequenceGetLoadWarnings(sequence, mended) == noErr && !mended.empty()) {
        return failure(mended.front());
    }
    if (const double length = lengthOf(sequence); length > Score::beats) {
        return failure(concat("the MIDI file is ", length, " beats long, at most ", arrangementBeats));
    }
    return {};
}

} // namespace

std::shared_ptr<MIDIPhrase> loadPhrase(const fs::path& file, ScoreKind kind)
{
    if (kind == ScoreKind::chordPattern) {
        auto chords = MIDIChordPhrase::make();
        chords->isMasterTrack = true;
        chords->loadPhrase(file, 0);
        return chords;
    }
    auto phrase = MIDIPhrase::make();
    phrase->channel = scoreChannel(kind);
    phrase->loadPhrase2(file, 0);
    return phrase;
}

std::shared_ptr<MIDIPhrase> readPhrase(const fs::path& file, ScoreKind kind)
{
    const auto phrase = loadPhrase(file, kind);
    return phrase->sequence && phrase->sequence->loadStatus == noErr ? phrase : nullptr;
}

Score scoreOf(const MIDIPhrase& phrase, ScoreKind kind)
{
    Score score;
    score.kind = kind;
    takeTexts(phrase, score);
    if (const auto* pattern = dynamic_cast<const MIDIChordPhrase*>(&phrase)) {
        takeChords(*pattern, score);
    } else {
        takeNotes(phrase, score);
    }
    return score;
}

Result<Score> readMIDIPhrase(const fs::path& file, ScoreKind kind)
{
    const auto phrase = readPhrase(file, kind);
    if (!phrase) {
        return failure("the MIDI file cannot be read");
    }
    if (const Result<> whole = checkWhole(phrase->sequence->getMusicSequence()); !whole) {
        return failure(whole.error());
    }
    Score score = scoreOf(*phrase, kind);
    if (score.notes.empty()) {
        return failure(
            concat("the MIDI file holds no ", kind == ScoreKind::chordPattern ? "chords" : "notes"));
    }
    separate(score.notes);
    if (const Result<> playable = checkClusters(score); !playable) {
        return failure(playable.error());
    }
    if (score.title.empty()) {
        score.title = plainLine(file.stem().string());
    }
    return score;
}

PhraseCompany companyIn(const fs::path& resources)
{
    PhraseCompany company;
    for (const ScoreKind kind : {ScoreKind::chordPattern, ScoreKind::drums}) {
        const fs::path folder = resources / phraseFolder(kind);
        std::error_code unknown;
        for (int number = 1; fs::is_regular_file(folder / phraseName(number), unknown); ++number) {
            if (const auto phrase = readPhrase(folder / phraseName(number), kind)) {
                const Score score = scoreOf(*phrase, kind);
                kind == ScoreKind::drums ? company.addDrums(score) : company.addPattern(score);
            }
        }
    }
    return company;
}

} // namespace volvelle
