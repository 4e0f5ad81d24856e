#include "cli/ArrangementReport.h"

#include "base/Checked.h"
#include "base/Text.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr double arrangementLength = 16.0; // beats

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

std::string padded(std::string text, std::size_t width)
{
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string rightAligned(const std::string& text, std::size_t width)
{
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

} // namespace

std::shared_ptr<MIDISequence16> ReportingGenerator::makeArrangement(bool empty)
{
    auto sequence = MIDIClipGenerator::makeArrangement(empty);
    Arrangement arrangement;
    const MIDIPhraseMixer& mixer = *phraseMixer;
    const std::pair<int, const MIDIPhrase*> tracks[] = {{0, mixer.chordTrack.get()},
                                                        {1, mixer.phraseTrack0.get()},
                                                        {2, mixer.leadTrack0.get()},
                                                        {8, mixer.bassTrack0.get()},
                                                        {9, mixer.drumTrack0.get()}};
    for (const auto& [channel, phrase] : tracks) {
        arrangement.phrases.push_back({getName(channel), titleOf(*phrase)});
    }
    for (const auto& chord : mixer.chordTrack->chords) {
        arrangement.chords.push_back({chord->position, required(chord->nrule).shortName});
    }
    for (const auto& event : mixer.mixedEvents) {
        if (event->type == PhraseEvent::noteOn) {
            ++arrangement.notes.at(event->channel);
        }
    }
    arrangements.push_back(std::move(arrangement));
    return sequence;
}

void printReport(CommandOutput& output, ReportingGenerator& generator)
{
    constexpr std::size_t labelWidth = 22;
    std::array<int, 16> notes{};
    output.remark("Phrases");
    for (const auto& arrangement : generator.arrangements) {
        for (const auto& phrase : arrangement.phrases) {
            output.remark(concat("  ", padded(phrase.label, labelWidth), phrase.title));
        }
        for (std::size_t channel = 0; channel < notes.size(); ++channel) {
            notes.at(channel) += arrangement.notes.at(channel);
        }
    }
    output.remark("Chords");
    double offset = 0.0;
    for (const auto& arrangement : generator.arrangements) {
        for (const auto& chord : arrangement.chords) {
            output.remark(concat(rightAligned(text(chord.position + offset), 8), "  ", chord.name));
        }
        offset += arrangementLength;
    }
    output.remark("Notes");
    for (int channel = 0; channel < 16; ++channel) {
        if (const int count = notes.at(static_cast<std::size_t>(channel)); count > 0) {
            output.remark(
                concat("  ", padded(generator.getName(channel), labelWidth), rightAligned(text(count), 5)));
        }
    }
}

std::string shortReport(const ReportingGenerator::Arrangement& arrangement)
{
    std::string line;
    for (const auto& phrase : arrangement.phrases) {
        line += concat(line.empty() ? "" : ", ", phrase.title);
    }
    line += ":";
    for (const auto& chord : arrangement.chords) {
        line += " " + chord.name;
    }
    return line;
}

} // namespace volvelle
