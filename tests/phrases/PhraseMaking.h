#pragma once

#include "phrases/MIDIChordPhrase.h"

#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// Phrases, chords and steps written out in tests, and their fields as lists.
namespace volvelle::test {

std::shared_ptr<PhraseEvent> eventOf(int type, double position, int number);
std::shared_ptr<PhraseEvent> noteAt(double position, int number, double duration = 1.0);

// The on and the off of each note, all of one beat, by position.
PhraseEvents played(const std::vector<std::pair<double, int>>& notes);

// A copy of the catalogue's rule.
std::shared_ptr<ChordRule> ruleNamed(std::string_view shortName);
std::shared_ptr<ChordRule> ruleOf(std::vector<int> tones);
std::shared_ptr<ChordEvent> chordAt(double position, std::shared_ptr<ChordRule> rule);

// A chord track that holds these chords and nothing else.
std::shared_ptr<MIDIChordPhrase> chordTrackOf(const std::vector<std::pair<double, std::string>>& chords);
std::vector<std::string> shortNamesOf(const MIDIChordPhrase& phrase);

std::vector<std::shared_ptr<PolyMeterStepEvent>> cycleOf(const std::vector<std::string>& types,
                                                         int velocity = 90);

// One field of each event.
template <class Field>
auto listOf(const PhraseEvents& events, Field PhraseEvent::* field)
{
    std::vector<std::conditional_t<std::is_floating_point_v<Field>, double, int>> values;
    for (const auto& event : events) {
        values.push_back((*event).*field);
    }
    return values;
}

inline std::vector<int> numbersOf(const PhraseEvents& events)
{
    return listOf(events, &PhraseEvent::number);
}

inline std::vector<double> positionsOf(const PhraseEvents& events)
{
    return listOf(events, &PhraseEvent::position);
}

// What a fatal stop leaves on standard error: the message and nothing else.
inline testing::Matcher<const std::string&> onlyLine(std::string_view message)
{
    return testing::Eq(std::string(message) + '\n');
}

} // namespace volvelle::test
