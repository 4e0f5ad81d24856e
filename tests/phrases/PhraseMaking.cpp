#include "tests/phrases/PhraseMaking.h"

#include <algorithm>

namespace volvelle::test {

std::shared_ptr<PhraseEvent> eventOf(int type, double position, int number)
{
    auto event = std::make_shared<PhraseEvent>();
    event->type = type;
    event->position = position;
    event->number = static_cast<std::uint8_t>(number);
    return event;
}

std::shared_ptr<PhraseEvent> noteAt(double position, int number, double duration)
{
    auto note = eventOf(PhraseEvent::noteOn, position, number);
    note->duration = duration;
    return note;
}

PhraseEvents played(const std::vector<std::pair<double, int>>& notes)
{
    PhraseEvents events;
    for (const auto& [position, number] : notes) {
        events.push_back(noteAt(position, number));
        events.push_back(eventOf(PhraseEvent::noteOff, position + 1.0, number));
    }
    std::ranges::stable_sort(events, {}, [](const auto& event) { return event->position; });
    return events;
}

std::shared_ptr<ChordRule> ruleNamed(std::string_view shortName)
{
    for (const auto& rule : MIDIChordPhrase::chordRules().rules) {
        if (rule->shortName == shortName) {
            return std::make_shared<ChordRule>(*rule);
        }
    }
    ADD_FAILURE() << "there is no chord " << shortName;
    return nullptr;
}

std::shared_ptr<ChordRule> ruleOf(std::vector<int> tones)
{
    auto rule = std::make_shared<ChordRule>();
    rule->rule = std::move(tones);
    return rule;
}

std::shared_ptr<ChordEvent> chordAt(double position, std::shared_ptr<ChordRule> rule)
{
    auto chord = std::make_shared<ChordEvent>();
    chord->position = position;
    chord->nrule = std::move(rule);
    return chord;
}

std::shared_ptr<MIDIChordPhrase> chordTrackOf(const std::vector<std::pair<double, std::string>>& chords)
{
    auto phrase = MIDIChordPhrase::make();
    for (const auto& [position, name] : chords) {
        phrase->chords.push_back(chordAt(position, ruleNamed(name)));
    }
    return phrase;
}

std::vector<std::string> shortNamesOf(const MIDIChordPhrase& phrase)
{
    std::vector<std::string> names;
    for (const auto& chord : phrase.chords) {
        names.push_back(chord->nrule ? chord->nrule->shortName : "none");
    }
    return names;
}

std::vector<std::shared_ptr<PolyMeterStepEvent>> cycleOf(const std::vector<std::string>& types, int velocity)
{
    std::vector<std::shared_ptr<PolyMeterStepEvent>> steps;
    for (const auto& type : types) {
        auto step = std::make_shared<PolyMeterStepEvent>();
        step->type = type;
        step->velocity = velocity;
        steps.push_back(step);
    }
    return steps;
}

} // namespace volvelle::test
