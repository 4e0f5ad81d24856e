#include "inspection/ArrangementSummary.h"

#include "base/Checked.h"

namespace volvelle {

namespace {

std::string titleOf(const MIDIPhrase& phrase)
{
    if (phrase.sequence && phrase.sequence->sequenceNode) {
        for (const auto& track : phrase.sequence->sequenceNode->tracks) {
            for (const auto& name : required(track).getElementsOfClass<MetaTrackNameEvent>()) {
                return {name->data.begin(), name->data.end()};
            }
        }
    }
    return phrase.currentURL ? phrase.currentURL->filename().string() : std::string();
}

} // namespace

ArrangementSummary summaryOf(MIDIClipGenerator& generator)
{
    const MIDIPhraseMixer& mixer = required(generator.phraseMixer);
    ArrangementSummary summary;
    for (const ArrangementTrack& track : arrangementTracks) {
        if (!track.folder.empty()) {
            const MIDIPhrase& phrase = track.phraseIn(mixer);
            summary.phrases.push_back({std::string(track.label), titleOf(phrase),
                                       phrase.currentURL.value_or(std::filesystem::path()),
                                       phrase.sequence ? phrase.sequence->loadStatus : noErr});
        }
    }
    for (const auto& chord : generator.getChords()) {
        summary.chords.push_back({chord->position, required(chord->nrule).shortName});
    }
    for (const auto& event : mixer.mixedEvents) {
        if (event->type == PhraseEvent::noteOn) {
            ++summary.notes.at(event->channel);
        }
    }
    return summary;
}

} // namespace volvelle
