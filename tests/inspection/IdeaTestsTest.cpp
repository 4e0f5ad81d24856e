#include "inspection/IdeaTests.h"

#include <gtest/gtest.h>
#include <tuple>
#include <utility>

namespace volvelle {
namespace {

std::shared_ptr<PhraseEvent> note(int channel, int number, double position, double duration,
                                  int velocity = 100)
{
    const auto event = std::make_shared<PhraseEvent>();
    event->type = PhraseEvent::noteOn;
    event->channel = static_cast<std::uint8_t>(channel);
    event->number = static_cast<std::uint8_t>(number);
    event->position = position;
    event->duration = duration;
    event->value = static_cast<std::uint8_t>(velocity);
    return event;
}

std::shared_ptr<ChordEvent> majorChord(int root, double position)
{
    const auto chord = std::make_shared<ChordEvent>();
    chord->position = position;
    chord->nrule = std::make_shared<ChordRule>();
    chord->nrule->rule = {root, (root + 4) % 12, (root + 7) % 12};
    return chord;
}

// An idea that holds all tests: C, F, G and a bass and a lead on their roots.
class IdeaTestsTest : public testing::Test {
protected:
    IdeaTestsTest()
    {
        generator.makeArrangement(true);
        mixer().chordTrack->chords = {majorChord(0, 0), majorChord(5, 4), majorChord(7, 8)};
        for (const double bar : {0.0, 4.0, 8.0, 12.0}) {
            const int root = bar == 0.0 ? 0 : bar == 4.0 ? 5 : 7;
            mixer().bassTrack0->generatedEvents.push_back(note(bassChannel, 36 + root, bar, 0.99));
            mixer().leadTrack0->generatedEvents.push_back(note(leadChannel, 72 + root, bar, 0.99));
            mixer().leadTrack0->generatedEvents.push_back(note(leadChannel, 84 + root, bar + 1, 0.99));
            mixer().drumTrack0->loadedEvents.push_back(note(drumChannel, 36, bar, 0.25));
        }
        for (int i = 0; i < 24; ++i) {
            mixer().polyMeter0->generatedEvents.push_back(
                note(polyMeterChannel, i < 6 ? 60 : 55, i < 6 ? i * 0.5 : 8 + i * 0.25, 0.2, 70));
        }
    }

    // C, F, G and A, with the tracks on their roots, and no line.
    void toFourChords()
    {
        mixer().chordTrack->chords.push_back(majorChord(9, 12));
        bass(3).number = 45;
        mixer().leadTrack0->generatedEvents[6]->number = 81;
        mixer().leadTrack0->generatedEvents[7]->number = 93;
        mixer().polyMeter0->generatedEvents.clear();
    }

    PhraseEvent& bass(std::size_t index) { return *mixer().bassTrack0->generatedEvents.at(index); }

    MIDIPhraseMixer& mixer() { return *generator.phraseMixer; }

    // The names of the tests that fail.
    std::vector<std::string_view> faults()
    {
        std::vector<std::string_view> names;
        const IdeaResult result = testIdea(generator);
        for (std::size_t i = 0; i < result.size(); ++i) {
            if (!result.at(i)) {
                names.push_back(ideaTests.at(i).name);
            }
        }
        return names;
    }

    MIDIClipGenerator generator;
};

using Names = std::vector<std::string_view>;

TEST_F(IdeaTestsTest, AGoodOneHoldsAll)
{
    EXPECT_EQ(faults(), Names{});
}

TEST_F(IdeaTestsTest, AToneHeldOverAChangeIsOutside)
{
    mixer().phraseTrack0->generatedEvents = {note(chordPhraseChannel, 64, 0, 5.25 * 0.99)};
    EXPECT_EQ(faults(), Names{});
    mixer().phraseTrack0->generatedEvents = {note(chordPhraseChannel, 64, 0, 5.5 * 0.99)};
    EXPECT_EQ(faults(), Names{ideaTests[0].name});
}

// Five sixteenths of 64 are within 8 %, six are not.
TEST_F(IdeaTestsTest, TonesOutsideTheChordCountInEachTrackThatFollows)
{
    const std::tuple<MIDIPhrase*, int, int> tracks[] = {{mixer().bassTrack0.get(), bassChannel, 40},
                                                        {mixer().leadTrack0.get(), leadChannel, 76},
                                                        {mixer().polyMeter0.get(), polyMeterChannel, 64}};
    for (const auto& [track, channel, key] : tracks) {
        const auto held = note(channel, key, 0, 5.25 * 0.99, channel == polyMeterChannel ? 70 : 100);
        track->generatedEvents.push_back(held);
        EXPECT_EQ(faults(), Names{}) << channel;
        held->duration = 5.5 * 0.99;
        EXPECT_EQ(faults(), Names{ideaTests[0].name}) << channel;
        track->generatedEvents.pop_back();
    }
}

TEST_F(IdeaTestsTest, TheBassMeetsHalfOfTheChanges)
{
    toFourChords();
    mixer().chordTrack->chords.push_back(majorChord(2, 14));
    bass(3).position = 13;
    EXPECT_EQ(faults(), Names{});
    mixer().chordTrack->chords.push_back(majorChord(4, 15));
    EXPECT_EQ(faults(), Names{ideaTests[1].name});
}

TEST_F(IdeaTestsTest, TheBassSoundsHalfOfTheRoots)
{
    toFourChords();
    bass(2).number = 47;
    bass(3).number = 40;
    EXPECT_EQ(faults(), Names{});
    mixer().chordTrack->chords.push_back(majorChord(2, 14));
    EXPECT_EQ(faults(), Names{ideaTests[2].name});
}

TEST_F(IdeaTestsTest, AKickLiesUnderAQuarterOfTheBass)
{
    for (std::size_t i = 1; i < 4; ++i) {
        mixer().drumTrack0->loadedEvents[i]->position += 1;
    }
    EXPECT_EQ(faults(), Names{});
    mixer().bassTrack0->generatedEvents.push_back(note(bassChannel, 36, 2, 0.99));
    EXPECT_EQ(faults(), Names{ideaTests[3].name});
}

TEST_F(IdeaTestsTest, ALineIsNearFromFiveBelowToFiveAboveTheLead)
{
    for (const auto& [velocity, isNear] : {std::pair(94, false), {95, true}, {105, true}, {106, false}}) {
        for (const auto& event : mixer().polyMeter0->generatedEvents) {
            event->value = static_cast<std::uint8_t>(velocity);
        }
        EXPECT_EQ(faults(), isNear ? Names{ideaTests[4].name} : Names{}) << velocity;
    }
}

TEST_F(IdeaTestsTest, AChordLastsEightBeatsAtMost)
{
    mixer().chordTrack->chords[2] = majorChord(7, 7.75);
    EXPECT_EQ(faults(), Names{ideaTests[5].name});
}

TEST_F(IdeaTestsTest, ALeadRepeatsItsKeyInThreeStepsOfTenAtMost)
{
    auto& lead = mixer().leadTrack0->generatedEvents;
    lead.clear();
    double place = 0;
    for (const int key : {72, 72, 76, 76, 79, 79, 72, 76, 79, 72, 76}) {
        lead.push_back(note(leadChannel, key, place, 0.2));
        place += 0.25;
    }
    EXPECT_EQ(faults(), Names{});
    lead.pop_back();
    EXPECT_EQ(faults(), Names{ideaTests[7].name});
}

TEST_F(IdeaTestsTest, ABassThatComesLateAndOnOtherTonesAndBetweenTheKicksHasThreeFaults)
{
    for (const auto& bass : mixer().bassTrack0->generatedEvents) {
        bass->position += 0.5;
        bass->number += 7;
    }
    mixer().bassTrack0->generatedEvents[2]->number -= 5;
    mixer().bassTrack0->generatedEvents[3]->number -= 5;
    mixer().chordTrack->chords[2]->nrule->rule.push_back(9);
    EXPECT_EQ(faults(), (Names{ideaTests[1].name, ideaTests[2].name, ideaTests[3].name}));
}

TEST_F(IdeaTestsTest, ALineAsLoudAsTheLeadCoversIt)
{
    for (const auto& event : mixer().polyMeter0->generatedEvents) {
        event->value = 95;
    }
    EXPECT_EQ(faults(), Names{ideaTests[4].name});
    mixer().polyMeter0->generatedEvents.pop_back();
    EXPECT_EQ(faults(), Names{});
}

TEST_F(IdeaTestsTest, HarmonyMoves)
{
    mixer().chordTrack->chords[1] = majorChord(7, 4);
    mixer().bassTrack0->generatedEvents[1]->number = 43;
    mixer().leadTrack0->generatedEvents.clear();
    mixer().polyMeter0->generatedEvents.clear();
    EXPECT_EQ(faults(), Names{ideaTests[5].name});
    mixer().chordTrack->chords = {majorChord(0, 0), majorChord(5, 2), majorChord(7, 4)};
    EXPECT_EQ(faults(), Names{ideaTests[5].name});
}

TEST_F(IdeaTestsTest, FourKicksAreLeast)
{
    mixer().drumTrack0->loadedEvents.back()->number = 38;
    EXPECT_EQ(faults(), Names{ideaTests[6].name});
}

TEST_F(IdeaTestsTest, ALeadDoesNotRepeatItsKey)
{
    for (std::size_t i = 1; i < 8; i += 2) {
        mixer().leadTrack0->generatedEvents[i]->number -= 12;
    }
    EXPECT_EQ(faults(), Names{ideaTests[7].name});
}

} // namespace
} // namespace volvelle
