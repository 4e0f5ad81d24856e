#include "scores/PhraseFile.h"

#include "base/Checked.h"
#include "phrases/MIDIPhrases.h"
#include "scores/PhraseFolders.h"

#include <cmath>
#include <string>
#include <system_error>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

void takeTexts(const MIDIPhrase& phrase, Score& score)
{
    for (const auto& track : required(phrase.sequence->sequenceNode).tracks) {
        for (const auto& event : required(track).getElementsOfClass<MetaTrackNameEvent>()) {
            score.title.assign(event->data.begin(), event->data.end());
        }
        for (const auto& event : required(track).getElementsOfClass<MetaTextEvent>()) {
            const std::string line(event->data.begin(), event->data.end());
            score.machine = score.machine || line == Score::machineMark;
            score.colour = score.colour || line == Score::colourMark;
        }
    }
}

void takeNotes(const MIDIPhrase& phrase, Score& score)
{
    for (const auto& event : phrase.loadedEvents) {
        if (event->type == PhraseEvent::noteOn) {
            const double whole = std::round(event->duration / Score::sixteenth) * Score::sixteenth;
            score.notes.push_back({event->position, whole - Score::gap, event->number, event->value});
        }
    }
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

Score scoreOf(const MIDIPhrase& phrase, ScoreKind kind)
{
    Score score;
    score.kind = kind;
    takeTexts(phrase, score);
    takeNotes(phrase, score);
    if (const auto* pattern = dynamic_cast<const MIDIChordPhrase*>(&phrase)) {
        for (const auto& chord : pattern->chords) {
            score.chords.push_back({chord->position, required(chord->nrule).shortName});
        }
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
            const Score score = scoreOf(*loadPhrase(folder / phraseName(number), kind), kind);
            kind == ScoreKind::drums ? company.addDrums(score) : company.addPattern(score);
        }
    }
    return company;
}

} // namespace volvelle
